#pragma once
// Every value kept under the main settings key, with its default: the one table of them.

#include "platform/settings_store.h"

#include <span>
#include <string>
#include <string_view>

namespace zv {

enum class ReadAt {
    Startup, // read once into the globals when the application starts
    OnUse, // read where it is used
};

struct SettingDefinition {
    std::string_view name;
    std::string_view defaultText;
    ReadAt readAt;
    // The default is a path below the program folder.
    bool inProgramFolder = false;
};

[[nodiscard]] std::span<const SettingDefinition> settingDefinitions();

// The definition of a setting; throws std::out_of_range for a name that is not in the table.
[[nodiscard]] const SettingDefinition& settingDefinition(std::string_view name);
[[nodiscard]] std::string settingDefault(std::string_view name, const std::string& programFolder);

// A value of the main key with its default from the table.
[[nodiscard]] std::string readSetting(
    const platform::SettingsStore& store, std::string_view name, const std::string& programFolder);
void writeSetting(platform::SettingsStore& store, std::string_view name, const std::string& text);

// The per-target log definitions in use, by default the target's SLOG and DLOG files.
[[nodiscard]] std::string readStaticDefinitionFile(const platform::SettingsStore& store,
    const std::string& programFolder, std::string_view targetName, std::string_view slog);
[[nodiscard]] std::string readDynamicDefinitionFile(const platform::SettingsStore& store,
    const std::string& programFolder, std::string_view targetName, std::string_view dlog);

} // namespace zv
