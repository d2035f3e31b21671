#include "usb/i2c_bus_lookup.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>

namespace zv {

namespace fs = std::filesystem;

namespace {

// The folders that list the buses, in the order they are looked at.
constexpr const char* kBusFolders[] = { "class/i2c-dev", "bus/i2c/devices" };

std::string lower(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](unsigned char c) { return std::tolower(c); });
    return result;
}

std::optional<int> busNumber(const std::string& entry)
{
    constexpr std::string_view prefix = "i2c-";
    if (!entry.starts_with(prefix))
        return std::nullopt;
    int number = 0;
    const char* first = entry.data() + prefix.size();
    const char* last = entry.data() + entry.size();
    const auto [end, error] = std::from_chars(first, last, number);
    if (error != std::errc {} || end != last || first == last)
        return std::nullopt;
    return number;
}

std::string firstLine(const fs::path& path)
{
    std::ifstream in(path);
    std::string line;
    std::getline(in, line);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.pop_back();
    return line;
}

// Bus number to adapter name, over both folders (the first folder that names a bus wins).
std::map<int, std::string> busNames(const std::string& sysRoot)
{
    std::map<int, std::string> names;
    for (const char* folder : kBusFolders) {
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(fs::path(sysRoot) / folder, error)) {
            const auto number = busNumber(entry.path().filename().string());
            if (!number || names.contains(*number))
                continue;
            auto name = firstLine(entry.path() / "name");
            if (!name.empty())
                names.emplace(*number, std::move(name));
        }
    }
    return names;
}

} // namespace

std::optional<I2cBus> findI2cBus(std::string_view nameSubstring, const std::string& sysRoot)
{
    const auto wanted = lower(nameSubstring);
    if (wanted.empty())
        return std::nullopt;
    for (const auto& [number, name] : busNames(sysRoot))
        if (lower(name).find(wanted) != std::string::npos)
            return I2cBus { "/dev/i2c-" + std::to_string(number), name };
    return std::nullopt;
}

std::string i2cBusName(const std::string& device, const std::string& sysRoot)
{
    const auto number = busNumber(fs::path(device).filename().string());
    if (!number)
        return {};
    const auto names = busNames(sysRoot);
    const auto found = names.find(*number);
    return found == names.end() ? std::string {} : found->second;
}

} // namespace zv
