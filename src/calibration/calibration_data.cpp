#include "calibration/calibration_data.h"

#include "core/globals.h"
#include "core/settings_table.h"
#include "device_files/directory.h"
#include "driver/cellweft.h"
#include "platform/dialogs.h"

#include <cstdlib>
#include <filesystem>

namespace zv {

namespace {

constexpr const char* kFolderSetting = "Path_Calibration";
constexpr int kSingleFileChunk = 5;

const clsDirectoryElements* entryOf(const oDirectory& directory, int file)
{
    return directory.DirectoryElements.fileEntry(file);
}

// The user's documents folder, where the dialogs start before a folder has been remembered.
std::string documentsFolder()
{
    const char* home = std::getenv("HOME");
    if (!home || !*home)
        return {};
    const std::filesystem::path documents = std::filesystem::path(home) / "Documents";
    std::error_code error;
    return std::filesystem::is_directory(documents, error) ? documents.string() : std::string(home);
}

} // namespace

bool SingleCalFile(long firmwareVersion, const oDirectory& directory)
{
    const auto* entry = entryOf(directory, kCellCalibrationFile);
    const std::uint32_t chunk = entry ? entry->FileChunk : 0;
    return firmwareVersion == 6000 && chunk != kSingleFileChunk;
}

CalibrationRead readDeviceCalibration(clsCellWeft& driver, bool singleFile)
{
    CalibrationRead result;
    const auto first = driver.Transfer.readFile(kCalibrationFile);
    if (!first) {
        result.error = "Reading device file 24 failed.";
        return result;
    }
    CalFile file { *first, std::nullopt };
    if (!singleFile) {
        const auto second = driver.Transfer.readFile(kCellCalibrationFile);
        if (!second) {
            result.error = "Reading device file 31 failed.";
            return result;
        }
        file.secondLine = *second;
    }
    result.file = std::move(file);
    return result;
}

bool calibrationSizesMatch(const oDirectory& directory, const CalibrationBytes& bytes)
{
    const auto* first = entryOf(directory, kCalibrationFile);
    const auto* second = entryOf(directory, kCellCalibrationFile);
    return first && second && bytes.first.size() == first->FileSize
        && bytes.second.size() == second->FileSize;
}

bool writeDeviceCalibration(clsCellWeft& driver, const CalibrationBytes& bytes)
{
    if (!driver.PutFile(kCalibrationFile, bytes.first))
        return false;
    return !bytes.writeSecond || driver.PutFile(kCellCalibrationFile, bytes.second);
}

CalibrationData::CalibrationData(CalibrationDataServices services, CalibrationDataHooks hooks)
    : s_(services)
    , hooks_(std::move(hooks))
{
}

bool CalibrationData::single() const
{
    return SingleCalFile(s_.globals.gFirmwareVersion, s_.driver.Directory);
}

void CalibrationData::run(const std::function<void()>& hook)
{
    if (hook)
        hook();
}

void CalibrationData::commandsOff()
{
    if (hooks_.disableAllCommands)
        hooks_.disableAllCommands(true);
}

void CalibrationData::commandsOn()
{
    if (hooks_.enableAllCommands)
        hooks_.enableAllCommands(true);
}

void CalibrationData::notify(const char* title, const char* text)
{
    if (hooks_.notify)
        hooks_.notify(title, text);
}

void CalibrationData::showError(const std::string& description)
{
    lastError_ = description.empty() ? "Unknown" : description;
    (void)s_.dialogs.messageBox(
        "An error has occurred\nError: " + lastError_, platform::Buttons::OK, platform::Icon::Critical, "");
}

std::optional<std::string> CalibrationData::askPath(bool save)
{
    platform::FileDialogOptions options;
    options.title = "Zentavia";
    options.filter = caltext::kFilter;
    options.folder
        = s_.settings ? readSetting(*s_.settings, kFolderSetting, documentsFolder()) : documentsFolder();
    std::optional<std::string> path;
    if (save) {
        path = s_.dialogs.saveFile(options);
    } else if (auto chosen = s_.dialogs.openFiles(options); !chosen.empty()) {
        path = chosen.front();
    }
    if (!path || path->empty())
        return std::nullopt;
    if (s_.settings)
        writeSetting(*s_.settings, kFolderSetting, std::filesystem::path(*path).parent_path().string());
    return path;
}

void CalibrationData::mnuSaveCalibrationData_Click()
{
    if (hooks_.isPolling && hooks_.isPolling()) {
        (void)saveTo({});
        return;
    }
    commandsOff();
    const auto path = askPath(true);
    commandsOn();
    if (path)
        (void)saveTo(*path);
}

CalibrationOutcome CalibrationData::saveTo(const std::string& path)
{
    lastError_.clear();
    if (hooks_.isPolling && hooks_.isPolling()) {
        lastError_ = caltext::kPollingActive;
        (void)s_.dialogs.messageBox(
            caltext::kPollingActive, platform::Buttons::OK, platform::Icon::Information, caltext::kSaveTitle);
        return CalibrationOutcome::Refused;
    }
    commandsOff();
    // Both files are read before anything is written, so a failed read leaves the old file alone.
    const CalibrationRead read = readDeviceCalibration(s_.driver, single());
    std::string error = read.error;
    if (read.file)
        error = writeFileAtomically(path, formatCalFile(*read.file));
    if (!error.empty()) {
        commandsOn();
        showError(error);
        return CalibrationOutcome::Failed;
    }
    notify(caltext::kSaveTitle, caltext::kSaved);
    run(hooks_.bringToFront);
    commandsOn();
    return CalibrationOutcome::Done;
}

void CalibrationData::mnuRestoreCalibrationData_Click()
{
    if (hooks_.isTheDeviceWired && !hooks_.isTheDeviceWired())
        return;
    const auto path = askPath(false);
    if (path)
        (void)restoreFrom(*path);
}

CalibrationOutcome CalibrationData::restoreFrom(const std::string& path)
{
    lastError_.clear();
    const auto text = readTextFile(path);
    if (!text) {
        commandsOn();
        showError("Cannot read " + path);
        return CalibrationOutcome::Failed;
    }
    const CalibrationDecode decoded = decodeCalFile(parseCalFile(*text), single(), s_.globals.gTargetID);
    if (!decoded.error.empty()) {
        commandsOn();
        showError(decoded.error);
        return CalibrationOutcome::Failed;
    }
    commandsOff();
    if (!calibrationSizesMatch(s_.driver.Directory, decoded.bytes)) {
        const bool goOn = hooks_.confirmMismatch
            ? hooks_.confirmMismatch()
            : s_.dialogs.messageBox(caltext::kMismatch, platform::Buttons::YesNo, platform::Icon::Question,
                  caltext::kMismatchTitle)
                == platform::Answer::Yes;
        if (!goOn) {
            lastError_ = caltext::kAborted;
            notify(caltext::kRestoreTitle, caltext::kAborted);
            commandsOn();
            return CalibrationOutcome::Refused;
        }
    }
    if (!writeDeviceCalibration(s_.driver, decoded.bytes)) {
        lastError_ = caltext::kDownloadError;
        (void)s_.dialogs.messageBox(caltext::kDownloadError, platform::Buttons::OK, platform::Icon::Critical,
            caltext::kDownloadErrorTitle);
        commandsOn();
        notify(caltext::kRestoreTitle, caltext::kNotRestored);
        return CalibrationOutcome::Failed;
    }
    if (hooks_.commitChanges && !hooks_.commitChanges()) {
        lastError_ = "The commit to flash failed.";
        commandsOn();
        return CalibrationOutcome::Failed;
    }
    notify(caltext::kRestoreTitle, caltext::kRestored);
    run(hooks_.bringToFront);
    commandsOn();
    return CalibrationOutcome::Done;
}

} // namespace zv
