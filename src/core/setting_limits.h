#pragma once
// The numeric settings that pace and bound the device link, each with the range it must keep.
// A stored value that is not a number in its range is refused: the default is used and the
// problem names the key, so that a typing error cannot hang or flood the link.

#include "platform/settings_store.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct SettingLimit {
    std::string_view name;
    long low;
    long high;
};

[[nodiscard]] std::span<const SettingLimit> settingLimits();

struct BoundedSetting {
    long value = 0;
    std::string problem; // empty when the stored value was used
};

// The setting's number, or its default when the stored text is not a whole number from low to
// high. name must be in settingLimits().
[[nodiscard]] BoundedSetting readBoundedSetting(
    const platform::SettingsStore& store, std::string_view name, const std::string& programFolder);

// The problems of every bounded setting, one line each.
[[nodiscard]] std::vector<std::string> settingLimitProblems(
    const platform::SettingsStore& store, const std::string& programFolder);

} // namespace zv
