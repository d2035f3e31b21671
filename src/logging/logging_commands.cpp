#include "logging/logging_commands.h"

#include "core/active_form.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/monitor.h"
#include "monitor/open_associated.h"
#include "platform/dialogs.h"

#include <filesystem>

namespace zv {

namespace {

std::size_t row(PendingCommand command)
{
    return static_cast<std::size_t>(command);
}

} // namespace

LoggingCommands::LoggingCommands(Monitor& monitor, LoggingCommandServices services)
    : writer(LogWriterServices { monitor.context.main.CellWeft(), monitor.context.globals,
                 monitor.context.settings, monitor.context.dialogs, monitor.context.loop,
                 monitor.context.programFolder, monitor.context.errors },
        {})
    , logging(LoggingDialogServices { monitor.context.globals, monitor.context.settings,
          monitor.context.dialogs, monitor.context.programFolder,
          [this](const LogSettings& chosen) {
              writer.settings = chosen;
              showStartStop(chosen.AutoLogging);
          } })
    , comment([this](const std::string& text) { writer.addComment(text); })
    , m_(monitor)
    , s_(std::move(services))
{
    writer.hooks = writerHooks();
    wireMonitor();
}

LoggingCommands::~LoggingCommands()
{
    // The device may be gone by now: the file is closed (and synced) without a closing block.
    PollHooks& hooks = m_.poll.hooks;
    hooks.updateLogFile = nullptr;
    hooks.startLogging = nullptr;
    hooks.closeLog = nullptr;
    m_.edits.hooks.logChange = nullptr;
    m_.context.form.logFileOpen = nullptr;
    m_.context.form.monitorSteps.loggingState = nullptr;
}

LogWriterHooks LoggingCommands::writerHooks()
{
    frmMain& form = m_.context.form;
    LogWriterHooks hooks;
    hooks.isTheDeviceWired = s_.isTheDeviceWired;
    hooks.info = [&form](const std::string& text) { form.sbStatusBar.setPanelText(kInfoPanel, text); };
    hooks.showLogging = [&form](bool open) {
        form.sbStatusBar.setPanelText(kLoggingPanel, open ? "Logging Active" : "Logging Inactive");
        form.sbStatusBar.setPanelPicture(kLoggingPanel, open ? "Logging" : "Loggingd");
    };
    hooks.setMenus = [this](bool open) { setMenus(open); };
    hooks.mainWindowActive = m_.context.mainFormActive;
    hooks.readingAll = [this] { return m_.poll.ReadingAllParameters; };
    hooks.deferStartup = [this] { m_.poll.runOrDefer(PendingCommand::StartLogging); };
    hooks.configure = [this] {
        if (s_.showModal)
            s_.showModal(logging);
        return !logging.cancelled();
    };
    return hooks;
}

void LoggingCommands::wireMonitor()
{
    PollHooks& hooks = m_.poll.hooks;
    hooks.updateLogFile = [this] { writer.UpdateLogFile(); };
    hooks.startLogging = [this] { return writer.StartLogging(); };
    hooks.closeLog = [this] { writer.CloseLog(); };
    auto& actions = m_.poll.actions;
    actions[row(PendingCommand::StartLogging)] = [this] {
        if (!writer.LoggingStartup())
            writer.CloseLog();
    };
    actions[row(PendingCommand::AddComment)] = [this] {
        comment.txtComment.setText({});
        if (s_.showModal)
            s_.showModal(comment);
    };
    actions[row(PendingCommand::CaptureLearnedData)] = [this] { writer.captureLearnedData(); };
    actions[row(PendingCommand::Export)] = [this] {
        const MonitorContext& c = m_.context;
        if (!s_.desktop || exportPath_.empty())
            return;
        frmMain& form = c.form;
        (void)OpenAssociated(exportPath_, *s_.desktop, c.dialogs,
            [&form](const std::string& text) { form.sbStatusBar.setPanelText(kInfoPanel, text); });
    };
    m_.edits.hooks.logChange = [this](const clsSMBusParameter& parameter) { writer.logChange(parameter); };
    frmMain& form = m_.context.form;
    form.logFileOpen = [this] { return writer.LogOpen; };
    form.monitorSteps.loggingState = [this] {
        writer.reloadSettings();
        m_.context.globals.settings.AutoLogging = writer.settings.AutoLogging;
        showStartStop(writer.settings.AutoLogging);
        setMenus(writer.LogOpen);
    };
}

void LoggingCommands::setMenus(bool open)
{
    frmMain& form = m_.context.form;
    for (auto* item : { &form.mnuConfigLogging, &form.mnuExport, &form.mnuStartLogging })
        item->setEnabled(!open);
    for (auto* item : { &form.mnuAddComment, &form.mnuCaptureLearnedData, &form.mnuStopLogging })
        item->setEnabled(open);
}

void LoggingCommands::showStartStop(bool autoLogging)
{
    frmMain& form = m_.context.form;
    for (auto* item : { &form.mnuStartLogging, &form.mnuStopLogging, &form.mnuloogingsep1 })
        item->setVisible(!autoLogging);
}

void LoggingCommands::mnuConfigLogging_Click()
{
    if (s_.showModal)
        s_.showModal(logging);
}

void LoggingCommands::mnuStartLogging_Click()
{
    (void)writer.StartLogging();
}

void LoggingCommands::mnuStopLogging_Click()
{
    writer.mnuStopLogging();
}

void LoggingCommands::mnuAddComment_Click()
{
    m_.poll.runOrDefer(PendingCommand::AddComment);
}

void LoggingCommands::mnuCaptureLearnedData_Click()
{
    m_.poll.runOrDefer(PendingCommand::CaptureLearnedData);
}

void LoggingCommands::mnuExport_Click()
{
    const MonitorContext& c = m_.context;
    platform::FileDialogOptions options;
    options.title = "Zentavia Data log Files";
    options.filter = "Data Log Files (*.csv)|*.csv|";
    options.folder = readSetting(c.settings, "Path_Export", c.programFolder);
    const auto chosen = c.dialogs.openFiles(options);
    if (chosen.empty())
        return;
    exportPath_ = chosen.front();
    writeSetting(c.settings, "Path_Export", std::filesystem::path(exportPath_).parent_path().string());
    m_.poll.runOrDefer(PendingCommand::Export);
}

void LoggingCommands::mnuLoadLoggingDefinitionFile_Click()
{
    writer.definitions.mnuLoadLoggingDefinitionFile(m_.context.programFolder, s_.setMousePointer);
}

void LoggingCommands::mnuGenerateLogDefinitionFile_Click()
{
    MonitorContext& c = m_.context;
    if (!wizard) {
        clsCellWeft& driver = c.main.CellWeft();
        wizard = std::make_unique<frmLogWizard>(LogWizardServices { c.form, driver, c.dialogs, c.settings,
            c.programFolder, [&driver] { return driver.Parameters.UserAccessLevel; } });
    }
    if (s_.showModal)
        s_.showModal(*wizard);
}

void wireLoggingCommands(frmMain& form, LoggingCommands& commands)
{
    form.mnuGenerateLogDefinitionFile.onClick
        = [&commands] { commands.mnuGenerateLogDefinitionFile_Click(); };
    form.mnuConfigLogging.onClick = [&commands] { commands.mnuConfigLogging_Click(); };
    form.mnuStartLogging.onClick = [&commands] { commands.mnuStartLogging_Click(); };
    form.mnuStopLogging.onClick = [&commands] { commands.mnuStopLogging_Click(); };
    form.mnuAddComment.onClick = [&commands] { commands.mnuAddComment_Click(); };
    form.mnuCaptureLearnedData.onClick = [&commands] { commands.mnuCaptureLearnedData_Click(); };
    form.mnuExport.onClick = [&commands] { commands.mnuExport_Click(); };
    form.mnuLoadLoggingDefinitionFile.onClick
        = [&commands] { commands.mnuLoadLoggingDefinitionFile_Click(); };
    form.refreshAvailability();
}

} // namespace zv
