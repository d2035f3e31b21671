#pragma once
// The target table of Zentavia.ini: one [Tn] record for each target application the program
// knows, n from 1 to [Setup] NumberOfTargets.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct TargetRecord {
    std::string section; // "T" + n
    std::string ID; // four upper-case hex digits
    std::string Name;
    std::string MCFG;
    std::string CCFG;
    bool AverageVoltages = false;
    std::string SLOG;
    std::string DLOG;
    std::string URL;
    std::string REF;
    long FS = 0;
};

// The records in their order; a section missing from the file gives a record of empty fields.
[[nodiscard]] std::vector<TargetRecord> readTargetTable(const std::string& iniFile);

// The first record with this ID (compared as text), or with this Name.
[[nodiscard]] std::optional<TargetRecord> findTargetById(
    const std::vector<TargetRecord>& table, std::string_view id);
[[nodiscard]] std::optional<TargetRecord> findTargetByName(
    const std::vector<TargetRecord>& table, std::string_view name);

} // namespace zv
