#pragma once
// The settings of the log writer: the log file, the two definition files of the target and the
// AutoLogging switch, read with their defaults and stored by the logging dialog.

#include <string>

namespace zv::platform {
class SettingsStore;
}

namespace zv {

struct AppGlobals;

inline constexpr const char* kNotDefined = "Not Defined";

struct LogSettings {
    std::string LogFilePath; // "LogFile"
    std::string StaticDefinitionFile; // of the target; empty or "Not Defined": none
    std::string DynamicDefinitionFile;
    bool AutoLogging = false;
    std::string DecimationRate = "1";

    [[nodiscard]] bool hasStatic() const { return isDefined(StaticDefinitionFile); }
    [[nodiscard]] bool hasDynamic() const { return isDefined(DynamicDefinitionFile); }
    [[nodiscard]] static bool isDefined(const std::string& path)
    {
        return !path.empty() && path != kNotDefined;
    }
};

// The definition files default to the target's SLOG and DLOG of Zentavia.ini, in
// "Data Logging Files" under the program folder.
[[nodiscard]] LogSettings readLogSettings(
    const platform::SettingsStore& store, const AppGlobals& globals, const std::string& programFolder);
void storeLogSettings(platform::SettingsStore& store, const AppGlobals& globals, const LogSettings& settings);

} // namespace zv
