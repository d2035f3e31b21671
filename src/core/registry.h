#pragma once
// Named values of the settings store under key paths, always read with a default.

#include "platform/settings_store.h"

#include <string>
#include <string_view>

namespace zv {

inline constexpr std::string_view kMainKey = "Software\\Norvale Systems\\Zentavia 3\\Settings";

// The per-target key: main key + "\Targets\" + the target's name.
[[nodiscard]] std::string targetKey(std::string_view targetName);

// The stored text without trailing NULs; a missing value or an empty text gives defaultText.
[[nodiscard]] std::string GetRegistryValue(const platform::SettingsStore& store, const std::string& key,
    const std::string& value, const std::string& defaultText);

// Writes one text value; the store ignores failures.
void SetRegistryValue(platform::SettingsStore& store, const std::string& key, const std::string& value,
    const std::string& text);

} // namespace zv
