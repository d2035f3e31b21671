#pragma once
// frmLogWizard, "Zentavia - Log Definition Tool": parameters move from "Available Parameters" to
// "Logged Parameters" page by page (three cell pages, then the tabs of the main window), at most
// 29, and "Generate" writes a .dlog or .slog with "Tick" first.

#include "platform/ui/list_view.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace zv::platform {
class Dialogs;
class SettingsStore;
} // namespace zv::platform

namespace zv {

class clsCellWeft;
class frmMain;

struct LogWizardServices {
    frmMain& form; // SSTab and its lvParameters lists
    clsCellWeft& driver;
    platform::Dialogs& dialogs;
    platform::SettingsStore& settings;
    std::string programFolder;
    std::function<int()> userLevel;
};

class frmLogWizard : public platform::ui::Window {
public:
    explicit frmLogWizard(LogWizardServices services);

    platform::ui::ListView ListSource { "ListSource" };
    platform::ui::ListView ListDestination { "ListDestination" };
    platform::ui::Label lblTab { "lblTab" };
    platform::ui::Label lblCounter { "lblCounter" };
    std::array<platform::ui::Button, 2> btnNavigate { platform::ui::Button { "btnNavigate(0)" },
        platform::ui::Button { "btnNavigate(1)" } };
    platform::ui::Button btnReset { "btnReset" };
    platform::ui::Button btnGenerateFile { "btnGenerateFile" };
    platform::ui::MenuItem mnuFile { "mnuFile" };
    platform::ui::MenuItem mnuExit { "mnuExit" };
    platform::ui::MenuItem mnuCommand { "mnuCommand" };
    platform::ui::MenuItem mnuReset { "mnuReset" };
    platform::ui::MenuItem mnuGenerateFile { "mnuGenerateFile" };

    std::int16_t PageIndex = -1;
    std::int16_t PageCount = 0;
    std::int16_t LoggedCount = 0;
    int ParametersInFile4 = 0;
    int ParametersInFile6 = 0;
    int ParametersInFile12 = 0;

    // Start and reset: both lists empty, the "Cell Dynamic" page.
    void reset();
    // btnNavigate: -1 back, +1 forward.
    void turnPage(int delta);
    // ListSource's double click or a drop on ListDestination: false when refused.
    bool moveToLogged(const std::string& key);
    // ListDestination's double click or a drop on ListSource.
    void moveBack(const std::string& key);
    void generate();

protected:
    void handleLoad() override;

private:
    void countStrides();
    void fill();
    void showCounter();
    [[nodiscard]] bool onCellPage() const { return PageIndex < 0; }
    [[nodiscard]] int cellPageFile() const;
    // The page a key's parameter is offered on.
    [[nodiscard]] bool belongsToPage(const std::string& key) const;
    [[nodiscard]] std::string definitionText() const;

    LogWizardServices s_;
};

} // namespace zv
