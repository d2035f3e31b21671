#include "core/settings_table.h"

#include "core/paths.h"
#include "core/registry.h"
#include "platform/ini_file.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace zv {

namespace {

constexpr std::string_view kLoggingFolder = "Data Logging Files";

// clang-format off
    constexpr std::array kSettings = {
        SettingDefinition { "CommPort", "1", ReadAt::Startup },
        SettingDefinition { "Baud", "2", ReadAt::Startup },
        SettingDefinition { "Clock", "2", ReadAt::Startup },
        SettingDefinition { "TemperatureUnits", "1", ReadAt::Startup },
        SettingDefinition { "MaxPlottingChannels", "10", ReadAt::Startup },
        SettingDefinition { "ReadWriteLogging", "1", ReadAt::Startup },
        SettingDefinition { "StaticDataCapture", "1", ReadAt::Startup },
        SettingDefinition { "ChargerMode", "1", ReadAt::Startup },
        SettingDefinition { "AlarmMode", "0", ReadAt::Startup },
        SettingDefinition { "ExpandedPlot", "1", ReadAt::Startup },
        SettingDefinition { "ForeColor1", "0", ReadAt::Startup },
        SettingDefinition { "ForeColor2", "0", ReadAt::Startup },
        SettingDefinition { "AlternateRowColor", "&HFFF8F0", ReadAt::Startup },
        SettingDefinition { "AutoLogging", "0", ReadAt::Startup },
        SettingDefinition { "AutoWrite", "0", ReadAt::Startup },
        SettingDefinition { "PollingInterval", "2", ReadAt::OnUse },
        SettingDefinition { "DecimationRate", "1", ReadAt::OnUse },
        SettingDefinition { "LogFile", "Data Logging Files/default.csv", ReadAt::OnUse, true },
        SettingDefinition { "PlotCurrent", "-1", ReadAt::OnUse },
        SettingDefinition { "PlotVoltage", "-1", ReadAt::OnUse },
        SettingDefinition { "PlotSOC", "0", ReadAt::OnUse },
        SettingDefinition { "PlotTemperature", "0", ReadAt::OnUse },
        SettingDefinition { "PlotHistoryHours", "2", ReadAt::OnUse },
        SettingDefinition { "T_cmd_to_sts", "1", ReadAt::OnUse },
        SettingDefinition { "T_sts_to_sts", "5", ReadAt::OnUse },
        SettingDefinition { "MAX_BLOCK_TRANSFER", "128", ReadAt::OnUse },
        SettingDefinition { "T_busy_limit", "10000", ReadAt::OnUse },
        SettingDefinition { "T_request_limit", "15000", ReadAt::OnUse },
        SettingDefinition { "ModemLogTop", "0", ReadAt::OnUse },
        SettingDefinition { "ModemLogLeft", "0", ReadAt::OnUse },
        SettingDefinition { "ModemLogWidth", "7000", ReadAt::OnUse },
        SettingDefinition { "ModemLogHeight", "4000", ReadAt::OnUse },
        SettingDefinition { "EventLogTop", "0", ReadAt::OnUse },
        SettingDefinition { "EventLogLeft", "0", ReadAt::OnUse },
        SettingDefinition { "EventLogWidth", "7000", ReadAt::OnUse },
        SettingDefinition { "EventLogHeight", "4000", ReadAt::OnUse },
        SettingDefinition { "EditParameterTop", "0", ReadAt::OnUse },
        SettingDefinition { "EditParameterLeft", "0", ReadAt::OnUse },
        SettingDefinition { "HistoryChartTop", "0", ReadAt::OnUse },
        SettingDefinition { "HistoryChartLeft", "0", ReadAt::OnUse },
        SettingDefinition { "HistoryChartWidth", "8745", ReadAt::OnUse },
        SettingDefinition { "HistoryChartHeight", "6120", ReadAt::OnUse },
        SettingDefinition { "Aux Include", "", ReadAt::OnUse },
        SettingDefinition { "Path_PackConfiguration", "", ReadAt::OnUse },
        SettingDefinition { "Path_Export", "", ReadAt::OnUse },
        SettingDefinition { "Path_AppSettings", "", ReadAt::OnUse },
        SettingDefinition { "Path_Calibration", "", ReadAt::OnUse },
        SettingDefinition { "Path_ParameterCSV", "", ReadAt::OnUse },
        SettingDefinition { "Path_Parameters", "", ReadAt::OnUse },
        SettingDefinition { "Path_DataSet", "", ReadAt::OnUse },
        SettingDefinition { "Path_Auxiliary", "", ReadAt::OnUse },
        SettingDefinition { "Path_Aux", "", ReadAt::OnUse },
        SettingDefinition { "Path_ListViewCSV", "", ReadAt::OnUse },
        SettingDefinition { "Path_Logging", "", ReadAt::OnUse },
        SettingDefinition { "Path_BootLoader", "", ReadAt::OnUse },
        SettingDefinition { "Path_ParameterMap", "", ReadAt::OnUse },
        SettingDefinition { "Path_History", "", ReadAt::OnUse },
        SettingDefinition { "Path_Script", "", ReadAt::OnUse },
        SettingDefinition { "Path_ScriptBin", "", ReadAt::OnUse },
        SettingDefinition { "Path_ScriptLog", "", ReadAt::OnUse },
    };
// clang-format on

std::string definitionFile(const platform::SettingsStore& store, const std::string& programFolder,
    std::string_view targetName, const char* valueName, std::string_view fileName)
{
    const std::string fallback = joinPath(joinPath(programFolder, kLoggingFolder), fileName);
    return GetRegistryValue(store, targetKey(targetName), valueName, fallback);
}

} // namespace

std::span<const SettingDefinition> settingDefinitions()
{
    return kSettings;
}

const SettingDefinition& settingDefinition(std::string_view name)
{
    const auto it = std::find_if(kSettings.begin(), kSettings.end(),
        [&](const SettingDefinition& d) { return platform::equalsIgnoreCase(d.name, name); });
    if (it == kSettings.end())
        throw std::out_of_range("no such setting: " + std::string(name));
    return *it;
}

std::string settingDefault(std::string_view name, const std::string& programFolder)
{
    const auto& definition = settingDefinition(name);
    if (definition.inProgramFolder)
        return joinPath(programFolder, definition.defaultText);
    return std::string(definition.defaultText);
}

std::string readSetting(
    const platform::SettingsStore& store, std::string_view name, const std::string& programFolder)
{
    return GetRegistryValue(
        store, std::string(kMainKey), std::string(name), settingDefault(name, programFolder));
}

void writeSetting(platform::SettingsStore& store, std::string_view name, const std::string& text)
{
    (void)settingDefinition(name);
    SetRegistryValue(store, std::string(kMainKey), std::string(name), text);
}

std::string readStaticDefinitionFile(const platform::SettingsStore& store, const std::string& programFolder,
    std::string_view targetName, std::string_view slog)
{
    return definitionFile(store, programFolder, targetName, "StaticDefinitionFile", slog);
}

std::string readDynamicDefinitionFile(const platform::SettingsStore& store, const std::string& programFolder,
    std::string_view targetName, std::string_view dlog)
{
    return definitionFile(store, programFolder, targetName, "DynamicDefinitionFile", dlog);
}

} // namespace zv
