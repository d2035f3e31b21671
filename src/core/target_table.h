#pragma once
// The target table of Zentavia.ini: the [Tn] records, n from 1 to NumberOfTargets of [Setup],
// each naming a target application and the files that belong to it.

#include "platform/settings_store.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct AppGlobals;

struct TargetRecord {
    std::string section; // "T" + n
    std::string ID; // four upper-case hex digits, compared as text
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

// The records in order; NumberOfTargets 0 or missing gives none, a section missing from the file
// a record of empty fields.
[[nodiscard]] std::vector<TargetRecord> readTargetTable(const std::string& iniFile);
// Empty when the INI file can be read; else the text that names it and says what is wrong, so
// that a missing program file is not taken for an unknown target.
[[nodiscard]] std::string targetTableProblem(const std::string& iniFile);
// The first record whose ID equals the id (compared as text), or whose Name equals the name.
[[nodiscard]] std::optional<TargetRecord> findTargetById(
    const std::vector<TargetRecord>& table, std::string_view id);
[[nodiscard]] std::optional<TargetRecord> findTargetByName(
    const std::vector<TargetRecord>& table, std::string_view name);

// gTargetID of a target id as GetTargetID gives it: the last four characters of "0000" + the id
// in upper-case hex.
[[nodiscard]] std::string targetIdText(int id);

// The gateway and cell configuration files: program folder + "/Configuration Files/" + Name + "/"
// + MCFG or CCFG.
[[nodiscard]] std::string gatewayConfigFile(const TargetRecord& target, const std::string& programFolder);
[[nodiscard]] std::string nodeConfigFile(const TargetRecord& target, const std::string& programFolder);

// Takes the target: gTargetSection, gTargetName, gTargetKey, gAverageVoltages, gTargetURL,
// gTargetREF and gTargetFS (gTargetID stays as the caller set it).
void applyTarget(AppGlobals& globals, const TargetRecord& target);

} // namespace zv
