#pragma once
// The splash window: the status of the start, and on a failure its text with the buttons for the
// next move (scan, restart, exit), or the choice of a target the table does not know.

#include "platform/event_loop.h"
#include "platform/ui/choice_controls.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zv {

// Reasons of ShowStartupFault.
enum class StartupFault {
    UnableToConnect = 0,
    CommunicationError = 1,
    ConfigurationFiles = 2,
    SystemLoader = 3,
    ApplicationLoader = 4,
    Sealed = 5,
};

inline constexpr int kSplashIntervalMs = 2500;

// The first line of a fault screen, which names the fault.
[[nodiscard]] std::string faultHeadline(StartupFault reason);
// The text of a fault screen: its first line and, when there is one, its second after lineEnd.
[[nodiscard]] std::string faultText(StartupFault reason, const std::string& lineEnd = "\r\n");

class frmSplash : public platform::ui::Window {
public:
    frmSplash(platform::EventLoop& loop, std::string versionText);

    platform::ui::Label lblStatus { "lblStatus" };
    platform::ui::Label lblVersion { "lblVersion" };
    platform::ui::ComboBox cmbTarget { "cmbTarget" };
    platform::ui::Button cmdLoad { "cmdLoad" };
    platform::ui::Button CmdBootloader { "CmdBootloader" };
    platform::ui::Button cmdExit { "cmdExit" };
    platform::ui::Button btnExit { "btnExit" };
    platform::ui::Button btnRestart { "btnRestart" };
    platform::ui::Button btnScan { "btnScan" };
    // Takes the splash away when it fires.
    std::unique_ptr<platform::Timer> tmrSplash;
    // The user closed the splash with the window's close box (it unloads afterwards).
    std::function<void()> onCloseBox;

    void setStatus(std::string text) { lblStatus.setCaption(std::move(text)); }
    // The fault's text and the buttons or the timer that go with it.
    void showFault(StartupFault reason);
    // The choice of a target by hand, with the explanation in lblStatus.
    void showTargetChoice(std::string text, std::vector<std::string> targetNames);
    void hideTargetChoice();
    void setFaultButtonsVisible(bool visible);
    // The splash goes away by itself after kSplashIntervalMs.
    void startDismissTimer();
    // The splash stays, with Scan, Restart and Exit: the window that should follow is not there.
    void holdWithButtons();

protected:
    void handleUnload() override;
    [[nodiscard]] bool handleCloseRequest() override;

private:
    void setLoadControlsVisible(bool visible);
};

} // namespace zv
