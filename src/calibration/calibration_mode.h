#pragma once
// Calibration mode: the top four bits of "Algorithm Enable" (device file 9) set for the time a
// calibration window is open, and the old word written back when it closes, whatever happened in
// between. ShowInCalibrationMode is the door to both calibration windows and to the calibration
// steps of zentavia-cli.

#include <functional>

namespace zv::platform {
class Dialogs;
}

namespace zv {

class clsCellWeft;

struct CalibrationModeHooks {
    // IsTheDeviceWired; unset: wired.
    std::function<bool()> isTheDeviceWired;
    // CommitChanges(false): a calibration made while the window was open goes to flash.
    std::function<bool()> commitChanges;
};

inline constexpr int kCalibrationModeBits = 0xF000;

class CalibrationMode {
public:
    CalibrationMode(clsCellWeft& driver, platform::Dialogs& dialogs, CalibrationModeHooks hooks);

    // The window's flag: a step was sent, so the calibration is committed on leaving.
    bool CalibrationPending = false;

    // Enters calibration mode, runs `body` (which shows the window modally), then writes the old
    // "Algorithm Enable" back and commits when CalibrationPending. An exception from the body
    // passes on after the old word is back. False when calibration mode could not be entered
    // (the box has been shown, the body did not run) or could not be left.
    [[nodiscard]] bool ShowInCalibrationMode(const std::function<void()>& body);

    [[nodiscard]] CalibrationModeHooks& hooks() { return hooks_; }

private:
    [[nodiscard]] bool writeAlgorithmEnable(int fileIndex, int value);
    void failure(const char* title, const char* text);

    clsCellWeft& driver_;
    platform::Dialogs& dialogs_;
    CalibrationModeHooks hooks_;
};

} // namespace zv
