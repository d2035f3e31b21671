#pragma once
// A tab strip whose tabs can be hidden; the selected index counts all tabs, hidden or not.

#include "platform/ui/control.h"

#include <functional>
#include <string>
#include <vector>

namespace zv::platform::ui {

struct Tab {
    std::string key;
    std::string caption;
    bool visible = true;
};

class TabStrip : public Control {
public:
    using Control::Control;
    void setTabs(std::vector<Tab> tabs);
    [[nodiscard]] const std::vector<Tab>& tabs() const { return tabs_; }
    [[nodiscard]] int tabCount() const { return static_cast<int>(tabs_.size()); }
    // Index -1 or one past the end are ignored by these setters. Hiding the selected tab selects
    // the next visible tab to its right, else to its left.
    void setTabCaption(int index, std::string caption);
    void setTabVisible(int index, bool visible);

    [[nodiscard]] int selectedIndex() const { return selected_; }
    void setSelectedIndex(int index);

    // The user clicked a visible tab: it becomes selected and onClick fires.
    void userSelect(int index);
    std::function<void()> onClick;

private:
    [[nodiscard]] bool valid(int index) const { return index >= 0 && index < tabCount(); }
    [[nodiscard]] int nearestVisible(int hidden) const;

    std::vector<Tab> tabs_;
    int selected_ = -1;
};

} // namespace zv::platform::ui
