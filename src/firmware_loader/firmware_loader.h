#pragma once
// The loader's work on the device, shared by frmBootStrapLoader and `zentavia-cli firmware`:
// loading an image file, connecting to a target that may have no application, the system
// information and its verification, the download of all sections and the download with
// verification and its repeat. What the user sees goes through LoaderView and the dialogs.

#include "firmware_loader/enc_file.h"
#include "firmware_loader/system_information.h"
#include "platform/dialogs.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zv::platform {
class EventLoop;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class clsMain;

struct LoaderServices {
    clsMain& main;
    AppGlobals& globals;
    platform::EventLoop& loop;
    platform::Dialogs& dialogs;
    std::string programFolder;
    std::function<void(const std::string&)> logEvent; // LogEvent
    // A run-time error while a file is loaded: the common handler, procedure and object given.
    std::function<void(const std::string& description)> reportLoadError;
};

// The file fields of the window after a file was loaded.
struct LoadedImageView {
    std::string fileName;
    std::size_t sectionCount = 0;
    std::string versionLabel1; // "App Version:" or "File Version:"
    std::string versionLabel2; // "Data Version:" or "File Version:"
    std::string version1; // "n/a" when the file has no such section
    std::string version2;
};

// What the user sees of the loader's work; every hook may be empty.
struct LoaderView {
    std::function<void(const std::string&)> status; // lblStatus
    std::function<void(int percent)> progress; // pgbRecords
    std::function<void(const std::string&, platform::Icon)> info; // the "Info" pane
    std::function<void(const std::string&)> title;
    std::function<void(const LoadedImageView&)> showImage;
    std::function<void(const SystemInformation&)> showSystemInformation;
    std::function<void(bool busy)> busy; // hourglass, the loader's buttons off
    std::function<void(bool enabled)> downloadEnabled; // cmdDownload, mnuDownload
    std::function<void()> beep;
};

enum class LoadOutcome { Loaded, NotFirmware, Invalid, Incompatible, Unreadable };
enum class DownloadOutcome { Verified, NotVerified, DownloadFailed, Aborted };

inline constexpr const char* kDownloadFailedText = "Firmware download failed";
inline constexpr const char* kDownloadSucceededText = "Firmware has been loaded successfully";

class FirmwareLoader {
public:
    FirmwareLoader(LoaderServices services, LoaderView view);
    ~FirmwareLoader();
    FirmwareLoader(const FirmwareLoader&) = delete;
    FirmwareLoader& operator=(const FirmwareLoader&) = delete;

    // Parses the file into the section table, shows it and checks it against the target.
    // `automatic`: the start-up's own file, whose box names no file.
    LoadOutcome LoadImage(const std::string& path, bool automatic = false);
    // Sends all sections in order; true when every one was accepted.
    [[nodiscard]] bool DownloadImage();
    // Reaches the target from the hardware state on, also when it runs only a loader; false
    // after the box that says why.
    [[nodiscard]] bool ConnectToTarget();
    // The hardware state into the title, file 5 into the fields; the verification code.
    SystemInformation GetSystemInformation();
    // GetSystemInformation and the message of its verification code in the "Info" pane.
    int verify();
    // DownloadImage (or the download inside `preserve`, when given), then the verification
    // and, when it does not report OK, a second connection and verification.
    DownloadOutcome downloadWithVerification(const std::function<std::optional<bool>()>& preserve = {});

    [[nodiscard]] const std::vector<BootSection>& sections() const { return sections_; }
    [[nodiscard]] bool imageReady() const { return compatible_ && !sections_.empty(); }
    // The loader connected by itself (the target was not loaded before).
    bool connectedBySelf = false;
    // A download (or restore) ran since the loader was opened.
    bool deviceChanged = false;
    [[nodiscard]] const SystemInformation& lastInformation() const { return information_; }
    [[nodiscard]] int lastVerification() const { return information_.verification; }
    [[nodiscard]] LoaderView& view() { return view_; }

private:
    void onStatus(int percent, const std::string& text);
    void onComplete(bool success);
    void status(const std::string& text);
    void info(const std::string& text, platform::Icon icon);
    bool connectionFailed(const std::string& text);

    LoaderServices s_;
    LoaderView view_;
    std::vector<BootSection> sections_;
    bool compatible_ = false;
    bool downloadFailed_ = false;
    SystemInformation information_;
    std::function<void(int, const std::string&)> previousStatusHook_;
    std::function<void(bool)> previousCompleteHook_;
};

// Texts of the connection.
inline constexpr const char* kConnectionFailedText = "Communication error to hardware. Connection failed";
inline constexpr const char* kCheckAndTryAgain
    = "Please check the connections to the hardware and try again.";
inline constexpr const char* kCheckAndReconnect
    = "Please check the connections to the hardware and try to reconnect.";
inline constexpr const char* kUnableToConnect = "Unable to connect to device";
inline constexpr const char* kConfigurationError
    = "An error has occurred while reading the configuration files.";

} // namespace zv
