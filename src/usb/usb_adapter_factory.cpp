#include "usb/usb_adapter_factory.h"

#include "core/ini_values.h"
#include "usb/i2c_bus_lookup.h"
#include "usb/i2c_dev_adapter.h"
#include "usb/socket_usb_adapter.h"

namespace zv {

namespace {

constexpr std::string_view kSocketPrefix = "socket:";
constexpr std::string_view kI2cPrefix = "i2c:";

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

std::string knownBridge(const std::string& sysRoot)
{
    for (const auto name : kKnownUsbBridges)
        if (const auto bus = findI2cBus(name, sysRoot))
            return bus->device;
    return std::string(kKnownUsbBridges[0]);
}

} // namespace

UsbAdapterChoice chooseUsbAdapter(std::string_view setting, const std::string& sysRoot)
{
    setting = trimmed(setting);
    if (setting.starts_with(kSocketPrefix))
        return { UsbAdapterChoice::Backend::Socket,
            std::string(trimmed(setting.substr(kSocketPrefix.size()))) };
    if (setting.starts_with(kI2cPrefix))
        setting = trimmed(setting.substr(kI2cPrefix.size()));
    if (setting.empty())
        return { UsbAdapterChoice::Backend::I2cDev, knownBridge(sysRoot) };
    return { UsbAdapterChoice::Backend::I2cDev, std::string(setting) };
}

std::unique_ptr<UsbAdapter> makeUsbAdapter(std::string_view setting, const std::string& sysRoot)
{
    auto choice = chooseUsbAdapter(setting, sysRoot);
    if (choice.backend == UsbAdapterChoice::Backend::Socket)
        return std::make_unique<SocketUsbAdapter>(std::move(choice.target));
    return std::make_unique<I2cDevAdapter>(
        std::make_unique<SystemI2cDevice>(), std::move(choice.target), sysRoot);
}

std::string readUsbAdapterSetting(const std::string& iniFile)
{
    return GetINIValue(kUsbAdapterSection, kUsbAdapterKey, iniFile);
}

} // namespace zv
