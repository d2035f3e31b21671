#pragma once
// frmCalibration, "Zentavia - Calibration": the guided calibration of cell voltage (two points,
// one cell at a time), temperature (one point), current offset and current gain against outside
// references. Every step is one command to the command file; the window then shows what the
// device reports. It runs inside calibration mode (CalibrationMode::ShowInCalibrationMode).

#include "calibration/calibration_steps.h"
#include "platform/ui/choice_controls.h"
#include "platform/ui/list_view.h"
#include "platform/ui/rich_text_box.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <functional>
#include <string>

namespace zv::platform {
class EventLoop;
}

namespace zv {

struct AppGlobals;
class CalibrationMode;
class ErrorHandler;
class clsCellWeft;

struct CalibrationWindowServices {
    clsCellWeft& driver;
    const AppGlobals& globals;
    platform::EventLoop& loop;
    CalibrationMode& mode; // holds CalibrationPending
    std::function<void(int)> setMousePointer; // 11 hourglass, 0 default
    ErrorHandler* errors = nullptr; // failures of ReadTemperatures
};

// The status colours (0x00BBGGRR).
inline constexpr platform::Rgb kStatusBlack = 0;
inline constexpr platform::Rgb kStatusGreen = 32768;
inline constexpr platform::Rgb kStatusRed = 255;

class frmCalibration : public platform::ui::Window {
public:
    explicit frmCalibration(CalibrationWindowServices services);

    platform::ui::Frame fraVoltage { "fraVoltage" };
    platform::ui::ComboBox cmbCells { "cmbCells" };
    platform::ui::Label lblVoltage1 { "lblVoltage1" };
    platform::ui::TextBox txtFirstVoltage { "txtFirstVoltage" };
    platform::ui::Button cmdFirstVoltage { "cmdFirstVoltage" };
    platform::ui::Label lblVoltage2 { "lblVoltage2" };
    platform::ui::TextBox txtSecondVoltage { "txtSecondVoltage" };
    platform::ui::Button cmdSecondVoltage { "cmdSecondVoltage" };
    platform::ui::Label lblErrorVoltageLow { "lblErrorVoltageLow" };
    platform::ui::Label lblErrorVoltageHigh { "lblErrorVoltageHigh" };
    platform::ui::Frame cfraTemperature { "cfraTemperature" };
    platform::ui::Label lblTemperatureType { "lblTemperatureType" };
    platform::ui::TextBox txtTemperature { "txtTemperature" };
    platform::ui::Button cmdCalTemperature { "cmdCalTemperature" };
    platform::ui::Frame cfraCurrent { "cfraCurrent" };
    platform::ui::Button cmdCalZeroCurrent { "cmdCalZeroCurrent" };
    platform::ui::Label lblCurrentValue { "lblCurrentValue" };
    platform::ui::TextBox txtAmps { "txtAmps" };
    platform::ui::Button cmdCalCurrent { "cmdCalCurrent" };
    platform::ui::RichTextBox txtStatus { "txtStatus" };
    platform::ui::Label lblAttentionMessage { "lblAttentionMessage" };
    platform::ui::ListView lvNodes { "lvNodes" };
    platform::ui::ListView lvTemperatures { "lvTemperatures" };
    platform::ui::ListView lvCurrent { "lvCurrent" };
    platform::ui::ListView lvCoulomb { "lvCoulomb" };
    platform::ui::Button cmdRefresh { "cmdRefresh" };
    platform::ui::Button cmdClose { "cmdClose" };

    // Refreshes all four lists from files 1, 4, 21 and 24.
    void ReadTemperatures();
    // One step's bus work: the command, its outcome in txtStatus, CalibrationPending, the lists.
    bool SendCalibrationCommand(CalibrationCommand command, int value);

    // The entry fields' rules, for the front end: a key the field takes, and leaving a field
    // (an empty field takes its default); false keeps the focus in the field.
    [[nodiscard]] static bool entryKey(char32_t key) { return calibrationEntryKey(key); }
    [[nodiscard]] bool leaveField(platform::ui::TextBox& field);
    // The button that the Enter key presses in a field; nullptr for another control.
    [[nodiscard]] platform::ui::Button* enterButton(const platform::ui::TextBox& field);

    [[nodiscard]] bool celsius() const;

protected:
    void handleLoad() override;

private:
    void fillLists();
    void showReadings(const CalibrationReadings& readings);
    void announce(const std::string& text);
    void refused(const std::string& text);
    [[nodiscard]] std::optional<int> voltageEntry(platform::ui::TextBox& field);
    void firstVoltage();
    void secondVoltage();
    void zeroCurrent();
    void currentGain();
    void temperature();
    void pointer(int shape);

    CalibrationWindowServices s_;
    CalibrationSteps steps_;
};

} // namespace zv
