#pragma once
// Carrying the calibration across a change of firmware (8S to 12S conversion): the calibration
// saved to a .cal file before the download, the new firmware's files 24 and 31 rebuilt around the
// old calibration and written back after it, the algorithm switched off meanwhile.

#include <functional>
#include <optional>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class clsMain;
class FirmwareLoader;

inline constexpr const char* kConfirmPreserveText
    = "Warning! This option should only be selected when upgrading from 8S firmware to 12S firmware.\n"
      "Is this what you intend on doing?";
inline constexpr const char* kPreserveSaveFailedText
    = "An error has ocurred while saving the calibration data.\n"
      "If you continue without saving the calibration data then\n"
      "the calibration will be invalid after the download and the\n"
      "target will have to be recalibrated.\n"
      "What would you like to do?";
// Characters of file 24's text in front of the calibration (36 bytes).
inline constexpr std::size_t kCalibrationHeadDigits = 72;

struct CalibrationCarryServices {
    clsMain& main;
    AppGlobals& globals;
    platform::EventLoop& loop;
    platform::Dialogs& dialogs;
    std::string programFolder;
};

enum class SaveOutcome { Saved, Cancelled, Failed };

// The text of file 24 for the new firmware: its own head, then the old calibration, then what the
// new text has behind the old calibration's end.
[[nodiscard]] std::string rebuildCalibrationText(
    const std::string& newText, const std::string& oldCalibration);

class CalibrationCarry {
public:
    explicit CalibrationCarry(CalibrationCarryServices services);

    // The save dialog in "CalRestore" beside the program, then files 24 and 31 into that file.
    SaveOutcome SaveCalibrationFile();
    // The new directory, the algorithm off, the new files rebuilt around the old calibration,
    // written, committed, the algorithm back.
    [[nodiscard]] bool RestoreCalibration();
    // Bit 3 of "Algorithm Enable" set (with the wired command first) or toggled back; true when
    // the value read back equals the one written.
    [[nodiscard]] bool SetAlgorithmEnable(bool on);
    // The whole preservation around the loader's download: nothing when the user aborted, else
    // whether the download itself succeeded (a failed restore has shown its box).
    [[nodiscard]] std::optional<bool> Preserve(
        FirmwareLoader& loader, const std::function<void()>& clearPreserve);

    [[nodiscard]] std::string restoreFolder() const;
    [[nodiscard]] std::string modifiedPath() const;
    [[nodiscard]] const std::string& oldCalibration() const { return oldCalibration_; }

private:
    CalibrationCarryServices s_;
    std::string oldText_; // file 24 as saved
    std::string oldCalibration_; // its part from character 73 on
};

} // namespace zv
