#include "logging/frm_logging.h"

#include "core/globals.h"
#include "core/settings_table.h"
#include "platform/dialogs.h"
#include "platform/text.h"

#include <filesystem>

namespace zv {

namespace {

struct FileRow {
    const char* frame;
    const char* prompt;
    const char* filter;
    const char* defaultFile;
    const char* extension;
};

constexpr std::array<FileRow, kLoggingFiles> kRows { {
    { "Static Data Log Definition File", "Please select a static data log definition file (*.slog).",
        "Static Data Log Definition File (*.slog)|*.slog", "characterize_12cell.slog", ".slog" },
    { "Dynamic Data Log Definition File", "Please select a dynamic data log definition file (*.dlog).",
        "Dynamic Data Log Definition File (*.dlog)|*.dlog", "characterize_12cell.dlog", ".dlog" },
    { "Data Log File", "Please select or create a file to collect the data.", "Data Log Files (*.csv)|*.csv|",
        "default.csv", ".csv" },
} };

bool hasExtension(const std::string& path, const char* extension)
{
    const std::string_view ext(extension);
    return path.size() >= ext.size()
        && platform::equalsIgnoreCase(std::string_view(path).substr(path.size() - ext.size()), ext);
}

} // namespace

frmLogging::frmLogging(LoggingDialogServices services)
    : Window("frmLogging")
    , s_(std::move(services))
{
    setCaption("Zentavia - Logging Configuration");
    for (std::size_t i = 0; i < kLoggingFiles; ++i) {
        fraFile[i].setCaption(kRows[i].frame);
        lblCurrent[i].setCaption("Current File:");
        cmdSelectFle[i].setCaption("...");
        cmdSelectFle[i].setToolTip("Change log file or create new file.");
        cmdSelectFle[i].onClick = [this, i] { cmdSelectFle_Click(static_cast<int>(i)); };
        addControls({ &fraFile[i], &lblCurrent[i], &lblFile[i], &cmdSelectFle[i] });
    }
    chkAutoLog.setCaption("Enable Auto Logging");
    cmdOK.setCaption("OK");
    cmdCancel.setCaption("Cancel");
    addControls({ &chkAutoLog, &cmdOK, &cmdCancel });
    cmdOK.onClick = [this] { cmdOK_Click(); };
    cmdCancel.onClick = [this] {
        cancelled_ = true;
        unload();
    };
}

void frmLogging::handleLoad()
{
    cancelled_ = true;
    settings_ = readLogSettings(s_.settings, s_.globals, s_.programFolder);
    const std::string folder = (std::filesystem::path(s_.programFolder) / "Data Logging Files").string();
    const std::array<std::string, kLoggingFiles> paths { settings_.StaticDefinitionFile,
        settings_.DynamicDefinitionFile, settings_.LogFilePath };
    for (std::size_t i = 0; i < kLoggingFiles; ++i)
        lblFile[i].setCaption(paths[i].empty() ? folder + "/" + kRows[i].defaultFile : paths[i]);
    chkAutoLog.setValue(settings_.AutoLogging ? 1 : 0);
    chkAutoLog.setEnabled(!s_.globals.PollingActive);
}

void frmLogging::cmdSelectFle_Click(int index)
{
    const FileRow& row = kRows[static_cast<std::size_t>(index)];
    platform::FileDialogOptions options;
    options.title = row.prompt;
    options.filter = row.filter;
    options.folder = readSetting(s_.settings, "Path_Logging", s_.programFolder);
    if (options.folder.empty())
        options.folder = std::filesystem::path(lblFile[static_cast<std::size_t>(index)].caption())
                             .parent_path()
                             .string();
    std::string chosen;
    if (index == 2) {
        const auto path = s_.dialogs.saveFile(options);
        if (!path)
            return;
        chosen = *path;
    } else {
        const auto paths = s_.dialogs.openFiles(options);
        if (paths.empty())
            return;
        chosen = paths.front();
    }
    writeSetting(s_.settings, "Path_Logging", std::filesystem::path(chosen).parent_path().string());
    if (!hasExtension(chosen, row.extension)) {
        (void)s_.dialogs.messageBox("The file " + std::filesystem::path(chosen).filename().string()
                + " has the wrong extension.\r\nPlease select a different file.",
            platform::Buttons::OK, platform::Icon::Exclamation, "Invalid File Extension");
        return;
    }
    lblFile[static_cast<std::size_t>(index)].setCaption(chosen);
}

void frmLogging::cmdOK_Click()
{
    settings_.StaticDefinitionFile = lblFile[0].caption();
    settings_.DynamicDefinitionFile = lblFile[1].caption();
    settings_.LogFilePath = lblFile[2].caption();
    settings_.AutoLogging = chkAutoLog.value() != 0;
    storeLogSettings(s_.settings, s_.globals, settings_);
    s_.globals.settings.AutoLogging = settings_.AutoLogging;
    cancelled_ = false;
    if (s_.applied)
        s_.applied(settings_);
    unload();
}

} // namespace zv
