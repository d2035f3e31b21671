#include "startup/target_table.h"

#include "core/ini_values.h"
#include "core/val.h"

#include <algorithm>

namespace zv {

namespace {

TargetRecord readRecord(const std::string& section, const std::string& iniFile)
{
    const auto value = [&](std::string_view key) { return GetINIValue(section, key, iniFile); };
    TargetRecord record;
    record.section = section;
    record.ID = value("ID");
    record.Name = value("Name");
    record.MCFG = value("MCFG");
    record.CCFG = value("CCFG");
    record.AverageVoltages = Val(value("AverageVoltages")) != 0;
    record.SLOG = value("SLOG");
    record.DLOG = value("DLOG");
    record.URL = value("URL");
    record.REF = value("REF");
    record.FS = static_cast<long>(Val(value("FS")));
    return record;
}

template <typename Field>
std::optional<TargetRecord> findBy(const std::vector<TargetRecord>& table, Field field, std::string_view text)
{
    const auto found = std::find_if(
        table.begin(), table.end(), [&](const TargetRecord& record) { return record.*field == text; });
    return found == table.end() ? std::nullopt : std::optional<TargetRecord>(*found);
}

} // namespace

std::vector<TargetRecord> readTargetTable(const std::string& iniFile)
{
    const int count = static_cast<int>(Val(GetINIValue("Setup", "NumberOfTargets", iniFile)));
    std::vector<TargetRecord> table;
    for (int n = 1; n <= count; ++n)
        table.push_back(readRecord("T" + std::to_string(n), iniFile));
    return table;
}

std::optional<TargetRecord> findTargetById(const std::vector<TargetRecord>& table, std::string_view id)
{
    return findBy(table, &TargetRecord::ID, id);
}

std::optional<TargetRecord> findTargetByName(const std::vector<TargetRecord>& table, std::string_view name)
{
    return findBy(table, &TargetRecord::Name, name);
}

} // namespace zv
