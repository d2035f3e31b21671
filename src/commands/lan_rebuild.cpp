// The rebuild of the cell network from the menu: the driver's rebuild, then the lists, tabs and
// plot channels made again for the cells the device now reports.

#include "commands/device_commands.h"

#include "core/active_form.h"
#include "core/app_error.h"
#include "core/error_handler.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "platform/dialogs.h"

namespace zv {

namespace {

constexpr int kBuilt = 0;
constexpr int kFailed = 2; // the driver tells no timeout apart
constexpr int kAlreadyBuilt = 3;
constexpr int kCellConfiguration = 2;

} // namespace

void DeviceCommands::mnuRebuildLAN_Click()
{
    if (!IsTheDeviceWired())
        return;
    if (s_.dialogs.messageBox(
            "Rebuild will cause all data to be removed from the plot.\nDo you want to proceed?",
            platform::Buttons::YesNo, platform::Icon::Question, "Confirm Rebuild")
        != platform::Answer::Yes)
        return;
    s_.window.sbStatusBar.setPanelText(kInfoPanel, "Rebuild LAN command issued");
    s_.window.disableAllCommands(false);
    Rebuild_LAN();
    s_.window.mnuRebuildLAN.setEnabled(true);
}

void DeviceCommands::Rebuild_LAN()
{
    pointer(kHourglass);
    const int code = rebuildCode();
    if (code == kBuilt || code == kAlreadyBuilt)
        rebuildViews();
    else
        s_.dialogs.messageBox("An error has occurred while trying to rebuild.\nIf this problem persists, "
                              "please contact Norvale Systems",
            platform::Buttons::OK, platform::Icon::Critical, "");
    reportRebuild(code);
    pointer(kDefaultPointer);
}

// A first look without the command tells a network that is already built (the counts agree)
// from one that the command has to build.
int DeviceCommands::rebuildCode()
{
    auto& parameters = driver().Parameters;
    if (!driver().RebuildLAN(true))
        return kFailed;
    if (parameters.gCellsMatch)
        return kAlreadyBuilt;
    return driver().RebuildLAN(false) ? kBuilt : kFailed;
}

void DeviceCommands::rebuildViews()
{
    auto& d = driver();
    s_.globals.gCellsMatch = d.Parameters.gCellsMatch;
    s_.globals.gNodeCount = static_cast<std::uint8_t>(d.nodes.Count());
    d.Parameters.gNodeCount = s_.globals.gNodeCount;
    (void)d.readConfig(kCellConfiguration);
    d.Parameters.CountParametersPerFile();
    run(hooks_.rebuildLists);
    run(hooks_.LoadTabs);
    run(hooks_.BuildPlotChannels);
    s_.window.enableAllCommands(false);
    s_.window.sbStatusBar.setPanelText(kNodesPanel, std::to_string(s_.globals.gNodeCount) + " Cells");
}

void DeviceCommands::reportRebuild(int code)
{
    switch (code) {
    case kBuilt:
        s_.window.sbStatusBar.setPanelText(kInfoPanel, "Rebuild LAN Successful");
        break;
    case kAlreadyBuilt:
        s_.window.sbStatusBar.setPanelText(
            kInfoPanel, "The LAN is already built to the 'Expected Number Of Cells'");
        break;
    default:
        if (s_.errors)
            s_.errors->AutoHandler(AppError {}, "frmMain", "Rebuild_LAN", "Error");
        break;
    }
}

} // namespace zv
