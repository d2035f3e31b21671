#include "driver/target_operations.h"

#include "driver/cellweft.h"

namespace zv {

TargetOperations::TargetOperations(clsCellWeft& driver)
    : driver_(driver)
    , usb_(driver.usbTransport())
{
}

int TargetOperations::UnlockDevice()
{
    return usb_ ? driver_.Usb.usbUnlockDevice() : driver_.Bus.UnlockDevice();
}

bool TargetOperations::EnableUlmarCommandSet()
{
    return usb_ ? driver_.Usb.usbEnableUlmarCommandSet() : driver_.Bus.EnableUlmarCommandSet();
}

bool TargetOperations::DisableUlmarCommandSet()
{
    return usb_ ? driver_.Usb.usbDisableUlmarCommandSet() : driver_.Bus.DisableUlmarCommandSet();
}

bool TargetOperations::LockDevice()
{
    return usb_ ? driver_.Usb.usbLockDevice() : driver_.Bus.LockDevice();
}

int TargetOperations::GetHardwareState()
{
    return usb_ ? driver_.Usb.usbGetHardwareState() : driver_.Bus.GetHardwareState();
}

int TargetOperations::GetTargetID()
{
    return usb_ ? driver_.Usb.usbGetTargetID() : driver_.Bus.GetTargetID();
}

int TargetOperations::GetAccessLevel()
{
    return usb_ ? driver_.Usb.usbGetAccessLevel() : driver_.Bus.GetAccessLevel();
}

std::optional<int> TargetOperations::readWord(std::uint8_t command)
{
    if (!usb_)
        return driver_.Bus.SMBus_ReadWord(command);
    int value = 0;
    if (driver_.Usb.usbReadIntWord(driver_.Usb.targetAddress(), command, value) != kUsbOk)
        return std::nullopt;
    return value;
}

std::optional<std::vector<std::uint8_t>> TargetOperations::readBlock(std::uint8_t command)
{
    return driver_.readBlock(command);
}

} // namespace zv
