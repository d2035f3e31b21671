#pragma once
// Target detection and load: open the command set, learn whether the target runs its application
// or sits in a loader, identify it in the target table, check the seal, read the directory, the
// configuration files and the first device files, build the cells and show the main window.
// Every failure stops on the splash with a text and buttons for the next move.

#include "core/target_table.h"
#include "startup/frm_splash.h"
#include "startup/lan_notice.h"

#include <functional>
#include <optional>
#include <string>

namespace zv::platform {
class Dialogs;
class SettingsStore;
} // namespace zv::platform

namespace zv {

class ActiveForm;
class clsMain;
struct AppGlobals;

// Results of DetectTarget.
namespace detect {
inline constexpr int kLoaded = 0;
inline constexpr int kApplicationLoader = 0x6699;
inline constexpr int kSystemLoader = 0xFA99;
inline constexpr int kSealed = 0x8004;
inline constexpr int kUnknownTarget = 0xEFFF;
inline constexpr int kNoAnswer = 0xFFFB;
inline constexpr int kCommunicationError = 0xFFFF;
// The USB adapter's unlock failed with -1, -2, -3 or otherwise.
inline constexpr int kUsbUnlockFailed = 0x8001;
inline constexpr int kUsbUnlockFailed2 = 0x8002;
inline constexpr int kUsbUnlockFailed3 = 0x8003;
inline constexpr int kUsbFailed = 0x800F;
// The detection result of a failed unlock over the USB adapter, from usbUnlockDevice's result.
[[nodiscard]] int usbUnlockResult(int result);
} // namespace detect

inline constexpr const char* kRecordNeverWritten = "FFFFFFFFFFFFFFFF";

// What the detection needs of the main window and the windows around it.
struct DetectionHooks {
    std::function<bool()> mainFormLoaded;
    // Loads and shows frmMain and makes it the active form; its load runs LoadMainForm.
    std::function<void()> showMainForm;
    std::function<void()> hideMainForm;
    std::function<void()> loadMainForm; // LoadMainForm of a main window that is up
    std::function<void()> openLogin; // frmLogin
    std::function<void()> openBootStrapLoader; // frmBootStrapLoader, modeless; may be empty
    // The USB adapter's word read of command 0 at an 8-bit address, for btnScan: true when it answered.
    std::function<bool(int address8)> usbProbeAddress;
    std::function<void()> connectStep; // the main window's connection step, after a scan found the target
};

struct DetectionServices {
    AppGlobals& globals;
    platform::EventLoop& loop;
    platform::Dialogs& dialogs;
    const platform::SettingsStore& settings;
    std::string programFolder;
    ActiveForm& activeForm;
    frmSplash& splash;
};

class TargetDetection {
public:
    TargetDetection(DetectionServices services, DetectionHooks hooks);

    // The driver; set when gMain is created.
    void setMain(clsMain* main) { main_ = main; }

    [[nodiscard]] int DetectTarget(bool targetChosen);
    // Connect to Pack: the dongle's port is opened again (the adapter is, by DetectTarget) and the
    // dongle reset and configured before the target is detected, so a link that was lost, or a
    // dongle plugged in again, is found at the first try.
    [[nodiscard]] int ReconnectTarget();
    [[nodiscard]] int DetectDemoTarget(bool targetChosen);
    void ShowStartupFault(StartupFault reason);
    // Offers other configuration files than the target's; true when the user declined.
    bool PromptAlternateConfig();
    void MigrateStoredKey();
    // frmBootStrapLoader; without a loader the splash stays with its buttons. False then.
    bool OpenBootStrapLoader();

    // The splash's buttons of the target choice and the bus scan.
    void cmdLoad_Click();
    void CmdBootloader_Click();
    void btnScan_Click();

    // The log definitions of the target in use (its registry key, else its SLOG and DLOG).
    std::string StaticDefinitionFile;
    std::string DynamicDefinitionFile;
    // Armed by each load whose cells did not match.
    LanNotice lanNotice;

private:
    [[nodiscard]] bool usb() const;
    // The fault screen and result of a failed unlock on the active transport.
    [[nodiscard]] int unlockFailure(int result);
    [[nodiscard]] bool identifyTarget(const std::string& id);
    void selectTarget(const TargetRecord& target);
    [[nodiscard]] int sealed();
    [[nodiscard]] int loadConfiguration();
    [[nodiscard]] int parameterNumber(const char* name) const;
    void setParameterBit3(bool on);
    [[nodiscard]] bool writeRecord(int file, int offset, std::vector<std::uint8_t> bytes);
    [[nodiscard]] bool chooseConfigFile(int which, const char* filter, const char* title);

    DetectionServices s_;
    DetectionHooks hooks_;
    clsMain* main_ = nullptr;
};

} // namespace zv
