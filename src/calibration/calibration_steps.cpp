#include "calibration/calibration_steps.h"

#include "calibration/calibration_data.h"
#include "driver/cellweft.h"

namespace zv {

namespace {

constexpr int kDynamicFile = 1;
constexpr int kCellDynamicFile = 4;

} // namespace

CalibrationSteps::CalibrationSteps(clsCellWeft& driver)
    : driver_(driver)
{
}

bool CalibrationSteps::send(CalibrationCommand command, int argument)
{
    FileRequest request;
    request.access = 1;
    request.file = kCalibrationCommandFile;
    request.offset = 0;
    request.count = 2;
    request.data = calibrationCommandBytes(command, argument);
    return driver_.FileAccessRequest(request).ok;
}

CalibrationReadings CalibrationSteps::read()
{
    CalibrationReadings readings;
    const auto& display = driver_.Parameters.display;
    std::string text;
    if (driver_.GetFile(kDynamicFile, text)) {
        if (auto* current = driver_.GatewayParameters.FindByName("Current"))
            readings.current = current->ToString(0, display);
    }
    if (driver_.GetFile(kCellDynamicFile, text)) {
        std::vector<std::string> voltages;
        std::vector<std::string> temperatures;
        for (auto& node : driver_.nodes) {
            auto* voltage = node.NodeParameters.Item(1);
            auto* temperature = node.NodeParameters.Item(2);
            voltages.push_back(voltage ? voltage->ToString(0, display) : std::string());
            temperatures.push_back(temperature ? temperature->ToString(0, display) : std::string());
        }
        readings.cellVoltages = std::move(voltages);
        readings.cellTemperatures = std::move(temperatures);
    }
    if (const auto sensors = driver_.Transfer.readFile(kSensorFile))
        readings.sensors = fileWords(*sensors);
    if (driver_.GetFile(kCalibrationFile, text))
        readings.calibration = fileWords(text);
    return readings;
}

} // namespace zv
