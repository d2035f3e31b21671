#include "firmware_loader/calibration_carry.h"

#include "driver/cls_main.h"
#include "firmware_loader/calibration_bridge.h"
#include "firmware_loader/firmware_loader.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

#include <filesystem>

namespace zv {

namespace {

constexpr int kConfigFile = 9;
constexpr int kAlgorithmBit3 = 0x08;
constexpr const char* kAlgorithmEnable = "Algorithm Enable";
constexpr const char* kWiredCommand = "0D000000";
constexpr const char* kCommitCommand = "03000000";

} // namespace

std::string rebuildCalibrationText(const std::string& newText, const std::string& oldCalibration)
{
    std::string text = newText.substr(0, std::min(newText.size(), kCalibrationHeadDigits)) + oldCalibration;
    const std::size_t end = kCalibrationHeadDigits + oldCalibration.size();
    if (newText.size() > end)
        text += newText.substr(end);
    return text;
}

CalibrationCarry::CalibrationCarry(CalibrationCarryServices services)
    : s_(std::move(services))
{
}

std::string CalibrationCarry::restoreFolder() const
{
    return s_.programFolder + "/CalRestore";
}

std::string CalibrationCarry::modifiedPath() const
{
    return restoreFolder() + "/modified.cal";
}

SaveOutcome CalibrationCarry::SaveCalibrationFile()
{
    std::error_code ignored;
    std::filesystem::create_directories(restoreFolder(), ignored);
    platform::FileDialogOptions options;
    options.title = "Save current calibration data";
    options.filter = calibrationFilter();
    options.folder = restoreFolder();
    const auto path = s_.dialogs.saveFile(options);
    if (!path)
        return SaveOutcome::Cancelled;
    clsCellWeft& driver = s_.main.CellWeft();
    const auto texts = readCalibrationTexts(driver, singleCalibrationFile(s_.globals, driver));
    if (!texts || !writeCalibrationFile(*path, *texts).empty())
        return SaveOutcome::Failed;
    oldText_ = texts->first;
    oldCalibration_ = oldText_.size() > kCalibrationHeadDigits ? oldText_.substr(kCalibrationHeadDigits) : "";
    return SaveOutcome::Saved;
}

bool CalibrationCarry::SetAlgorithmEnable(bool on)
{
    clsCellWeft& driver = s_.main.CellWeft();
    std::string text;
    if (!driver.GetFile(kConfigFile, text))
        return false;
    clsSMBusParameter* parameter = driver.GatewayParameters.FindByName(kAlgorithmEnable);
    if (!parameter)
        return false;
    const auto& locale = driver.Parameters.display.locale;
    int value = static_cast<int>(parameter->value.asNumber(locale).value_or(0));
    if (on) {
        if (!driver.WriteCommandFile(kWiredCommand))
            return false;
        value |= kAlgorithmBit3;
    } else {
        value ^= kAlgorithmBit3;
    }
    parameter->NewValue = value;
    if (!driver.WriteParameter(kAlgorithmEnable, 0) || !driver.GetFile(kConfigFile, text))
        return false;
    return parameter->value.asNumber(locale) == static_cast<double>(value);
}

bool CalibrationCarry::RestoreCalibration()
{
    clsCellWeft& driver = s_.main.CellWeft();
    if (!driver.GetDir() || !SetAlgorithmEnable(true))
        return false;
    const auto fresh = readCalibrationTexts(driver, false);
    if (!fresh || !writeCalibrationFile(restoreFolder() + "/tmp.cal", *fresh).empty())
        return false;
    CalibrationTexts modified { rebuildCalibrationText(fresh->first, oldCalibration_), fresh->second };
    if (!writeCalibrationFile(modifiedPath(), modified).empty())
        return false;
    const auto readBack = readCalibrationFile(modifiedPath());
    if (!readBack)
        return false;
    if (!calibrationMatchesDevice(driver, *readBack)
        && s_.dialogs.messageBox(calibrationMismatchText(), platform::Buttons::YesNo,
               platform::Icon::Question, calibrationMismatchTitle())
            != platform::Answer::Yes)
        return false;
    if (!writeCalibrationToDevice(driver, *readBack)) {
        s_.dialogs.messageBox(calibrationDownloadErrorText(), platform::Buttons::OK, platform::Icon::Critical,
            calibrationDownloadErrorTitle());
        return false;
    }
    (void)driver.WriteCommandFile(kCommitCommand);
    (void)SetAlgorithmEnable(false);
    return true;
}

std::optional<bool> CalibrationCarry::Preserve(
    FirmwareLoader& loader, const std::function<void()>& clearPreserve)
{
    using platform::Answer;
    for (;;) {
        const SaveOutcome saved = SaveCalibrationFile();
        if (saved == SaveOutcome::Cancelled)
            return std::nullopt;
        if (saved == SaveOutcome::Saved)
            break;
        const Answer answer = s_.dialogs.messageBox(kPreserveSaveFailedText,
            platform::Buttons::AbortRetryIgnore, platform::Icon::Exclamation, "Preserve Calibration Failed");
        if (answer == Answer::Abort)
            return std::nullopt;
        if (answer == Answer::Ignore) {
            if (clearPreserve)
                clearPreserve();
            return loader.DownloadImage();
        }
    }
    if (!loader.DownloadImage())
        return false;
    s_.loop.processEvents();
    if (RestoreCalibration()) {
        if (clearPreserve)
            clearPreserve();
        s_.dialogs.messageBox("Calibration has been preserved.", platform::Buttons::OK,
            platform::Icon::Information, "Preserve Calibration");
    } else {
        s_.dialogs.messageBox(
            "An error has occurred while trying to preserve the calibration data.\n"
            "The modified.cal file needs to be loaded manually by using the menu File >> Calibration Data >> "
            "Restore Data from File...\n"
            "The file can be found at "
                + s_.programFolder
                + "/CalRestore/modified.cal. This file is overritten each time this operation is performed.",
            platform::Buttons::OK, platform::Icon::Critical, "Restore Calibration");
    }
    return true;
}

} // namespace zv
