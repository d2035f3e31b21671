#include "logging/log_settings.h"

#include "core/globals.h"
#include "core/registry.h"
#include "core/settings_table.h"
#include "core/target_table.h"
#include "platform/settings_store.h"

namespace zv {

namespace {

struct TargetLogFiles {
    std::string name;
    std::string slog;
    std::string dlog;
};

TargetLogFiles targetLogFiles(const AppGlobals& globals)
{
    TargetLogFiles files { globals.gTargetName, {}, {} };
    if (globals.gINIFile.empty())
        return files;
    if (const auto target = findTargetById(readTargetTable(globals.gINIFile), globals.gTargetID)) {
        files.name = target->Name;
        files.slog = target->SLOG;
        files.dlog = target->DLOG;
    }
    return files;
}

} // namespace

LogSettings readLogSettings(
    const platform::SettingsStore& store, const AppGlobals& globals, const std::string& programFolder)
{
    const TargetLogFiles target = targetLogFiles(globals);
    LogSettings s;
    s.LogFilePath = readSetting(store, "LogFile", programFolder);
    s.StaticDefinitionFile = readStaticDefinitionFile(store, programFolder, target.name, target.slog);
    s.DynamicDefinitionFile = readDynamicDefinitionFile(store, programFolder, target.name, target.dlog);
    s.AutoLogging = readSetting(store, "AutoLogging", programFolder) == "1";
    s.DecimationRate = readSetting(store, "DecimationRate", programFolder);
    return s;
}

void storeLogSettings(platform::SettingsStore& store, const AppGlobals& globals, const LogSettings& settings)
{
    const std::string key = targetKey(targetLogFiles(globals).name);
    writeSetting(store, "DecimationRate", settings.DecimationRate);
    SetRegistryValue(store, key, "StaticDefinitionFile", settings.StaticDefinitionFile);
    SetRegistryValue(store, key, "DynamicDefinitionFile", settings.DynamicDefinitionFile);
    writeSetting(store, "LogFile", settings.LogFilePath);
    writeSetting(store, "AutoLogging", settings.AutoLogging ? "1" : "0");
}

} // namespace zv
