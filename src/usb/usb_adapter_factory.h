#pragma once
// Chooses the USB adapter backend from its setting, the value UsbAdapter of [Setup] in
// Zentavia.ini (beside Communications=1):
//   socket:/run/user/1000/zentavia-usb.sock   the simulator's adapter socket (zentavia-packsim)
//   i2c:CP2112                                the i2c-dev bus whose adapter name contains the text
//   /dev/i2c-3  or  i2c:/dev/i2c-3            that i2c-dev bus
//   CP2112                                    as i2c:CP2112
//   (empty)                                   the first bus of a known USB-to-SMBus bridge
//                                             (kKnownUsbBridges), else CP2112

#include "usb/usb_adapter.h"

#include <memory>
#include <string>
#include <string_view>

namespace zv {

inline constexpr std::string_view kUsbAdapterSection = "Setup";
inline constexpr std::string_view kUsbAdapterKey = "UsbAdapter";
inline constexpr std::string_view kKnownUsbBridges[] = { "CP2112", "MCP2221" };

struct UsbAdapterChoice {
    enum class Backend { Socket, I2cDev };
    Backend backend = Backend::I2cDev;
    std::string target; // socket path; i2c device path or adapter name part
};

[[nodiscard]] UsbAdapterChoice chooseUsbAdapter(
    std::string_view setting, const std::string& sysRoot = "/sys");

// The adapter for a setting as above; it is connected by UsbLink::usbOpen.
[[nodiscard]] std::unique_ptr<UsbAdapter> makeUsbAdapter(
    std::string_view setting, const std::string& sysRoot = "/sys");

// The setting as Zentavia.ini gives it (empty when the key is missing).
[[nodiscard]] std::string readUsbAdapterSetting(const std::string& iniFile);

} // namespace zv
