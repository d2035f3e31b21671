#pragma once
// The output commands of the main window and their wiring to its menu entries: the three pack
// summaries, Preferences, and the parameter pop-up's "Save to CSV File" and "Print".

#include "outputs/frm_preferences.h"
#include "outputs/list_export.h"
#include "outputs/output_services.h"
#include "outputs/pack_summary.h"

#include <functional>

namespace zv {

class frmMain;

class OutputCommands {
public:
    // showModal shows a window and returns once it is hidden; without one the window is shown.
    OutputCommands(OutputServices services, std::function<void(platform::ui::Window&)> showModal = {});
    OutputCommands(const OutputCommands&) = delete;
    OutputCommands& operator=(const OutputCommands&) = delete;

    void mnuPreferences_Click();
    // mnuSaveCSVFile and mnuPrintLvParameters act on the list of the tab shown in SSTab.
    void mnuSaveCSVFile_Click();
    void mnuPrintLvParameters_Click();

    OutputServices services;
    PackSummary summary { services };
    ListExport lists { services };
    frmPreferences preferences { services };

private:
    // Runs the action on the shown tab's list and caption; nothing when there is none.
    template <typename Action> void onCurrentTab(Action action);

    std::function<void(platform::ui::Window&)> showModal_;
};

// Sets the click handlers of the entries the output commands serve and makes them available.
// The commands must outlive the window's use of them.
void wireOutputCommands(frmMain& form, OutputCommands& commands);

} // namespace zv
