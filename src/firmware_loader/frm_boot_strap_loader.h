#pragma once
// frmBootStrapLoader, the "Zentavia BootStrap Loader" window: the image file and its versions,
// what the device reports about its images, the download with verification and, on target
// "1001", the calibration carried across the change of firmware. It runs as well on a target that
// has only a loader. The work on the device is FirmwareLoader's; this class shows it.

#include "firmware_loader/firmware_loader.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/status_bar.h"
#include "platform/ui/window.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zv::platform {
class SettingsStore;
} // namespace zv::platform

namespace zv {

class ActiveForm;
class CalibrationCarry;

struct BootStrapLoaderServices {
    LoaderServices loader;
    platform::SettingsStore& settings;
    ActiveForm* activeForm = nullptr;
    std::function<bool()> mainWindowOpen;
    std::function<void(bool enabled)> enableMainWindow;
    std::function<void()> showMainWindow;
    // After a download or restore, on closing: the second stage of the start-up, LoadMainForm and
    // UpdateDeviceBits of the main window.
    std::function<void()> restartApplication;
    std::function<void()> loadMainForm;
    std::function<void()> updateDeviceBits;
    std::function<void()> exitApplication; // mnuExit
    std::function<void(int pointer)> setMousePointer; // 11 hourglass, 0 normal
    std::function<void()> beep;
};

inline constexpr const char* kLoaderWarning
    = "Warning!!! Once the download is in progress, you must not stop it from completing. In the event of a "
      "download failure, the hardware will not be operational and must be reprogrammed.";
inline constexpr const char* kPreserveCaption = "Preserve calibration when converting to ZK9460S12";

class frmBootStrapLoader : public platform::ui::Window {
public:
    explicit frmBootStrapLoader(BootStrapLoaderServices services);
    ~frmBootStrapLoader() override;

    // Loads the file as the start-up's automatic update does; true when it is ready to download.
    [[nodiscard]] bool AutoLoadImage(const std::string& path);
    // The "Info" pane takes the title, then the download with verification.
    DownloadOutcome AutoDownload();

    [[nodiscard]] platform::ui::StatusBar* statusBar() override { return &sbStatusBar; }
    [[nodiscard]] FirmwareLoader* loader() { return loader_.get(); }
    [[nodiscard]] bool downloading() const { return busy_; }
    [[nodiscard]] std::optional<DownloadOutcome> lastOutcome() const { return lastOutcome_; }

    platform::ui::Label lblWarning { "lblWarning" };
    platform::ui::Label lblFile { "lblFile" };
    platform::ui::Label lblFileCount { "lblFileCount" };
    platform::ui::Label lblAppVersion { "lblAppVersion" };
    platform::ui::Label lblDataVersion { "lblDataVersion" };
    platform::ui::Label lblFile1Version { "lblFile1Version" };
    platform::ui::Label lblFile2Version { "lblFile2Version" };
    platform::ui::Frame fraSystemInfo { "fraSystemInfo" };
    platform::ui::Label lblAppFFileVersion { "lblAppFFileVersion" };
    platform::ui::Label lblAppSysVersion { "lblAppSysVersion" };
    platform::ui::Label lblDataCRC { "lblDataCRC" };
    platform::ui::Label lblFDirCRC { "lblFDirCRC" };
    platform::ui::Label lblFFileVersion { "lblFFileVersion" };
    platform::ui::Label lblFW { "lblFW" };
    platform::ui::Label lblFWCRC { "lblFWCRC" };
    platform::ui::Label lblSystemCRC { "lblSystemCRC" };
    platform::ui::Label lblSystemStatus { "lblSystemStatus" };
    platform::ui::Label lblSystemVersion { "lblSystemVersion" };
    platform::ui::ProgressBar pgbRecords { "pgbRecords" };
    platform::ui::Label lblStatus { "lblStatus" };
    platform::ui::StatusBar sbStatusBar { "sbStatusBar" };
    platform::ui::Button cmdLoadImage { "cmdLoadImage" };
    platform::ui::Button cmdDownload { "cmdDownload" };
    platform::ui::CheckBox chkPreserve { "chkPreserve" };
    platform::ui::MenuItem mnuFile { "mnuFile" };
    platform::ui::MenuItem mnuLoad { "mnuLoad" };
    platform::ui::MenuItem mnuDownload { "mnuDownload" };
    platform::ui::MenuItem mnuGetSystemInformation { "mnuGetSystemInformation" };
    platform::ui::MenuItem mnuClose { "mnuClose" };
    platform::ui::MenuItem mnuExit { "mnuExit" };

protected:
    void handleLoad() override;
    void handleUnload() override;
    [[nodiscard]] bool handleCloseRequest() override;

private:
    [[nodiscard]] LoaderView makeView();
    void showInfo(const std::string& text, platform::Icon icon);
    void showSystemInformation(const SystemInformation& information);
    void setBusy(bool busy);
    void setDownloadEnabled(bool enabled);
    void showTargetControls();
    void chooseFile();
    void download();
    void chkPreserve_Click();
    [[nodiscard]] std::optional<bool> Preserve();
    [[nodiscard]] std::string firstFolder() const;
    [[nodiscard]] platform::ui::Label* fieldLabel(const std::string& name);

    BootStrapLoaderServices s_;
    std::unique_ptr<FirmwareLoader> loader_;
    std::unique_ptr<CalibrationCarry> calibration_;
    bool busy_ = false;
    bool closePending_ = false;
    bool downloadEnabled_ = false;
    std::optional<DownloadOutcome> lastOutcome_;
};

} // namespace zv
