#include "platform/port_devices.h"

#include "platform/settings_store.h"

#include <filesystem>

namespace zv::platform {

namespace {

constexpr int kFirstAcmPort = 9;

} // namespace

std::string devicePathForPort(int n, const SettingsStore& settings)
{
    if (n < 1)
        return {};
    if (auto mapped = settings.value(std::string(kPortsKeyPath), "COM" + std::to_string(n)); !mapped.empty())
        return mapped;
    if (n < kFirstAcmPort)
        return "/dev/ttyUSB" + std::to_string(n - 1);
    if (n <= kHighestListedPort)
        return "/dev/ttyACM" + std::to_string(n - kFirstAcmPort);
    return {};
}

bool deviceExists(const std::string& path)
{
    if (path.empty())
        return false;
    std::error_code error;
    return std::filesystem::is_character_file(path, error);
}

bool portExists(int n, const SettingsStore& settings)
{
    return deviceExists(devicePathForPort(n, settings));
}

} // namespace zv::platform
