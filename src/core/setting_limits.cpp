#include "core/setting_limits.h"

#include "core/settings_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>

namespace zv {

namespace {

// clang-format off
constexpr std::array kLimits = {
    SettingLimit { "T_cmd_to_sts", 0, 1000 },
    SettingLimit { "T_sts_to_sts", 0, 1000 },
    SettingLimit { "T_busy_limit", 100, 600000 },
    SettingLimit { "T_request_limit", 1000, 600000 },
    SettingLimit { "MAX_BLOCK_TRANSFER", 1, 255 },
};
// clang-format on

std::optional<long> wholeNumber(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    long value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end)
        return std::nullopt;
    return value;
}

const SettingLimit& limitOf(std::string_view name)
{
    const auto it = std::ranges::find(kLimits, name, &SettingLimit::name);
    if (it == kLimits.end())
        throw std::out_of_range("no limits for setting " + std::string(name));
    return *it;
}

} // namespace

std::span<const SettingLimit> settingLimits()
{
    return kLimits;
}

BoundedSetting readBoundedSetting(
    const platform::SettingsStore& store, std::string_view name, const std::string& programFolder)
{
    const SettingLimit& limit = limitOf(name);
    const std::string fallbackText = settingDefault(name, programFolder);
    const long fallback = wholeNumber(fallbackText).value_or(limit.low);
    const std::string text = readSetting(store, name, programFolder);
    const auto number = wholeNumber(text);
    if (number && *number >= limit.low && *number <= limit.high)
        return { *number, {} };
    return { fallback,
        "Setting " + std::string(name) + "=\"" + text + "\" is not a whole number from "
            + std::to_string(limit.low) + " to " + std::to_string(limit.high) + "; the default "
            + fallbackText + " is used" };
}

std::vector<std::string> settingLimitProblems(
    const platform::SettingsStore& store, const std::string& programFolder)
{
    std::vector<std::string> problems;
    for (const SettingLimit& limit : kLimits)
        if (auto checked = readBoundedSetting(store, limit.name, programFolder); !checked.problem.empty())
            problems.push_back(std::move(checked.problem));
    return problems;
}

} // namespace zv
