#pragma once
// The bus work of the calibration steps, shared by frmCalibration and zentavia-cli: one command
// to the command file a step, and the readings the device reports afterwards (current, cells,
// sensor temperatures and the calibration words).

#include "calibration/calibration_values.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zv {

class clsCellWeft;

inline constexpr int kCalibrationCommandFile = 27;
inline constexpr int kSensorFile = 21;

struct CalibrationReadings {
    std::optional<std::string> current; // "Current" of the gateway, as shown
    std::optional<std::vector<std::string>> cellVoltages; // each cell's first parameter, as shown
    std::optional<std::vector<std::string>> cellTemperatures; // each cell's second parameter
    std::optional<std::vector<std::uint16_t>> sensors; // file 21: sensor n is word n - 1, in 0.1 K
    std::optional<std::vector<std::uint16_t>> calibration; // file 24 as words
};

class CalibrationSteps {
public:
    explicit CalibrationSteps(clsCellWeft& driver);

    // Writes the step's two words to file 27 (offset 0, 2 records, with PEC); true when the
    // device took it.
    [[nodiscard]] bool send(CalibrationCommand command, int argument);
    // Reads files 1, 4, 21 and 24 in that order; a file that fails leaves its part empty.
    [[nodiscard]] CalibrationReadings read();

private:
    clsCellWeft& driver_;
};

} // namespace zv
