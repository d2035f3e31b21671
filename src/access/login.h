#pragma once
// The seal and the login: the access level the target grants, the password sent through device
// file 3, the login window when the target is sealed, login on demand, the level passwords
// dialog, and closing the command lock at exit.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace zv::platform {
class Dialogs;
class EventLoop;
} // namespace zv::platform
namespace zv::platform::ui {
class Window;
}

namespace zv {

struct AppGlobals;
class clsMain;
class SmbusTransactions;
class frmLogin;
class frmUserAccessLevel;

using PasswordBytes = std::array<std::uint8_t, 8>;

// The command lock of the active transport: the dongle's ManufacturerAccess words, or the USB
// adapter's operations of the same names.
struct CommandLock {
    std::function<int()> UnlockDevice;
    std::function<bool()> EnableUlmarCommandSet;
    std::function<bool()> DisableUlmarCommandSet;
    std::function<bool()> LockDevice;
    std::function<int()> GetAccessLevel; // level; -1 request failed, -2 answer unreadable
};

// The command lock through the driver's SMBus transactions (the HLK dongle).
[[nodiscard]] CommandLock busCommandLock(SmbusTransactions& bus);

struct AccessServices {
    clsMain& main;
    AppGlobals& globals;
    platform::Dialogs& dialogs;
    CommandLock lock;
};

// What the access flows need of the main window; frmMain fills these in.
struct MainWindowAccess {
    platform::ui::Window* window = nullptr; // frmMain; its status bar panel "Access"
    std::function<void()> UpdateMenus;
    std::function<void()> LoadTabs;
    std::function<void()> mnuConnect_Click; // runs the target detection again
    std::function<bool()> IsTheDeviceWired;
    std::function<void()> rebuildSelectedCellRows; // the selected cell's rows for the new level
    std::function<void()> showBootStrapLoader; // frmBootStrapLoader, when used as a loader only
    std::function<void(int)> SetMousePointer; // 11 hourglass, 0 normal
    // Shows a window modally and returns when it is hidden or unloaded.
    std::function<void(platform::ui::Window&)> showModal;
    // Ends the program: through the main window's close request when it is loaded, otherwise in
    // the exit order of the start-up.
    std::function<void()> endSession;
};

// The eight bytes of a password text: the character codes, padded with 0, at most eight.
[[nodiscard]] PasswordBytes passwordBytes(std::string_view text);
// True if any byte differs from the unset pattern gNoPassword.
[[nodiscard]] bool IsPasswordSet(const AppGlobals& globals, const PasswordBytes& bytPassword);
// Opens the command lock (results not looked at) and writes the bytes to file 3 with PEC;
// true when the write went through. The device judges the password.
[[nodiscard]] bool LoginWithPassword(AccessServices& services, const PasswordBytes& bytPassword);
// The level as the target grants it: GetAccessLevel on "1003"; on any other target the
// parameter "Access Level" of file 5, and 0 when the file cannot be read.
[[nodiscard]] int ReadUserLevel(AccessServices& services);
// Closes the command lock as the main window closes; nothing in demo mode.
void CloseCommandLock(AccessServices& services);

// The seal, login and level windows of one session.
class UserAccess {
public:
    UserAccess(AccessServices services, MainWindowAccess mainWindow);
    ~UserAccess();
    UserAccess(const UserAccess&) = delete;
    UserAccess& operator=(const UserAccess&) = delete;

    // Reads the level and acts on it: menus and tabs when open (or unreadable), the login
    // window with the main window hidden when sealed. Demo mode is level 2. Offline (no device
    // was connected) nothing is read and no login opens.
    void GetUserLevelFromHardware();
    // Loads and shows the login window without blocking (the target detection found a seal).
    void OpenLogin();
    // mnuChangeUserAccessLevel: login on demand.
    void mnuChangeUserAccessLevel_Click();
    // mnuAccessLevel: the level passwords dialog.
    void mnuAccessLevel_Click();
    // The exit path of the main window.
    void LockDevice() { CloseCommandLock(services_); }

    [[nodiscard]] AccessServices& services() { return services_; }
    [[nodiscard]] MainWindowAccess& mainWindow() { return mainWindow_; }
    // Windows are created on first use; onWindowCreated lets the front end bind them.
    [[nodiscard]] frmLogin& login();
    [[nodiscard]] frmUserAccessLevel& userAccessLevel();
    std::function<void(platform::ui::Window&)> onWindowCreated;

private:
    void showModal(platform::ui::Window& window);

    AccessServices services_;
    MainWindowAccess mainWindow_;
    std::unique_ptr<frmLogin> login_;
    std::unique_ptr<frmUserAccessLevel> userAccessLevel_;
};

} // namespace zv
