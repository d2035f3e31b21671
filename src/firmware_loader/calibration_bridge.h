#pragma once
// The loader's one door to the calibration files: reading and writing files 24 and 31 of the
// device, and the .cal file of those two texts. Everything the preservation of calibration needs
// of the calibration subsystem passes here.

#include <optional>
#include <string>

namespace zv {

struct AppGlobals;
class clsCellWeft;

// The two texts of a .cal file: device file 24, and file 31 unless the device keeps one file.
struct CalibrationTexts {
    std::string first;
    std::optional<std::string> second;
};

// Files 24 and (unless `singleFile`) 31 read whole; nothing when a read failed.
[[nodiscard]] std::optional<CalibrationTexts> readCalibrationTexts(clsCellWeft& driver, bool singleFile);
// SingleCalFile for the device as it is now.
[[nodiscard]] bool singleCalibrationFile(const AppGlobals& globals, const clsCellWeft& driver);
// Writes the .cal file whole (temporary file, then renamed); empty on success, else the reason.
[[nodiscard]] std::string writeCalibrationFile(const std::string& path, const CalibrationTexts& texts);
// Reads a .cal file back; nothing when it cannot be read.
[[nodiscard]] std::optional<CalibrationTexts> readCalibrationFile(const std::string& path);
// True when the byte counts of both texts equal the sizes the directory gives files 24 and 31.
[[nodiscard]] bool calibrationMatchesDevice(const clsCellWeft& driver, const CalibrationTexts& texts);
// Writes both texts to files 24 and 31; false at the first failed write (or a text that is not hex).
[[nodiscard]] bool writeCalibrationToDevice(clsCellWeft& driver, const CalibrationTexts& texts);

// The texts of the calibration subsystem the loader shows as well.
[[nodiscard]] const char* calibrationMismatchTitle();
[[nodiscard]] const char* calibrationMismatchText();
[[nodiscard]] const char* calibrationDownloadErrorTitle();
[[nodiscard]] const char* calibrationDownloadErrorText();
[[nodiscard]] const char* calibrationFilter();

} // namespace zv
