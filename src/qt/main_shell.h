#pragma once
// The main window as it stands for now: a title, a status bar with the panel "Info" and the menu
// entries that open the event log and the communications log.

#include "platform/ui/simple_controls.h"
#include "platform/ui/status_bar.h"
#include "platform/ui/window.h"

#include <QMainWindow>

#include <functional>
#include <memory>

namespace zv::qt {

class MainShell : public platform::ui::Window {
public:
    MainShell();

    [[nodiscard]] platform::ui::StatusBar* statusBar() override { return &sbStatusBar; }

    platform::ui::MenuItem mnuEventLog { "mnuEventLog" };
    platform::ui::MenuItem mnuCommunicationsLog { "mnuCommunicationsLog" };
    platform::ui::MenuItem mnuExit { "mnuExit" };
    platform::ui::StatusBar sbStatusBar { "sbStatusBar" };

    // Runs when the window unloads: the program ends.
    std::function<void()> onExit;

protected:
    void handleUnload() override;
};

// The widgets of the main window, object names as the control names.
[[nodiscard]] std::unique_ptr<QMainWindow> makeMainShellForm();

} // namespace zv::qt
