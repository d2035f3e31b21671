#pragma once
// The pack parameter summary: the rows of the parameter tabs that the mode selects, the level
// passwords, the calibration values and, except for static parameters, every cell's tabs, in
// one text file with the regional list separator between fields.

#include <string>
#include <vector>

namespace zv::platform::ui {
class ListView;
class TabStrip;
} // namespace zv::platform::ui

namespace zv {

struct OutputServices;
class clsCellWeft;
class clsSMBusParameter;
class ParameterList;

enum class SummaryMode {
    Dynamic = 0, // mnuSaveAsReadOnly: WritePrivilegeLevel above 3
    Static = 1, // mnuSaveAsWriteOnly: WritePrivilegeLevel below 3
    All = 2, // mnuSaveAsAllParameters
};

[[nodiscard]] bool qualifies(SummaryMode mode, const clsSMBusParameter& parameter);
// A packed date word as MM/DD/YYYY: day in bits 0 to 4, month in bits 5 to 8, year - 1980 above.
[[nodiscard]] std::string packedDateText(unsigned word);

class PackSummary {
public:
    explicit PackSummary(OutputServices& services);

    // The whole command: save dialog, hourglass, Parameters_ReadAll, the file, the notification.
    void Save(SummaryMode mode);
    // The file's lines; reads the password file when the user's level is above 1. Throws
    // std::runtime_error when the device cannot be read.
    [[nodiscard]] std::vector<std::string> Lines(SummaryMode mode);

private:
    void addTabs(std::vector<std::string>& lines, const platform::ui::TabStrip* tabs,
        const std::vector<platform::ui::ListView*>& lists, const ParameterList& parameters,
        SummaryMode mode) const;
    [[nodiscard]] std::vector<std::string> rowsOf(
        const platform::ui::ListView& list, const ParameterList& parameters, SummaryMode mode) const;
    [[nodiscard]] std::string rowLine(
        const std::string& name, const std::string& valueColumn, const clsSMBusParameter& parameter) const;
    void addPasswords(std::vector<std::string>& lines, clsCellWeft& driver) const;
    void addCalibration(std::vector<std::string>& lines, clsCellWeft& driver) const;
    void addCells(std::vector<std::string>& lines, clsCellWeft& driver, SummaryMode mode) const;
    [[nodiscard]] std::string field(const std::string& text) const;

    OutputServices& s_;
};

} // namespace zv
