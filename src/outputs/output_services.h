#pragma once
// What the output commands need of the application: the stores, the dialogs, the clock, the
// driver, the main window's parameter lists and the monitor operations they trigger.

#include <functional>
#include <string>
#include <vector>

namespace zv::platform {
class Dialogs;
class EventLoop;
class SettingsStore;
namespace ui {
class ListView;
class TabStrip;
} // namespace ui
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class clsMain;

// The parameter lists of the main window, by tab index.
struct ParameterViews {
    platform::ui::TabStrip* packTabs = nullptr; // SSTab
    std::vector<platform::ui::ListView*> packLists; // lvParameters
    platform::ui::TabStrip* cellTabs = nullptr; // SSTab1
    std::vector<platform::ui::ListView*> cellLists; // lvProperties
    platform::ui::ListView* nodeList = nullptr; // lvNodes: selecting a row loads its cell's lists
    int currentTab = 0; // the tab shown in SSTab
};

// Operations of the main window's monitor; an unset one is skipped.
struct MonitorActions {
    std::function<void(int)> setMousePointer; // 11 hourglass, 0 default
    std::function<bool()> readAllParameters; // Parameters_ReadAll; false: the user aborted
    std::function<void()> resetXY;
    std::function<void()> readSelected; // Parameters_ReadSelected
    std::function<void()> loadTabs;
    std::function<void()> requestRefresh; // the poll's refresh flag
};

struct OutputServices {
    AppGlobals& globals;
    platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    platform::EventLoop& clock;
    std::string programFolder;
    // The driver's owner; nullptr while there is none.
    std::function<clsMain*()> main;
    std::function<ParameterViews()> views;
    MonitorActions monitor;
};

// The driver's owner, or nullptr while there is none.
[[nodiscard]] clsMain* connectedMain(const OutputServices& services);

// The box of a failed output: "An error has occurred", a line break, "Error: " and the text.
void showOutputError(platform::Dialogs& dialogs, const std::string& text);

// Hourglass on for the life of the guard.
class Hourglass {
public:
    explicit Hourglass(const MonitorActions& monitor);
    ~Hourglass();
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

private:
    const MonitorActions& monitor_;
};

} // namespace zv
