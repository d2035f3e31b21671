// The state bits of "Algorithm Enable" in device file 9 (wired, configured) and the ship bit.

#include "commands/device_commands.h"

#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"

namespace zv {

namespace {

constexpr int kConfigurationFile = 9;
constexpr int kWiredBit = 0x08;
constexpr int kConfiguredBit = 0x20;

} // namespace

void DeviceCommands::mnuToggleSM_Click()
{
    if (IsTheDeviceWired())
        (void)ShipMode();
}

// The wired command lets the device take the next write of bit 3; without it the write is refused.
void DeviceCommands::mnuToggleWired_Click()
{
    if (!Wired())
        return;
    if (!toggleAlgorithmBit("Algorithm Enable", kWiredBit, s_.globals.gAlgEnableBit3))
        return;
    if (s_.globals.gAlgEnableBit3)
        notify("Wired Bit Toggled", "The Wired bit has been successfully changed.", false);
}

void DeviceCommands::mnuToggleConfigure_Click()
{
    if (IsTheDeviceWired())
        (void)toggleAlgorithmBit("Algorithm enable", kConfiguredBit, s_.globals.gAlgEnableBit5);
}

// Reads file 9, flips the bit of "Algorithm Enable", writes it and commits. stateBit takes the
// bit as read before the write; UpdateDeviceBits sets it from the device afterwards. A failed
// read gives the commands back as well, so that the menu is never left switched off.
bool DeviceCommands::toggleAlgorithmBit(const char* parameterName, int bit, bool& stateBit)
{
    auto& d = driver();
    s_.window.disableAllCommands(true);
    pointer(kHourglass);
    std::string text;
    clsSMBusParameter* parameter
        = d.GetFile(kConfigurationFile, text) ? d.FindParameter(parameterName, 0).parameter : nullptr;
    if (parameter) {
        const int value
            = static_cast<int>(parameter->value.asNumber(d.Parameters.display.locale).value_or(0));
        stateBit = (value & bit) != 0;
        parameter->NewValue = stateBit ? (value ^ bit) : (value | bit);
        (void)d.Parameters.WriteParameter(*parameter);
        run(hooks_.UpdateDeviceBits);
        run(hooks_.LoadTabs);
        (void)CommitChanges(false);
    }
    pointer(kDefaultPointer);
    s_.window.enableAllCommands(true);
    return parameter != nullptr;
}

} // namespace zv
