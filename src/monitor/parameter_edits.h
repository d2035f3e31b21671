#pragma once
// A parameter's way from the lists to the device: the double click that opens the editor, the
// pending values and their write (WritePendingChanges), revert and read back, the reads of all
// parameters (Parameters_ReadAll) and of the dynamic data (Parameters_ReadSelected), and the
// clicks that choose the cell and the tab.

#include "monitor/monitor_context.h"

#include <functional>
#include <string>

namespace zv::platform::ui {
class ListView;
}

namespace zv {

class ParameterTabs;
class PollCycle;
class clsSMBusParameter;

// What the edit dialog left: a NewValue stands or not (in the parameter), and its "Auto write
// value on Ok" box.
struct EditResult {
    bool autoWrite = false;
};

struct EditHooks {
    // Shows the edit dialog for a parameter of the gateway (node 0) or of a cell, modal.
    std::function<EditResult(clsSMBusParameter& parameter, int node)> editParameter;
    // IsTheDeviceWired: false stops a write.
    std::function<bool()> isTheDeviceWired;
    // The mnuCommit command (CommitChanges).
    std::function<void()> commit;
    // A CHANGE line in the open log for a gateway parameter about to be written.
    std::function<void(const clsSMBusParameter&)> logChange;
    // The second start-up stage and LoadMainForm, for Retry after a failed read of all.
    std::function<void()> reload;
    // Hides and closes the splash window when it is open.
    std::function<void()> closeSplash;
    // SetMousePointer on every open window: 11 the hourglass, 0 the default.
    std::function<void(int)> setMousePointer;
};

class ParameterEdits {
public:
    ParameterEdits(MonitorContext& context, ParameterTabs& tabs, PollCycle& poll);

    // Double click on a row of a gateway list (node 0) or of a property list (CurrentNode).
    void editRow(platform::ui::ListView& list, const std::string& key, bool property);
    // A double click in the bit list edits the bit-encoded parameter of the selected gateway row.
    void lvStatus_DblClick();
    // mnuWritePendingChanges and mnuParameters_Write.
    void mnuWritePendingChanges();
    // Writes every pending value of the gateway or the selected cell, then sets the commit
    // entries and the hint by what the write left.
    void WritePendingChanges();
    void revert(platform::ui::ListView& list, const std::string& key, bool property);
    void revertAll();
    void readThis(platform::ui::ListView& list, const std::string& key);
    [[nodiscard]] bool Parameters_ReadAll();
    void Parameters_ReadSelected();
    // mnuPollAllOnce: one sample for the lists (neither plot nor log).
    void mnuPollAllOnce();

    void lvNodes_Click(const std::string& key);
    void lvNodes_ColumnClick(int column);
    void lvParameters_Click(const std::string& key);
    void SSTab_Click();

    EditHooks hooks;
    // The commit hint after a write also needs the driver's other status flag clear.
    std::function<bool()> otherStatusFlag;

private:
    [[nodiscard]] bool offline() const;
    [[nodiscard]] int node(bool property) const;
    void showCommitHint();
    void writePending();
    void pointer(int kind);

    MonitorContext& c_;
    ParameterTabs& tabs_;
    PollCycle& poll_;
    // "Auto write value on Ok": the commit follows the write once it has run.
    bool commitAfterWrite_ = false;
};

} // namespace zv
