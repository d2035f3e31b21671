#pragma once
// Finds an i2c-dev bus by the name its adapter gives in sysfs, so that a USB-to-SMBus bridge is
// found whatever bus number the kernel gave it this time.

#include <optional>
#include <string>
#include <string_view>

namespace zv {

struct I2cBus {
    std::string device; // "/dev/i2c-3"
    std::string name; // "CP2112 SMBus Bridge on hidraw0"
};

// The bus with the lowest number whose adapter name contains nameSubstring (case-insensitive),
// looked up in <sysRoot>/class/i2c-dev/i2c-N/name, then <sysRoot>/bus/i2c/devices/i2c-N/name.
[[nodiscard]] std::optional<I2cBus> findI2cBus(
    std::string_view nameSubstring, const std::string& sysRoot = "/sys");

// The adapter name of one bus device ("/dev/i2c-3"), or empty text.
[[nodiscard]] std::string i2cBusName(const std::string& device, const std::string& sysRoot = "/sys");

} // namespace zv
