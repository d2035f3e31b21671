#include "monitor/parameter_edits.h"

#include "core/active_form.h"
#include "core/error_handler.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/list_values.h"
#include "monitor/main_title.h"
#include "monitor/parameter_tabs.h"
#include "monitor/poll_cycle.h"
#include "monitor/unexpected_error.h"

#include <utility>

namespace zv {

namespace {

using platform::ui::ListView;

constexpr int kHourglass = 11;
constexpr int kDefaultPointer = 0;
constexpr int kOffline = 1;

} // namespace

ParameterEdits::ParameterEdits(MonitorContext& context, ParameterTabs& tabs, PollCycle& poll)
    : c_(context)
    , tabs_(tabs)
    , poll_(poll)
{
}

bool ParameterEdits::offline() const
{
    return c_.main.CellWeft().Status() == kOffline;
}

int ParameterEdits::node(bool property) const
{
    return property ? c_.globals.CurrentNode : 0;
}

void ParameterEdits::pointer(int kind)
{
    if (hooks.setMousePointer)
        hooks.setMousePointer(kind);
}

void ParameterEdits::editRow(ListView& list, const std::string& key, bool property)
{
    const platform::ui::ListRow* row = list.row(key);
    if (offline() || poll_.ReadingAllParameters || !row || row->icon != "readwrite" || !hooks.editParameter)
        return;
    clsSMBusParameter* parameter = tabs_.parameterOfRow(list, key, node(property));
    if (!parameter)
        return;
    const EditResult outcome = hooks.editParameter(*parameter, node(property));
    const bool pending = hasNewValue(*parameter);
    if (pending && outcome.autoWrite) {
        commitAfterWrite_ = true;
        mnuWritePendingChanges();
        return;
    }
    list.setSubItem(key, 1, editedValueText(*parameter, c_.main.CellWeft().Parameters.display));
    list.setBold(key, pending);
    if (pending)
        c_.form.WritePending(true);
}

void ParameterEdits::lvStatus_DblClick()
{
    ListView& list = tabs_.currentParameters();
    const std::string key = list.selectedKey();
    const clsSMBusParameter* parameter = key.empty() ? nullptr : tabs_.parameterOfRow(list, key, 0);
    if (parameter && parameter->SubBlockDataType == 0)
        editRow(list, key, false);
}

void ParameterEdits::mnuWritePendingChanges()
{
    if (hooks.isTheDeviceWired && !hooks.isTheDeviceWired()) {
        commitAfterWrite_ = false;
        return;
    }
    poll_.runOrDefer(PendingCommand::WritePendingChanges);
}

void ParameterEdits::showCommitHint()
{
    if (!c_.main.CellWeft().Parameters.ParametersWritten || (otherStatusFlag && otherStatusFlag()))
        return;
    frmMain& f = c_.form;
    f.Notify("Commit changes to flash",
        "Parameter changes are saved in RAM\r\nuntil you commit the changes to FLASH.\r\nYou can use the "
        "shortcut Ctrl C",
        platform::Icon::Information);
    for (auto* item : { &f.mnuCommit, &f.mnuParameters_commit })
        item->setEnabled(f.isWired(*item));
}

void ParameterEdits::WritePendingChanges()
{
    const int refusals = c_.form.FileAccessErrors;
    pointer(kHourglass);
    try {
        writePending();
    } catch (const std::exception& e) {
        if (!c_.errors)
            throw;
        (void)c_.errors->ReportError(unexpectedError(e), "frmMain", "WritePendingChanges");
    }
    pointer(kDefaultPointer);
    // While polling the write runs on a later tick: the commit entries follow it from here, once
    // the driver knows whether anything waits for the commit.
    const bool commitNow = std::exchange(commitAfterWrite_, false);
    if (!commitNow) {
        showCommitHint();
    } else if (c_.main.CellWeft().Parameters.ParametersWritten) {
        poll_.runOrDefer(PendingCommand::Commit);
    }
    // The read-backs and the hint have written over the panel since: the device's reason for a
    // refusal stays in view.
    if (c_.form.FileAccessErrors != refusals)
        c_.form.sbStatusBar.setPanelText(kInfoPanel, c_.form.LastFileAccessError);
}

void ParameterEdits::writePending()
{
    clsCellWeft& driver = c_.main.CellWeft();
    const int cell = c_.globals.CurrentNode;
    for (clsSMBusParameter& parameter : tabs_.parametersOf(cell)) {
        if (!hasNewValue(parameter))
            continue;
        if (cell == 0 && hooks.logChange)
            hooks.logChange(parameter);
        (void)driver.WriteParameter(parameter.ParameterName, cell);
        (void)driver.ReadParameter(parameter.ParameterName, cell);
    }
    (void)driver.GetScaling();
    tabs_.LoadTabs();
}

void ParameterEdits::revert(ListView& list, const std::string& key, bool property)
{
    clsSMBusParameter* parameter = tabs_.parameterOfRow(list, key, node(property));
    if (!parameter)
        return;
    parameter->NewValue = DynamicValue();
    list.setSubItem(key, 1,
        parameter->ToString(parameter->SubBlockDataType == 0 ? 3 : 0, c_.main.CellWeft().Parameters.display));
    list.setBold(key, false);
    tabs_.LoadTabs();
    list.setSelectedKey(key);
}

void ParameterEdits::revertAll()
{
    clsCellWeft& driver = c_.main.CellWeft();
    for (clsSMBusParameter& parameter : driver.GatewayParameters)
        parameter.NewValue = DynamicValue();
    for (clsNode& cell : driver.nodes) {
        for (clsSMBusParameter& parameter : cell.NodeParameters)
            parameter.NewValue = DynamicValue();
    }
    tabs_.LoadTabs();
}

void ParameterEdits::readThis(ListView& list, const std::string& key)
{
    clsSMBusParameter* parameter = tabs_.parameterOfRow(list, key, 0);
    if (!parameter)
        return;
    (void)c_.main.CellWeft().ReadParameter(parameter->ParameterName, 0);
    parameter->NewValue = DynamicValue();
    list.setSubItem(key, 1,
        parameter->ToString(parameter->SubBlockDataType == 0 ? 3 : 0, c_.main.CellWeft().Parameters.display));
    list.setBold(key, false);
}

bool ParameterEdits::Parameters_ReadAll()
{
    pointer(kHourglass);
    poll_.ReadingAllParameters = true;
    const bool read = c_.main.CellWeft().GetAllValues();
    poll_.ReadingAllParameters = false;
    if (!read) {
        if (hooks.closeSplash)
            hooks.closeSplash();
        const platform::Answer answer = c_.dialogs.messageBox(
            "An error has occurred while reading the parameters.\r\nThe data displayed may not reflect any "
            "recent changes.\r\nWhat would you like to do?",
            platform::Buttons::AbortRetryIgnore, platform::Icon::Information, "Error Reading Data");
        if (answer == platform::Answer::Abort) {
            pointer(kDefaultPointer);
            return false;
        }
        if (answer == platform::Answer::Retry) {
            if (hooks.reload)
                hooks.reload();
            return Parameters_ReadAll();
        }
    }
    pointer(kDefaultPointer);
    if (!c_.mainFormActive || c_.mainFormActive()) {
        if (!c_.globals.PollingActive) {
            mnuPollAllOnce();
            (void)poll_.ReadSafetyData();
        }
        tabs_.LoadTabs();
        if (c_.globals.CurrentNode > 0)
            tabs_.NodeGrid_Load(c_.globals.CurrentNode);
    }
    return true;
}

void ParameterEdits::mnuPollAllOnce()
{
    c_.form.sbStatusBar.setPanelText(kInfoPanel, "Updating dynamic data");
    poll_.runOrDefer(PendingCommand::ReadSelected);
    c_.form.sbStatusBar.setPanelText(kInfoPanel, "Updating dynamic data complete");
}

void ParameterEdits::Parameters_ReadSelected()
{
    if (offline())
        return;
    c_.form.sbStatusBar.setPanelText(kInfoPanel, "Reading Dynamic Data");
    pointer(kHourglass);
    (void)poll_.UpdateDynamicData();
    pointer(kDefaultPointer);
    c_.form.sbStatusBar.setPanelText(kInfoPanel, "Reading Dynamic Data Complete");
}

void ParameterEdits::lvNodes_Click(const std::string& key)
{
    const clsCellWeft& driver = c_.main.CellWeft();
    if (offline() || c_.globals.gNodeCount == 0 || poll_.ReadingAllParameters)
        return;
    int cell = cellOfKey(key);
    if (cell > driver.nodes.Count())
        cell = 0;
    if (cell == c_.globals.CurrentNode)
        return;
    c_.globals.CurrentNode = cell;
    if (cell > 0)
        tabs_.NodeGrid_Load(cell);
    if (c_.globals.PollingActive)
        c_.form.mnuWritePendingChanges.setEnabled(
            cell == 0 && c_.form.isWired(c_.form.mnuWritePendingChanges));
}

void ParameterEdits::lvNodes_ColumnClick(int column)
{
    if (column != 0)
        return;
    frmMain& f = c_.form;
    f.CellsChecked = !f.CellsChecked;
    for (const auto& row : f.lvNodes.rows())
        f.lvNodes.setChecked(row.key, f.CellsChecked);
}

void ParameterEdits::lvParameters_Click(const std::string& key)
{
    c_.globals.CurrentNode = 0;
    if (offline())
        return;
    frmMain& f = c_.form;
    const clsSMBusParameter* parameter = tabs_.parameterOfRow(tabs_.currentParameters(), key, 0);
    if (parameter && parameter->SubBlockDataType == 0) {
        f.fraStatus.setCaption(kBitEncodedCaption);
        if (tabs_.listBits)
            tabs_.listBits(*parameter);
    } else {
        f.lvStatus.clear();
    }
}

void ParameterEdits::SSTab_Click()
{
    frmMain& f = c_.form;
    f.CurrentTab = f.SSTab.selectedIndex();
    const ListView& list = tabs_.currentParameters();
    if (!list.selectedKey().empty())
        lvParameters_Click(list.selectedKey());
    const auto& tabs = f.SSTab.tabs();
    const bool graph = f.CurrentTab >= 0 && f.CurrentTab < static_cast<int>(tabs.size())
        && tabs[static_cast<std::size_t>(f.CurrentTab)].caption == "OCV Graph";
    f.lvStatus.setVisible(!graph);
}

} // namespace zv
