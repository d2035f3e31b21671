#pragma once
// frm470Cal, "Zentavia - ZK9470 Voltage Calibration": the two-point cell voltage calibration of
// target "1003". The device runs on cleared calibration while the window is open; the program
// works out an offset and a gain for each cell from what an outside meter shows and what the
// device reports at a low and a high point, and writes them into file 24. Closing before the end
// puts file 24 back as it was.

#include "calibration/calibration_values.h"
#include "platform/ui/list_view.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zv::platform {
class EventLoop;
class Timer;
} // namespace zv::platform

namespace zv {

class CalibrationMode;
class clsCellWeft;

struct VoltageWizardServices {
    clsCellWeft& driver;
    platform::EventLoop& loop;
    CalibrationMode& mode; // holds CalibrationPending
};

inline constexpr platform::Rgb kInstructionGrey = 0x808080;
inline constexpr platform::Rgb kInstructionGreen = 0x8000;
inline constexpr int kCalPollMs = 2000;

class frm470Cal : public platform::ui::Window {
public:
    explicit frm470Cal(VoltageWizardServices services);
    ~frm470Cal() override;

    platform::ui::Label lblTitle { "lblTitle" };
    platform::ui::Label lblGuide { "lblGuide" };
    std::array<platform::ui::Label, 2> lblInstructions { platform::ui::Label { "lblInstructions(0)" },
        platform::ui::Label { "lblInstructions(1)" } };
    // Position i (0 to 15) is node i + 1, labelled "Cell " 16 - i.
    std::vector<std::unique_ptr<platform::ui::Label>> lblCell;
    std::vector<std::unique_ptr<platform::ui::TextBox>> txtCellVoltage; // "Measured"
    std::vector<std::unique_ptr<platform::ui::TextBox>> txtVoltageCalLow; // "Actual"
    platform::ui::ListView lvCalibration { "lvCalibration" };
    platform::ui::Label lblError { "lblError" };
    platform::ui::Button btnCalibrate { "btnCalibrate" };
    platform::ui::Button btnReset { "btnReset" };
    std::unique_ptr<platform::Timer> tmrCalPoll;

    // Focus to the first "Actual" field; set by the front end.
    std::function<void()> focusFirstEntry;

    // A key the "Actual" fields take: control keys and "-0123456789".
    [[nodiscard]] static bool entryKey(char32_t key);

    [[nodiscard]] const std::vector<std::uint16_t>& storedList() const { return stored_; }
    [[nodiscard]] const std::vector<std::uint16_t>& workingList() const { return working_; }
    [[nodiscard]] bool calibrated() const { return calibrated_; }

protected:
    void handleLoad() override;
    void handleUnload() override;

private:
    void ReadStoredCalibration();
    void ClearCalibration();
    void RestoreStoredCalibration();
    void TakeReadings(std::array<int, kWizardNodes>& actual, std::array<int, kWizardNodes>& measured);
    [[nodiscard]] bool ValidateEntries();
    void ComputeCalibration();
    bool WriteCalibration(const std::vector<std::uint16_t>& list);
    void ShowStep1();
    void ShowStep2();
    void Complete();
    void btnCalibrate_Click();
    void btnReset_Click();
    void tmrCalPoll_Timer();
    void showMeasured();
    void clearEntries();
    [[nodiscard]] int nodeCount() const;

    VoltageWizardServices s_;
    std::vector<std::uint16_t> stored_;
    std::vector<std::uint16_t> working_;
    std::array<int, kWizardNodes> lowActual_ {};
    std::array<int, kWizardNodes> lowMeasured_ {};
    std::array<int, kWizardNodes> highActual_ {};
    std::array<int, kWizardNodes> highMeasured_ {};
    bool calibrated_ = false;
};

} // namespace zv
