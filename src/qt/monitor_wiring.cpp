#include "qt/monitor_wiring.h"

#include "commands/wire_commands.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "driver/target_operations.h"
#include "monitor/frm_main.h"
#include "pack_configuration/pack_menu.h"
#include "platform/ui/show_modal.h"
#include "qt/binder.h"
#include "qt/calibration_forms.h"
#include "qt/editor_form.h"

#include <QCursor>
#include <QMenu>

namespace zv::qt {

MonitorWiring::MonitorWiring(MonitorWiringServices services)
    : s_(std::move(services))
    , monitor_(s_.context)
    , editor_(s_.context.main.CellWeft(), editorContext())
    , commands_(CommandServices { s_.context.main, s_.context.globals, s_.context.form, s_.context.dialogs,
                    s_.context.loop, s_.context.errors },
          commandHooks())
    , outputs_(outputServices(), platform::ui::eventLoopModal(s_.context.loop))
    , calibration_({ s_.context.main, s_.context.globals, s_.context.form, s_.context.dialogs,
                       s_.context.loop, s_.context.settings, s_.context.errors },
          calibrationHooks())
    , logging_(monitor_, loggingServices())
    , settingsFiles_(monitor_, s_.setMousePointer)
    , packs_(PackFlowServices { s_.context.main, s_.context.globals, s_.context.settings, s_.context.dialogs,
                 s_.context.loop, s_.context.programFolder },
          packHooks())
{
    if (s_.bindWindow)
        s_.bindWindow(outputs_.preferences);
    wireMonitor();
    wireCalibrationCommands(s_.context.form, calibration_);
    wireDeviceCommands(s_.context.form, commands_);
    wireOutputCommands(s_.context.form, outputs_);
    wireLoggingCommands(s_.context.form, logging_);
    wireAppSettingsFiles(s_.context.form, settingsFiles_);
    wirePackConfiguration(s_.context.form, packs_);
}

// The logging windows are bound to their forms on first use and shown modally.
LoggingCommandServices MonitorWiring::loggingServices()
{
    LoggingCommandServices services;
    services.desktop = s_.desktop;
    services.setMousePointer = s_.setMousePointer;
    services.showModal
        = [this, run = platform::ui::eventLoopModal(s_.context.loop)](platform::ui::Window& window) {
              if (!s_.binder.widgetOf(window) && s_.bindWindow)
                  s_.bindWindow(window);
              run(window);
          };
    services.isTheDeviceWired = [this] { return commands_.IsTheDeviceWired(); };
    return services;
}

MonitorWiring::~MonitorWiring() = default;

void MonitorWiring::commitChanges()
{
    (void)commands_.CommitChanges(false);
}

EditParameterContext MonitorWiring::editorContext()
{
    const MonitorContext& c = s_.context;
    EditParameterContext context { c.globals, c.settings, c.dialogs, c.programFolder,
        editParameterModal(s_.binder, c.loop), s_.screen, c.errors };
    frmMain& form = c.form;
    context.writePending = [&form](bool on) { form.WritePending(on); };
    context.openHelpLink = [this] { monitor_.helpLink(); };
    context.stateUpdateDue = [this] { monitor_.poll.requestRefresh(); };
    return context;
}

// The monitor's operations and the start-up's splash; the connect path stays the application's.
CommandHooks MonitorWiring::commandHooks()
{
    CommandHooks hooks;
    hooks.SetMousePointer = s_.setMousePointer;
    hooks.UpdateDeviceBits = [this] { monitor_.poll.UpdateDeviceBits(); };
    hooks.LoadTabs = [this] { monitor_.tabs.LoadTabs(); };
    hooks.Parameters_ReadAll = [this] { (void)monitor_.edits.Parameters_ReadAll(); };
    hooks.UpdateDynamicData = [this] { (void)monitor_.poll.UpdateDynamicData(); };
    hooks.rebuildLists = [this] {
        monitor_.context.form.lvGateway.setText(kGatewayRow, "Online");
        monitor_.poll.GatewayState = 1;
        monitor_.tabs.setUpLists();
        monitor_.tabs.NodeGrid_Load(1);
        monitor_.plot.BuildPlotChannels();
    };
    hooks.deferCommit = [this] { monitor_.poll.runOrDefer(PendingCommand::Commit); };
    hooks.clearCalibrationPending = [this] { calibration_.mode.CalibrationPending = false; };
    hooks.showSplash = s_.showSplash;
    hooks.closeSplash = s_.closeSplash;
    hooks.bringToFront = s_.bringToFront;
    hooks.showModal = platform::ui::eventLoopModal(s_.context.loop);
    hooks.onWindowCreated = s_.bindWindow;
    return hooks;
}

OutputServices MonitorWiring::outputServices()
{
    const MonitorContext& c = s_.context;
    clsMain* main = &c.main;
    frmMain& form = c.form;
    MonitorActions actions;
    actions.setMousePointer = s_.setMousePointer;
    actions.readAllParameters = [this] { return monitor_.edits.Parameters_ReadAll(); };
    actions.readSelected = [this] { monitor_.edits.Parameters_ReadSelected(); };
    actions.loadTabs = [this] { monitor_.tabs.LoadTabs(); };
    actions.resetXY = [this] { monitor_.plot.ResetXY(); };
    actions.requestRefresh = [this] { monitor_.poll.requestRefresh(); };
    return { c.globals, c.settings, c.dialogs, c.loop, c.programFolder, [main] { return main; },
        [&form] {
            ParameterViews views { &form.SSTab, {}, &form.SSTab1, {}, &form.lvNodes, form.CurrentTab };
            for (auto& list : form.lvParameters)
                views.packLists.push_back(&list);
            for (auto& list : form.lvProperties)
                views.cellLists.push_back(&list);
            return views;
        },
        std::move(actions) };
}

// The calibration windows are bound to their forms when they are made, for the time they live.
CalibrationCommandHooks MonitorWiring::calibrationHooks()
{
    CalibrationCommandHooks hooks;
    hooks.isTheDeviceWired = [this] { return commands_.IsTheDeviceWired(); };
    hooks.commitChanges = [this] { return commands_.CommitChanges(false); };
    hooks.isPolling = [this] { return s_.context.globals.PollingActive; };
    hooks.setMousePointer = s_.setMousePointer;
    hooks.bringToFront = s_.bringToFront;
    hooks.showModal = platform::ui::eventLoopModal(s_.context.loop);
    hooks.onWindowCreated = [this](platform::ui::Window& window) {
        if (auto form = makeCalibrationFormFor(window))
            (void)s_.binder.bind(window, std::move(form));
    };
    return hooks;
}

// The pack configuration flows on the monitor, the device commands and the start-up's splash; the
// new detection after a load is the application's reload.
PackFlowHooks MonitorWiring::packHooks()
{
    const MonitorContext& c = s_.context;
    frmMain& form = c.form;
    AppGlobals& globals = c.globals;
    PackFlowHooks hooks;
    hooks.IsTheDeviceWired = [this] { return commands_.IsTheDeviceWired(); };
    hooks.pollingActive = [&globals] { return globals.PollingActive; };
    hooks.disableAllCommands = [&form] { form.disableAllCommands(true); };
    hooks.enableAllCommands = [&form] { form.enableAllCommands(true); };
    hooks.SetMousePointer = s_.setMousePointer;
    hooks.showSplash = s_.showSplash;
    hooks.closeSplash = s_.closeSplash;
    hooks.login = [this](const PasswordBytes& bytes) {
        const MonitorContext& context = s_.context;
        auto target = std::make_shared<TargetOperations>(context.main.CellWeft());
        CommandLock lock { [target] { return target->UnlockDevice(); },
            [target] { return target->EnableUlmarCommandSet(); },
            [target] { return target->DisableUlmarCommandSet(); }, [target] { return target->LockDevice(); },
            [target] { return target->GetAccessLevel(); } };
        AccessServices access { context.main, context.globals, context.dialogs, lock };
        return LoginWithPassword(access, bytes);
    };
    hooks.CommitChanges = [this] { return commands_.CommitChanges(false); };
    hooks.CommandInitialize = [this](bool relearn) { return commands_.CommandInitialize(relearn); };
    hooks.detectTarget = [this] {
        if (monitor_.edits.hooks.reload)
            monitor_.edits.hooks.reload();
        return true;
    };
    hooks.Parameters_ReadAll = [this] { return monitor_.edits.Parameters_ReadAll(); };
    hooks.UpdateTabs = [this](const clsSMBusParameter& parameter) { monitor_.tabs.UpdateTabs(parameter); };
    hooks.redraw = [this] { monitor_.tabs.LoadTabs(); };
    return hooks;
}

// The edit dialog behind a double click, the commit and the wired check of the writes.
void MonitorWiring::wireMonitor()
{
    ParameterEdits& edits = monitor_.edits;
    edits.hooks.editParameter = [this](clsSMBusParameter& parameter, int node) {
        return EditResult { editor_.Edit(parameter.ParameterName, node).autoWrite };
    };
    edits.hooks.isTheDeviceWired = [this] { return commands_.IsTheDeviceWired(); };
    edits.hooks.commit = [this] { commitChanges(); };
    edits.hooks.setMousePointer = s_.setMousePointer;
    edits.hooks.closeSplash = s_.closeSplash;
    monitor_.poll.actions[static_cast<std::size_t>(PendingCommand::Commit)] = [this] { commitChanges(); };
    frmMain& form = s_.context.form;
    form.popupMenu = [this, &form](platform::ui::MenuItem& menu) {
        QWidget* window = s_.binder.widgetOf(form);
        if (auto* popup = window ? window->findChild<QMenu*>(QString::fromStdString(menu.name())) : nullptr)
            popup->exec(QCursor::pos());
    };
}

} // namespace zv::qt
