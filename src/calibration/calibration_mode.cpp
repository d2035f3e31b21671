#include "calibration/calibration_mode.h"

#include "device_files/directory.h"
#include "driver/cellweft.h"
#include "platform/dialogs.h"

#include <exception>

namespace zv {

namespace {

constexpr int kConfigurationFile = 9;
constexpr const char* kEnterText
    = "An error has occurred while trying to enter calibration mode.\nPlease check hardware.";
constexpr const char* kExitText
    = "An error has occurred while trying to exit calibration mode.\nPlease check hardware.";

} // namespace

CalibrationMode::CalibrationMode(clsCellWeft& driver, platform::Dialogs& dialogs, CalibrationModeHooks hooks)
    : driver_(driver)
    , dialogs_(dialogs)
    , hooks_(std::move(hooks))
{
}

void CalibrationMode::failure(const char* title, const char* text)
{
    (void)dialogs_.messageBox(text, platform::Buttons::OK, platform::Icon::Critical, title);
}

bool CalibrationMode::writeAlgorithmEnable(int fileIndex, int value)
{
    const std::string hex = driver_.Conversion.GetConfigurationValue(std::to_string(value), "integer");
    if (hex.empty())
        return false;
    FileRequest request;
    request.access = 1;
    request.file = kConfigurationFile;
    request.offset = fileIndex;
    request.count = 1;
    request.data = hexToBytes(hex);
    return driver_.FileAccessRequest(request).ok;
}

bool CalibrationMode::ShowInCalibrationMode(const std::function<void()>& body)
{
    if (hooks_.isTheDeviceWired && !hooks_.isTheDeviceWired())
        return false;
    std::string text;
    const ParameterPlace place = driver_.GetFile(kConfigurationFile, text)
        ? driver_.FindParameter("Algorithm enable", 0)
        : ParameterPlace {};
    if (!place.parameter) {
        failure("Failed to enter calibration mode", kEnterText);
        return false;
    }
    const int oldValue
        = static_cast<int>(place.parameter->value.asNumber(driver_.Parameters.display.locale).value_or(0));
    const int fileIndex = place.parameter->FileIndex;
    if (!writeAlgorithmEnable(fileIndex, (oldValue | kCalibrationModeBits) & 0xFFFF)) {
        failure("Failure to set calibration mode", kEnterText);
        return false;
    }
    std::exception_ptr thrown;
    try {
        body();
    } catch (...) {
        thrown = std::current_exception();
    }
    const bool left = writeAlgorithmEnable(fileIndex, oldValue);
    if (!left)
        failure("Failure to clear calibration mode", kExitText);
    if (left && CalibrationPending && hooks_.commitChanges)
        (void)hooks_.commitChanges();
    if (thrown)
        std::rethrow_exception(thrown);
    return left;
}

} // namespace zv
