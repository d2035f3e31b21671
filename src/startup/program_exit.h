#pragma once
// The exit order: the commit question, the end of the poll, the device's command set closed and
// the dongle reset; then EndProgram releases everything from the last form to gMain.

#include <functional>

namespace zv::platform {
class Dialogs;
class EventLoop;
} // namespace zv::platform

namespace zv {

class clsCellWeft;
class SessionEnd;
struct AppGlobals;

inline constexpr int kPollStopLimitMs = 10000;

struct ExitServices {
    AppGlobals& globals;
    platform::EventLoop& loop;
    platform::Dialogs& dialogs;
    clsCellWeft* driver; // none when no gMain was made
    std::function<void()> commitChanges; // CommitChanges
    std::function<void()> stopPolling;
    std::function<bool()> pollTimerRunning;
    // DisableUlmarCommandSet and LockDevice on the active transport.
    std::function<void()> closeCommandLock;
    std::function<void()> removeTrayIcon;
    // The budget of the steps after the commit question; none: no budget.
    SessionEnd* session = nullptr;
};

// The device's command set closed and, on the dongle, the dongle reset; nothing in demo mode or
// once the dongle's port has closed (the device went away).
void CloseLink(const ExitServices& services);

// The close request of the main window. False: the user cancelled and the window stays open.
[[nodiscard]] bool CloseMainWindow(const ExitServices& services);

struct EndServices {
    std::function<void()> releaseUsbAdapter; // on the USB transport
    std::function<void()> unloadForms; // every open form, from the last to the first
    std::function<void()> releaseMain; // gMain, or at least its port
    std::function<void()> quit;
};

void EndProgram(bool usbTransport, const EndServices& services);

} // namespace zv
