#include "firmware_loader/firmware_check.h"

#include "core/globals.h"
#include "firmware_loader/frm_boot_strap_loader.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

namespace zv {

std::optional<KnownFirmwareIssue> knownFirmwareIssue(
    long version, long build, const std::string& programFolder)
{
    const std::string detected = "Warning: The detected firmware " + std::to_string(version) + " build "
        + std::to_string(build) + " has a known issue.\n";
    const std::string question = "\nWould you like to upgrade now?";
    const std::string firmware = programFolder + "/Configuration Files/";
    if (version == 6000 && build == 717)
        return KnownFirmwareIssue { detected
                + "It is recommended that you update the firmware to release 6000 Build 719." + question,
            firmware + "ZK9470/Firmware/FW_0002_0000_6000_0719.enc" };
    if (version == 4452)
        return KnownFirmwareIssue { detected + "Please update the firmware to version 5000" + question,
            firmware + "ZK9460S12/Firmware/FW_0001_0000_5000_0012.enc" };
    return std::nullopt;
}

bool CheckFirmwareAtStartup(const FirmwareCheckServices& s)
{
    if (s.globals.gDemo || !s.openLoader)
        return false;
    const auto issue
        = knownFirmwareIssue(s.globals.gFirmwareVersion, s.globals.gFirmwareBuild, s.programFolder);
    if (!issue)
        return false;
    if (s.dialogs.messageBox(
            issue->text, platform::Buttons::YesNo, platform::Icon::Exclamation, "Firmware Issue Detected")
        != platform::Answer::Yes)
        return false;
    frmBootStrapLoader& loader = s.openLoader();
    if (!loader.AutoLoadImage(issue->imagePath))
        return true;
    loader.chkPreserve.setValue(platform::ui::CheckBox::Unchecked);
    s.loop.processEvents();
    (void)loader.AutoDownload();
    return true;
}

} // namespace zv
