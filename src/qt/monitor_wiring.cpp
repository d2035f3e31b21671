#include "qt/monitor_wiring.h"

#include "commands/wire_commands.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "platform/ui/show_modal.h"
#include "qt/binder.h"
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
{
    wireMonitor();
    wireDeviceCommands(s_.context.form, commands_);
    wireOutputCommands(s_.context.form, outputs_);
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
