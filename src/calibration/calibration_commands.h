#pragma once
// The calibration entries of frmMain: mnuCalibration (frmCalibration), mnuCal470 (frm470Cal),
// both through ShowInCalibrationMode, and the two commands of mnuCalibrationData.

#include "calibration/calibration_data.h"
#include "calibration/calibration_mode.h"

#include <functional>
#include <memory>

namespace zv::platform {
class Dialogs;
class EventLoop;
class SettingsStore;
namespace ui {
class Window;
}
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class ErrorHandler;
class clsMain;
class frmMain;
class frmCalibration;
class frm470Cal;

struct CalibrationCommandServices {
    clsMain& main;
    AppGlobals& globals;
    frmMain& window;
    platform::Dialogs& dialogs;
    platform::EventLoop& loop;
    platform::SettingsStore& settings;
    ErrorHandler* errors = nullptr;
};

struct CalibrationCommandHooks {
    std::function<bool()> isTheDeviceWired;
    std::function<bool()> commitChanges; // CommitChanges(false)
    std::function<bool()> isPolling;
    std::function<void(int)> setMousePointer;
    std::function<void()> bringToFront;
    // Shows a window modally; returns once it is hidden or unloaded.
    std::function<void(platform::ui::Window&)> showModal;
    // Lets the front end bind a window when it is made.
    std::function<void(platform::ui::Window&)> onWindowCreated;
};

class CalibrationCommands {
public:
    CalibrationCommands(CalibrationCommandServices services, CalibrationCommandHooks hooks);
    ~CalibrationCommands();
    CalibrationCommands(const CalibrationCommands&) = delete;
    CalibrationCommands& operator=(const CalibrationCommands&) = delete;

    void mnuCalibration_Click();
    void mnuCal470_Click();
    void mnuSaveCalibrationData_Click() { data.mnuSaveCalibrationData_Click(); }
    void mnuRestoreCalibrationData_Click() { data.mnuRestoreCalibrationData_Click(); }

    CalibrationMode mode;
    CalibrationData data;

private:
    void showInCalibrationMode(platform::ui::Window& window);

    CalibrationCommandServices s_;
    CalibrationCommandHooks hooks_;
};

// Sets the click handlers of mnuCalibration, mnuCal470, mnuSaveCalibrationData and
// mnuRestoreCalibrationData and makes the wired entries available; wire it before the device
// commands, which switch the commit entries off again.
void wireCalibrationCommands(frmMain& window, CalibrationCommands& commands);

} // namespace zv
