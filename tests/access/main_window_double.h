#pragma once
// A main window with the controls the access flows look for: every entry of the menu policy,
// the logging entries, the configured-state label and its marker, and the status panel "Access".

#include "access/menu_policy.h"
#include "platform/text.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/status_bar.h"
#include "platform/ui/window.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace zv::test {

class MainWindowDouble : public platform::ui::Window {
public:
    MainWindowDouble()
        : Window("frmMain")
    {
        sbStatusBar.addPanel({ "Access", "", "", "", 0 });
        addControls({ &sbStatusBar });
        for (const clsMenu& menu : BuildMenuPolicy())
            add(menu.menuName == "mnusep1" ? "mnuSep1" : menu.menuName);
        for (const char* name :
            { "mnuStartLogging", "mnuStopLogging", "mnuloogingsep1", "lblCONFIG_BIT", kConfigBitMarker })
            add(name);
    }

    [[nodiscard]] platform::ui::StatusBar* statusBar() override { return &sbStatusBar; }

    // Found without regard to case, as the policy finds its entries.
    [[nodiscard]] bool shown(const std::string& name) const
    {
        const auto& all = controls();
        const auto found = std::find_if(all.begin(), all.end(),
            [&](const auto* c) { return platform::equalsIgnoreCase(c->name(), name); });
        return found != all.end() && (*found)->visible();
    }
    // How many entries of the policy are visible.
    [[nodiscard]] int shownCount(const clsMenuCol& policy) const
    {
        int count = 0;
        for (const clsMenu& menu : policy)
            count += shown(menu.menuName);
        return count;
    }
    void showAll()
    {
        for (auto& item : items_)
            item->setVisible(true);
    }

    platform::ui::StatusBar sbStatusBar { "sbStatusBar" };

private:
    void add(const std::string& name)
    {
        items_.push_back(std::make_unique<platform::ui::MenuItem>(name));
        addControls({ items_.back().get() });
    }

    std::vector<std::unique_ptr<platform::ui::MenuItem>> items_;
};

} // namespace zv::test
