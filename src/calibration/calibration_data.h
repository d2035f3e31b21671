#pragma once
// The calibration data of the device and its .cal files: which kind of device holds it in one
// file, reading files 24 and 31 into a CalFile, checking a CalFile's byte counts against the
// directory, writing it back; and the save and restore commands of the main window
// (mnuSaveCalibrationData, mnuRestoreCalibrationData) over them. The firmware loader uses the
// same reader and writer to carry calibration across a change of firmware.

#include "calibration/cal_file.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zv::platform {
class Dialogs;
class SettingsStore;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class clsCellWeft;
class oDirectory;

inline constexpr int kCalibrationFile = 24; // directory entry 25
inline constexpr int kCellCalibrationFile = 31; // directory entry 32

// True when the device keeps its calibration in file 24 alone: firmware version 6000 and a
// FileChunk of entry 32 other than 5.
[[nodiscard]] bool SingleCalFile(long firmwareVersion, const oDirectory& directory);

// Files 24 and, unless singleFile, 31 read whole from the device. On failure `file` is empty and
// `error` says which read failed.
struct CalibrationRead {
    std::optional<CalFile> file;
    std::string error;
};
[[nodiscard]] CalibrationRead readDeviceCalibration(clsCellWeft& driver, bool singleFile);

// True when the byte counts equal FileSize of entries 25 and 32.
[[nodiscard]] bool calibrationSizesMatch(const oDirectory& directory, const CalibrationBytes& bytes);

// Writes file 24, then (when asked) file 31, whole, in the parts the device takes; stops at the
// first failed write. True when all writes succeeded.
[[nodiscard]] bool writeDeviceCalibration(clsCellWeft& driver, const CalibrationBytes& bytes);

// The texts of the two commands.
namespace caltext {
inline constexpr const char* kSaveTitle = "Save Calibration Data";
inline constexpr const char* kRestoreTitle = "Restore Calibration Data";
inline constexpr const char* kPollingActive = "Cannot save calibration data while polling is active.";
inline constexpr const char* kSaved = "Calibration data has been saved.";
inline constexpr const char* kRestored = "Calibration data has been restored.";
inline constexpr const char* kNotRestored = "Calibration data has NOT been restored.";
inline constexpr const char* kAborted = "Operation has been aborted.";
inline constexpr const char* kMismatchTitle = "Warning!";
inline constexpr const char* kMismatch
    = "The calibration data structure you are trying to load does not match the device.\n"
      "Loading this information may produce undesired results. Do you wish to continue?";
inline constexpr const char* kDownloadErrorTitle = "Error downloading file";
inline constexpr const char* kDownloadError
    = "An error has occurred while downloading the calibration data.\nOperation aborted";
inline constexpr const char* kFilter = "Calibration Files (*.cal)|*.cal|";
} // namespace caltext

// What the commands need of the main window; an unset hook is skipped (isPolling: false,
// isTheDeviceWired: true).
struct CalibrationDataHooks {
    std::function<bool()> isPolling;
    std::function<bool()> isTheDeviceWired;
    std::function<void(bool)> disableAllCommands;
    std::function<void(bool)> enableAllCommands;
    // CommitChanges(false), which gives its own notification.
    std::function<bool()> commitChanges;
    std::function<void()> bringToFront;
    // The tray notification (title, text).
    std::function<void(const std::string&, const std::string&)> notify;
    // The "Warning!" question of a size mismatch; true goes on. Unset: the dialogs ask it.
    std::function<bool()> confirmMismatch;
};

struct CalibrationDataServices {
    clsCellWeft& driver;
    const AppGlobals& globals;
    platform::Dialogs& dialogs;
    // Keeps the dialogs' folder (Path_Calibration); nullptr: start in the documents folder and
    // store nothing.
    platform::SettingsStore* settings = nullptr;
};

// How a save or a restore ended.
enum class CalibrationOutcome { Done, Cancelled, Refused, Failed };

class CalibrationData {
public:
    CalibrationData(CalibrationDataServices services, CalibrationDataHooks hooks);

    // The menu commands: the file dialogs, then the flows below.
    void mnuSaveCalibrationData_Click();
    void mnuRestoreCalibrationData_Click();

    // The flows after the dialog, for a known path. Failures are shown through the dialogs and
    // hooks as the menu commands show them; `lastError` keeps the description.
    [[nodiscard]] CalibrationOutcome saveTo(const std::string& path);
    [[nodiscard]] CalibrationOutcome restoreFrom(const std::string& path);

    [[nodiscard]] const std::string& lastError() const { return lastError_; }
    [[nodiscard]] CalibrationDataHooks& hooks() { return hooks_; }

private:
    [[nodiscard]] std::optional<std::string> askPath(bool save);
    [[nodiscard]] bool single() const;
    void showError(const std::string& description);
    void notify(const char* title, const char* text);
    void run(const std::function<void()>& hook);
    void commandsOff();
    void commandsOn();

    CalibrationDataServices s_;
    CalibrationDataHooks hooks_;
    std::string lastError_;
};

} // namespace zv
