#pragma once
// The commands that act on the device as a whole: commit RAM to flash, initialize (restart from
// flash, with or without relearn), rebuild the cell network, the wired, configured and ship
// state bits, reset the fuse, connect and safe disconnect. Each is a word written to the command
// file in the frame hourglass, command, tray notification, pointer back.

#include <functional>
#include <memory>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
namespace ui {
class Window;
}
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class ErrorHandler;
class clsMain;
class clsCellWeft;
class frmMain;
class frmSafeDisconnect;

// What the commands need of the live monitor and the start-up; each runs when set.
struct CommandHooks {
    std::function<void(int)> SetMousePointer; // 11 hourglass, 0 normal
    std::function<void()> UpdateDeviceBits;
    std::function<void()> LoadTabs;
    std::function<void()> Parameters_ReadAll;
    std::function<void()> UpdateDynamicData;
    // After a rebuild: the row of lvGateway "Online" with GatewayState 1, the rows of lvNodes,
    // NodeGrid_Load(1).
    std::function<void()> rebuildLists;
    std::function<void()> BuildPlotChannels;
    // The start-up's splash with a status text, and its close.
    std::function<void(const std::string&)> showSplash;
    std::function<void()> closeSplash;
    // The target detection; true when it reports nothing wrong.
    std::function<bool()> DetectTarget;
    std::function<void()> DetectDemoTarget;
    std::function<void()> LoadMainForm;
    // Brings the main window to the front.
    std::function<void()> bringToFront;
    // Shows the main window maximized (the loader-only start, before LoadMainForm).
    std::function<void()> showMaximized;
    // The window's CalibrationPending flag goes false after a commit.
    std::function<void()> clearCalibrationPending;
    // Asks the poll to commit at its next tick (mnuCommit while PollingActive).
    std::function<void()> deferCommit;
    // Shows a window modally; returns once it is hidden or unloaded.
    std::function<void(platform::ui::Window&)> showModal;
    // Lets the front end bind a window made on first use.
    std::function<void(platform::ui::Window&)> onWindowCreated;
};

struct CommandServices {
    clsMain& main;
    AppGlobals& globals;
    frmMain& window;
    platform::Dialogs& dialogs;
    platform::EventLoop& loop;
    // The common handler of Rebuild_LAN's failures; without one they are not recorded.
    ErrorHandler* errors = nullptr;
};

class DeviceCommands {
public:
    DeviceCommands(CommandServices services, CommandHooks hooks);
    ~DeviceCommands();
    DeviceCommands(const DeviceCommands&) = delete;
    DeviceCommands& operator=(const DeviceCommands&) = delete;

    // The operations the tools call; each returns ok.
    [[nodiscard]] bool IsTheDeviceWired();
    [[nodiscard]] bool CommitChanges(bool silent);
    [[nodiscard]] bool CommandInitialize(bool relearn);
    [[nodiscard]] bool Wired();
    [[nodiscard]] bool ShipMode();
    [[nodiscard]] bool ResetFuse();
    [[nodiscard]] bool Rebuild();

    // The menu commands.
    void mnuCommit_Click();
    void mnuInitialize_Click();
    void mnuRelearn_Click();
    void mnuRelearnPreserve_Click();
    void mnuRebuildLAN_Click();
    void Rebuild_LAN();
    void mnuResetFuse_Click();
    void mnuToggleSM_Click();
    void mnuToggleWired_Click();
    void mnuToggleConfigure_Click();
    void mnuConnect_Click();
    void mnuSafeDisconnect_Click();

    // The hex text of device file 24 kept across the restart of mnuRelearnPreserve.
    std::string UserCalibrationImage;

    // The driver's flag: parameters were written to RAM and wait for a commit.
    [[nodiscard]] bool ParametersWritten();

    [[nodiscard]] CommandHooks& hooks() { return hooks_; }
    // Made on first use.
    [[nodiscard]] frmSafeDisconnect& safeDisconnect();

private:
    static constexpr int kHourglass = 11;
    static constexpr int kDefaultPointer = 0;

    struct Outcome {
        const char* failTitle;
        const char* failText;
        const char* doneTitle; // nullptr: no notification on success
        const char* doneText;
        const char* errorTitle;
    };
    [[nodiscard]] bool singleCommand(const char* word, const Outcome& outcome, bool updateBits);
    [[nodiscard]] bool initialize(bool relearn);
    void commitEntriesOff();
    [[nodiscard]] bool toggleAlgorithmBit(const char* parameterName, int bit, bool& stateBit);
    [[nodiscard]] int rebuildCode();
    void rebuildViews();
    void reportRebuild(int code);
    [[nodiscard]] bool readWordZero();
    // Runs a command; an unexpected failure shows "An error has occurred" under the title and
    // gives false.
    [[nodiscard]] bool guarded(const char* errorTitle, const std::function<bool()>& command);
    void pointer(int shape);
    void notify(const std::string& title, const std::string& text, bool error);
    void run(const std::function<void()>& hook);
    [[nodiscard]] clsCellWeft& driver();

    CommandServices s_;
    CommandHooks hooks_;
    std::unique_ptr<frmSafeDisconnect> safeDisconnect_;
};

} // namespace zv
