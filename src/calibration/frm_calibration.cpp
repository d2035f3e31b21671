#include "calibration/frm_calibration.h"

#include "calibration/calibration_mode.h"
#include "core/error_handler.h"
#include "core/globals.h"
#include "driver/cellweft.h"
#include "monitor/unexpected_error.h"
#include "platform/event_loop.h"

#include <cmath>

namespace zv {

namespace {

constexpr int kHourglass = 11;
constexpr int kDefaultPointer = 0;
constexpr int kListWidthTwips = 4200;
constexpr const char* kSequence
    = "The calibration process MUST be performed in the following sequence to ensure proper calibration.";

std::vector<platform::ui::ListColumn> thirds(std::initializer_list<const char*> headers)
{
    std::vector<platform::ui::ListColumn> columns;
    for (const char* header : headers)
        columns.push_back({ header, static_cast<int>(kListWidthTwips / 3.07) });
    return columns;
}

} // namespace

frmCalibration::frmCalibration(CalibrationWindowServices services)
    : platform::ui::Window("frmCalibration")
    , s_(std::move(services))
    , steps_(s_.driver)
{
    setCaption("Zentavia - Calibration");
    addControls({ &fraVoltage, &cmbCells, &lblVoltage1, &txtFirstVoltage, &cmdFirstVoltage, &lblVoltage2,
        &txtSecondVoltage, &cmdSecondVoltage, &lblErrorVoltageLow, &lblErrorVoltageHigh, &cfraTemperature,
        &lblTemperatureType, &txtTemperature, &cmdCalTemperature, &cfraCurrent, &cmdCalZeroCurrent,
        &lblCurrentValue, &txtAmps, &cmdCalCurrent, &txtStatus, &lblAttentionMessage, &lvNodes,
        &lvTemperatures, &lvCurrent, &lvCoulomb, &cmdRefresh, &cmdClose });
    cmdFirstVoltage.onClick = [this] { firstVoltage(); };
    cmdSecondVoltage.onClick = [this] { secondVoltage(); };
    cmdCalZeroCurrent.onClick = [this] { zeroCurrent(); };
    cmdCalCurrent.onClick = [this] { currentGain(); };
    cmdCalTemperature.onClick = [this] { temperature(); };
    cmdRefresh.onClick = [this] { ReadTemperatures(); };
    cmdClose.onClick = [this] { unload(); };
    fraVoltage.setCaption("Voltage");
    cfraTemperature.setCaption("Temperature");
    cfraCurrent.setCaption("Current");
    cmdFirstVoltage.setCaption("Calibrate");
    cmdSecondVoltage.setCaption("Calibrate");
    cmdCalTemperature.setCaption("Calibrate");
    cmdCalZeroCurrent.setCaption("Calibrate");
    cmdCalCurrent.setCaption("Calibrate");
    cmdRefresh.setCaption("Refresh");
    cmdClose.setCaption("Close");
    lblErrorVoltageLow.setCaption("Value is too low!");
    lblErrorVoltageHigh.setCaption("Value is too high!");
}

bool frmCalibration::celsius() const
{
    return s_.driver.Parameters.display.TemperatureUnits != 0;
}

void frmCalibration::pointer(int shape)
{
    if (s_.setMousePointer)
        s_.setMousePointer(shape);
}

void frmCalibration::handleLoad()
{
    s_.mode.CalibrationPending = false;
    const bool voltageSteps = s_.globals.gTargetID == "1001" || s_.globals.gTargetID == "1002";
    fraVoltage.setVisible(voltageSteps);
    lblAttentionMessage.setCaption(voltageSteps
            ? std::string(kSequence)
                + "\n1: Calibrate Voltage\n2: Calibrate Temperature\n3: Calibrate Current"
            : std::string(kSequence) + "\n1: Calibrate Temperature\n2: Calibrate Current");
    lblErrorVoltageLow.setVisible(false);
    lblErrorVoltageHigh.setVisible(false);
    txtStatus.clear();
    fillLists();

    lblVoltage1.setCaption("Supply an external mV reference between [2700 to 3000], then enter value:");
    txtFirstVoltage.setText("2800");
    lblVoltage2.setCaption("Supply an external mV reference between [4000 to 4500], then enter value:");
    txtSecondVoltage.setText("4200");
    lblTemperatureType.setCaption(celsius() ? "Enter the ambient temperature in °C: [18 to 30]"
                                            : "Enter the ambient temperature in K: [291 to 303]");
    const int ipScale = s_.driver.Parameters.display.IPScale;
    const std::string unit = ipScale > 1 ? std::to_string(ipScale) + "mA" : "mA";
    lblCurrentValue.setCaption("Enter the applied current in " + unit + " [-32000 to 32000]");
    ReadTemperatures();
}

void frmCalibration::fillLists()
{
    lvNodes.clear();
    lvNodes.setColumns(thirds({ "Cell", "Voltage", "Temperature" }));
    cmbCells.clear();
    const int cells = s_.driver.nodes.Count();
    for (int n = 1; n <= cells; ++n) {
        lvNodes.addRow({ "c" + std::to_string(n), std::to_string(n), {}, { "", "" } });
        cmbCells.addItem("Cell " + std::to_string(n));
    }
    if (cells > 0)
        cmbCells.setListIndex(0);

    lvTemperatures.clear();
    lvTemperatures.setColumns(thirds({ "Sensor", "Temperature", "Offset" }));
    lvTemperatures.addRow({ "board", "Board", {}, { "", "" } });
    for (int n = 2; n <= s_.globals.gTempSensorCount; ++n)
        lvTemperatures.addRow({ "raw" + std::to_string(n), "T" + std::to_string(n - 1), {}, { "", "" } });

    lvCurrent.clear();
    lvCurrent.setColumns(thirds({ "Current", "Offset", "Gain" }));
    lvCurrent.addRow({ "current", "", {}, { "", "" } });
    lvCoulomb.clear();
    lvCoulomb.setColumns(thirds({ "Coulomb", "Offset", "Gain" }));
    lvCoulomb.addRow({ "coulomb", "", {}, { "", "" } });
}

void frmCalibration::ReadTemperatures()
{
    pointer(kHourglass);
    try {
        showReadings(steps_.read());
    } catch (const std::exception& e) {
        if (s_.errors)
            s_.errors->AutoHandler(unexpectedError(e), "frmCalibration", "ReadTemperatures");
    }
    pointer(kDefaultPointer);
}

void frmCalibration::showReadings(const CalibrationReadings& readings)
{
    const auto& locale = s_.driver.Parameters.display.locale;
    if (readings.current)
        lvCurrent.setText("current", *readings.current);
    if (readings.cellVoltages && readings.cellTemperatures) {
        for (std::size_t i = 0; i < readings.cellVoltages->size(); ++i) {
            const std::string key = "c" + std::to_string(i + 1);
            lvNodes.setSubItem(key, 1, (*readings.cellVoltages)[i]);
            lvNodes.setSubItem(key, 2, (*readings.cellTemperatures)[i]);
        }
    }
    const auto rowOf
        = [](int sensor) { return sensor == 1 ? std::string("board") : "raw" + std::to_string(sensor); };
    const int sensors = std::max(1, s_.globals.gTempSensorCount);
    if (readings.sensors) {
        for (int n = 1; n <= sensors && n <= static_cast<int>(readings.sensors->size()); ++n)
            lvTemperatures.setSubItem(
                rowOf(n), 1, sensorTemperatureText((*readings.sensors)[n - 1], celsius(), locale));
    }
    if (readings.calibration) {
        const auto& a = *readings.calibration;
        const auto word = [&a](std::size_t i) { return i < a.size() ? a[i] : std::uint16_t { 0 }; };
        lvCurrent.setSubItem("current", 1, std::to_string(signedWord(word(0))));
        lvCurrent.setSubItem("current", 2, gainText(word(1), locale));
        lvCoulomb.setSubItem("coulomb", 1, std::to_string(signedWord(word(2))));
        lvCoulomb.setSubItem("coulomb", 2, gainText(word(3), locale));
        lvCoulomb.setText("coulomb", std::to_string(word(4)));
        for (int n = 1; n <= sensors; ++n)
            lvTemperatures.setSubItem(
                rowOf(n), 2, sensorOffsetText(word(4 + static_cast<std::size_t>(n)), celsius(), locale));
    }
}

void frmCalibration::announce(const std::string& text)
{
    txtStatus.append(text, kStatusBlack);
}

void frmCalibration::refused(const std::string& text)
{
    txtStatus.append(text + "\n", kStatusRed);
}

bool frmCalibration::SendCalibrationCommand(CalibrationCommand command, int value)
{
    s_.loop.processEvents();
    pointer(kHourglass);
    setEnabled(false);
    bool ok = false;
    try {
        ok = steps_.send(command, value);
    } catch (...) {
        ok = false;
    }
    if (ok)
        txtStatus.append("success\n", kStatusGreen);
    else
        txtStatus.append("failed\n", kStatusRed);
    s_.mode.CalibrationPending = true;
    ReadTemperatures();
    setEnabled(true);
    pointer(kDefaultPointer);
    return ok;
}

bool frmCalibration::leaveField(platform::ui::TextBox& field)
{
    if (field.text().empty()) {
        if (&field == &txtFirstVoltage)
            field.setText(kFirstVoltageDefault);
        else if (&field == &txtSecondVoltage)
            field.setText(kSecondVoltageDefault);
        else
            field.setText("0");
    }
    if (&field == &txtFirstVoltage || &field == &txtSecondVoltage)
        return voltageEntry(field).has_value();
    return true;
}

platform::ui::Button* frmCalibration::enterButton(const platform::ui::TextBox& field)
{
    if (&field == &txtFirstVoltage)
        return &cmdFirstVoltage;
    if (&field == &txtSecondVoltage)
        return &cmdSecondVoltage;
    if (&field == &txtTemperature)
        return &cmdCalTemperature;
    if (&field == &txtAmps)
        return &cmdCalCurrent;
    return nullptr;
}

// The voltage fields' rule: below 2700 or above 4500 (or no number) the label says so.
std::optional<int> frmCalibration::voltageEntry(platform::ui::TextBox& field)
{
    const auto value = entryNumber(field.text());
    const bool low = !value || *value < kVoltageLowMv;
    const bool high = value && *value > kVoltageHighMv;
    lblErrorVoltageLow.setVisible(low);
    lblErrorVoltageHigh.setVisible(high);
    if (low || high)
        return std::nullopt;
    return static_cast<int>(std::lround(*value));
}

void frmCalibration::firstVoltage()
{
    const auto mv = voltageEntry(txtFirstVoltage);
    if (!mv || cmbCells.listIndex() < 0)
        return;
    const int cell = cmbCells.listIndex() + 1;
    announce("Setting up cell " + std::to_string(cell) + " calibration... ");
    if (!SendCalibrationCommand(CalibrationCommand::SelectCell, cell))
        return;
    announce("Sending lower voltage calibration data [" + txtFirstVoltage.text() + " mV] for cell "
        + std::to_string(cell) + "... ");
    (void)SendCalibrationCommand(CalibrationCommand::LowerVoltage, *mv);
}

void frmCalibration::secondVoltage()
{
    const auto mv = voltageEntry(txtSecondVoltage);
    if (!mv || cmbCells.listIndex() < 0)
        return;
    announce("Sending upper voltage calibration data [" + txtSecondVoltage.text() + " mV] for cell "
        + std::to_string(cmbCells.listIndex() + 1) + "... ");
    (void)SendCalibrationCommand(CalibrationCommand::UpperVoltage, *mv);
}

void frmCalibration::zeroCurrent()
{
    announce("Sending zero offset calibration data... ");
    (void)SendCalibrationCommand(CalibrationCommand::CurrentOffset, 0);
}

void frmCalibration::currentGain()
{
    const auto value = entryNumber(txtAmps.text());
    if (!value || *value < -kCurrentLimitMa || *value > kCurrentLimitMa) {
        refused("Current value is out of the valid range of -32000mA to 32000mA");
        return;
    }
    announce("Sending current gain calibration data [" + txtAmps.text() + " mA]... ");
    (void)SendCalibrationCommand(
        CalibrationCommand::CurrentGain, currentGainArgument(static_cast<int>(std::lround(*value))));
}

void frmCalibration::temperature()
{
    const auto value = entryNumber(txtTemperature.text());
    const bool c = celsius();
    const double low = c ? kCelsiusLow : kKelvinLow;
    const double high = c ? kCelsiusHigh : kKelvinHigh;
    if (!value || *value < low || *value > high) {
        refused(c ? "The temperature entered is out of the valid range of 18°C to 30°C"
                  : "The temperature entered is out of the valid range of 291 K to 303 K");
        return;
    }
    announce("Sending temperature calibration data [" + txtTemperature.text() + (c ? " °C" : " K") + "]... ");
    (void)SendCalibrationCommand(CalibrationCommand::Temperature, temperatureArgument(*value, c));
}

} // namespace zv
