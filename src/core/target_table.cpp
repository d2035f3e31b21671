#include "core/target_table.h"

#include "core/globals.h"
#include "core/paths.h"
#include "core/registry.h"
#include "platform/ini_file.h"
#include "platform/val.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace zv {

namespace {

constexpr std::string_view kConfigurationFolder = "Configuration Files";

TargetRecord readRecord(const platform::IniFile& ini, int n)
{
    TargetRecord t;
    t.section = "T" + std::to_string(n);
    const auto text = [&](std::string_view key) { return ini.value(t.section, key); };
    t.ID = text("ID");
    t.Name = text("Name");
    t.MCFG = text("MCFG");
    t.CCFG = text("CCFG");
    t.AverageVoltages = Val(text("AverageVoltages")) != 0;
    t.SLOG = text("SLOG");
    t.DLOG = text("DLOG");
    t.URL = text("URL");
    t.REF = text("REF");
    t.FS = static_cast<long>(std::trunc(Val(text("FS"))));
    return t;
}

template <typename Match>
std::optional<TargetRecord> findTarget(const std::vector<TargetRecord>& table, Match match)
{
    const auto found = std::find_if(table.begin(), table.end(), match);
    return found == table.end() ? std::nullopt : std::optional<TargetRecord>(*found);
}

std::string configFile(const TargetRecord& target, const std::string& programFolder, const std::string& file)
{
    return joinPath(joinPath(joinPath(programFolder, kConfigurationFolder), target.Name), file);
}

} // namespace

std::vector<TargetRecord> readTargetTable(const std::string& iniFile)
{
    const auto ini = platform::IniFile::load(iniFile);
    const int count = static_cast<int>(Val(ini.value("Setup", "NumberOfTargets")));
    std::vector<TargetRecord> targets;
    for (int n = 1; n <= count; ++n)
        targets.push_back(readRecord(ini, n));
    return targets;
}

std::optional<TargetRecord> findTargetById(const std::vector<TargetRecord>& table, std::string_view id)
{
    return findTarget(table, [&](const TargetRecord& t) { return t.ID == id; });
}

std::optional<TargetRecord> findTargetByName(const std::vector<TargetRecord>& table, std::string_view name)
{
    return findTarget(table, [&](const TargetRecord& t) { return t.Name == name; });
}

std::string targetIdText(int id)
{
    char hex[16];
    std::snprintf(hex, sizeof hex, "%X", static_cast<unsigned>(id));
    const std::string text = "0000" + std::string(hex);
    return text.substr(text.size() - 4);
}

std::string gatewayConfigFile(const TargetRecord& target, const std::string& programFolder)
{
    return configFile(target, programFolder, target.MCFG);
}

std::string nodeConfigFile(const TargetRecord& target, const std::string& programFolder)
{
    return configFile(target, programFolder, target.CCFG);
}

void applyTarget(AppGlobals& globals, const TargetRecord& target)
{
    globals.gTargetSection = target.section;
    globals.gTargetName = target.Name;
    globals.gTargetKey = targetKey(target.Name);
    globals.gAverageVoltages = target.AverageVoltages;
    globals.gTargetURL = target.URL;
    globals.gTargetREF = target.REF;
    globals.gTargetFS = target.FS;
}

std::string targetTableProblem(const std::string& iniFile)
{
    std::error_code error;
    if (!std::filesystem::exists(iniFile, error))
        return "The program file " + iniFile + " was not found; the targets cannot be identified.";
    if (std::filesystem::is_directory(iniFile, error) || !std::ifstream(iniFile))
        return "The program file " + iniFile + " cannot be read; the targets cannot be identified.";
    return {};
}

} // namespace zv
