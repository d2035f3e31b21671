#include "monitor/monitor.h"

#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/panel_sizes.h"
#include "platform/event_loop.h"

namespace zv {

namespace {

using platform::ui::MenuItem;

} // namespace

Monitor::Monitor(MonitorContext monitorContext)
    : context(std::move(monitorContext))
{
    wireLoadSteps();
    wireMenus();
    wireLists();
    wirePlot();
    wireStatusPanes();
    context.form.refreshAvailability();
}

Monitor::~Monitor()
{
    context.main.hooks.broadcastAlarm = nullptr;
    context.main.hooks.hlkPanel = nullptr;
    context.main.hooks.restartCommStatusTimer = nullptr;
}

void Monitor::wireLoadSteps()
{
    MonitorLoadSteps& steps = context.form.monitorSteps;
    steps.lists = [this] {
        context.globals.PollingActive = false;
        tabs.setUpLists();
    };
    steps.offline = [this] {
        context.form.lvGateway.setText(kGatewayRow, "Offline");
        poll.GatewayState = 2;
    };
    steps.tabs = [this] {
        tabs.loadTabCaptions();
        panes.buildRows();
    };
    steps.pollRate = [this] {
        poll.fillPollRate();
        poll.tmrHeartbeat().setEnabled(!context.globals.gDemo && context.main.CellWeft().Status() == 0);
    };
}

void Monitor::wireMenus()
{
    frmMain& f = context.form;
    auto& actions = poll.actions;
    const auto action = [&actions](PendingCommand command) -> std::function<void()>& {
        return actions[static_cast<std::size_t>(command)];
    };
    // Link entries that the window already opens become pending commands of the poll.
    const auto defer = [this, &action](MenuItem& item, PendingCommand command) {
        if (!item.onClick)
            return;
        action(command) = item.onClick;
        item.onClick = [this, command] { poll.runOrDefer(command); };
    };
    defer(f.mnuTechnicalReferenceManual, PendingCommand::RefLink);
    defer(f.mnuInformationOnline, PendingCommand::HelpLink);
    defer(f.mnuPP, PendingCommand::HomePage);

    action(PendingCommand::WritePendingChanges) = [this] { edits.WritePendingChanges(); };
    action(PendingCommand::ReadThis) = [this] { edits.readThis(menus.targetList(), menus.targetKey()); };
    action(PendingCommand::ReadAll) = [this] { (void)edits.Parameters_ReadAll(); };
    action(PendingCommand::ReadSelected) = [this] { edits.Parameters_ReadSelected(); };

    f.mnuPollAllContinuously.onClick = [this] { poll.mnuPollAllContinuously(); };
    f.mnuStopPolling.onClick = [this] { poll.mnuStopPolling(); };
    f.mnuResetPolling.onClick = [this] { poll.mnuResetPolling(); };
    f.mnuPollAllOnce.onClick = [this] { edits.mnuPollAllOnce(); };
    for (auto* item : { &f.mnuReadSelectedNode, &f.mnulvNodes_ReadParameters })
        item->onClick = [this] { poll.runOrDefer(PendingCommand::ReadSelected); };
    for (auto* item : { &f.mnuReadAllNodes, &f.mnuParameters_ReadAll })
        item->onClick = [this] { poll.runOrDefer(PendingCommand::ReadAll); };
    for (auto* item : { &f.mnuWritePendingChanges, &f.mnuParameters_Write })
        item->onClick = [this] { edits.mnuWritePendingChanges(); };
    f.mnuParameters_ReadThis.onClick = [this] { poll.runOrDefer(PendingCommand::ReadThis); };
    f.mnuParameters_Revert.onClick
        = [this] { edits.revert(menus.targetList(), menus.targetKey(), menus.targetIsProperty()); };
    f.mnuParameters_RevertAll.onClick = [this] { edits.revertAll(); };
    f.mnuSelectAll.onClick = [this] { menus.targetList().selectAll(); };
    f.batteryModeTimer = [this](bool run) { poll.runBatteryModeTimer(run); };
    f.mnuParameters_EditThis.onClick
        = [this] { edits.editRow(menus.targetList(), menus.targetKey(), menus.targetIsProperty()); };
}

void Monitor::wireLists()
{
    frmMain& f = context.form;
    tabs.updateDeviceBits = [this] { poll.UpdateDeviceBits(); };
    tabs.parameterClicked = [this](const std::string& key) { edits.lvParameters_Click(key); };
    f.lvNodes.onItemClick = [this](const std::string& key) { edits.lvNodes_Click(key); };
    for (auto& list : f.lvParameters) {
        list.onItemClick = [this](const std::string& key) { edits.lvParameters_Click(key); };
        list.onDblClick = [this, &list](const std::string& key) { edits.editRow(list, key, false); };
        list.onMouseUp = [this, &list](const std::string& key, bool right) {
            menus.parametersMouseUp(list, key, right);
        };
    }
    for (auto& list : f.lvProperties) {
        list.onDblClick = [this, &list](const std::string& key) { edits.editRow(list, key, true); };
        list.onMouseUp = [this, &list](const std::string& key, bool right) {
            menus.propertiesMouseUp(list, key, right);
        };
    }
    for (auto* list : { &f.lvNodes, &f.lvGateway })
        list->onMouseUp = [this](const std::string&, bool right) { menus.nodesMouseUp(right); };
    f.SSTab.onClick = [this] { edits.SSTab_Click(); };
    f.cmbPollRate.onClick = [this] { poll.choosePollRate(context.form.cmbPollRate.listIndex()); };
    wirePanelSizes(f);
}

// The plot's load step, its poll hooks, and the cells' check boxes and the "Cell" header.
void Monitor::wirePlot()
{
    frmMain& f = context.form;
    f.monitorSteps.plot = [this] { plot.loadPlot(); };
    poll.hooks.updatePlot = [this] { plot.UpdatePlot(); };
    poll.hooks.resetPlot = [this] { plot.resetPlot(); };
    f.lvNodes.onItemCheck = [this](const std::string&, bool) { plot.ReconfigurePlotting(); };
    f.lvNodes.onColumnClick = [this](int column) {
        edits.lvNodes_ColumnClick(column);
        plot.ReconfigurePlotting();
    };
}

void Monitor::wireStatusPanes()
{
    frmMain& f = context.form;
    poll.hooks.updateSafetyPanes = [this] { panes.showSafetyWords(); };
    poll.hooks.updateSampleFlags = [this] { panes.showSampleFlags(); };
    tabs.listBits = [this](const clsSMBusParameter& parameter) { panes.showBitEncoded(parameter); };
    tabs.showBits = [this](const clsSMBusParameter& parameter) { panes.UpdatalvStatus(&parameter, false); };
    f.lvGateway.onItemClick = [this](const std::string&) { panes.lvGateway_Click(); };
    f.lvFlags[kSafetyFlagsList].onColumnClick = [this](int column) { panes.showColumnMeanings(column); };
    f.SSTabFlags.onClick = [this] { panes.SSTabFlags_Click(); };
    context.main.hooks.broadcastAlarm = [this](int word) { panes.BroadcastAlarmReceived(word); };
    context.main.hooks.hlkPanel = [this](LinkActivityPicture picture, const std::string& text) {
        static constexpr const char* kPictures[] = { "netNone", "netRX", "netTX", "netBoth" };
        poll.showLinkActivity(kPictures[static_cast<int>(picture)], text);
    };
    context.main.hooks.restartCommStatusTimer = [this] { poll.restartCommStatusTimer(); };
}

} // namespace zv
