#include "firmware_loader/calibration_bridge.h"

#include "calibration/cal_file.h"
#include "calibration/calibration_data.h"
#include "core/globals.h"
#include "driver/cellweft.h"

#include <fstream>
#include <sstream>

namespace zv {

namespace {

CalFile calFileOf(const CalibrationTexts& texts)
{
    return CalFile { texts.first, texts.second };
}

// Both lines as bytes; a missing second line is the default of 15 zero bytes.
std::optional<CalibrationBytes> bytesOf(const CalibrationTexts& texts)
{
    const auto first = calLineBytes(texts.first);
    const auto second = calLineBytes(texts.second.value_or(std::string(kDefaultCalSecondLine)));
    if (!first || !second)
        return std::nullopt;
    return CalibrationBytes { *first, *second, texts.second.has_value() };
}

} // namespace

std::optional<CalibrationTexts> readCalibrationTexts(clsCellWeft& driver, bool singleFile)
{
    const CalibrationRead read = readDeviceCalibration(driver, singleFile);
    if (!read.file)
        return std::nullopt;
    return CalibrationTexts { read.file->firstLine, read.file->secondLine };
}

bool singleCalibrationFile(const AppGlobals& globals, const clsCellWeft& driver)
{
    return SingleCalFile(globals.gFirmwareVersion, driver.Directory);
}

std::string writeCalibrationFile(const std::string& path, const CalibrationTexts& texts)
{
    return writeFileAtomically(path, formatCalFile(calFileOf(texts)));
}

std::optional<CalibrationTexts> readCalibrationFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    std::ostringstream text;
    text << in.rdbuf();
    const CalFile file = parseCalFile(text.str());
    return CalibrationTexts { file.firstLine, file.secondLine };
}

bool calibrationMatchesDevice(const clsCellWeft& driver, const CalibrationTexts& texts)
{
    const auto bytes = bytesOf(texts);
    return bytes && calibrationSizesMatch(driver.Directory, *bytes);
}

bool writeCalibrationToDevice(clsCellWeft& driver, const CalibrationTexts& texts)
{
    const auto bytes = bytesOf(texts);
    return bytes && writeDeviceCalibration(driver, *bytes);
}

const char* calibrationMismatchTitle()
{
    return caltext::kMismatchTitle;
}

const char* calibrationMismatchText()
{
    return caltext::kMismatch;
}

const char* calibrationDownloadErrorTitle()
{
    return caltext::kDownloadErrorTitle;
}

const char* calibrationDownloadErrorText()
{
    return caltext::kDownloadError;
}

const char* calibrationFilter()
{
    return caltext::kFilter;
}

} // namespace zv
