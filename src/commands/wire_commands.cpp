#include "commands/wire_commands.h"

#include "commands/device_commands.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"

namespace zv {

namespace {

struct Entry {
    platform::ui::MenuItem frmMain::*item;
    void (DeviceCommands::*handler)();
};

constexpr Entry kEntries[] = {
    { &frmMain::mnuConnect, &DeviceCommands::mnuConnect_Click },
    { &frmMain::mnuSafeDisconnect, &DeviceCommands::mnuSafeDisconnect_Click },
    { &frmMain::mnuInitialize, &DeviceCommands::mnuInitialize_Click },
    { &frmMain::mnuRebuildLAN, &DeviceCommands::mnuRebuildLAN_Click },
    { &frmMain::mnuRelearn, &DeviceCommands::mnuRelearn_Click },
    { &frmMain::mnuRelearnPreserve, &DeviceCommands::mnuRelearnPreserve_Click },
    { &frmMain::mnuResetFuse, &DeviceCommands::mnuResetFuse_Click },
    { &frmMain::mnuToggleSM, &DeviceCommands::mnuToggleSM_Click },
    { &frmMain::mnuToggleWired, &DeviceCommands::mnuToggleWired_Click },
    { &frmMain::mnuToggleConfigure, &DeviceCommands::mnuToggleConfigure_Click },
    { &frmMain::mnuCommit, &DeviceCommands::mnuCommit_Click },
    { &frmMain::mnuParameters_commit, &DeviceCommands::mnuCommit_Click },
};

} // namespace

void wireDeviceCommands(frmMain& window, DeviceCommands& commands)
{
    for (const Entry& entry : kEntries)
        (window.*entry.item).onClick = [&commands, handler = entry.handler] { (commands.*handler)(); };
    window.refreshAvailability();
    const bool written = commands.ParametersWritten();
    window.mnuCommit.setEnabled(written);
    window.mnuParameters_commit.setEnabled(written);
}

} // namespace zv
