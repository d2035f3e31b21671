#pragma once
// The right-click menus of the lists and the hint in the panel "Info" when a button is released
// over a parameter; the entries of mnuParameters then act on the list the menu came from.

#include "monitor/monitor_context.h"

#include <string>

namespace zv::platform::ui {
class ListView;
class MenuItem;
} // namespace zv::platform::ui

namespace zv {

class ParameterTabs;
class PollCycle;

class ListMenus {
public:
    ListMenus(MonitorContext& context, ParameterTabs& tabs, PollCycle& poll);

    void parametersMouseUp(platform::ui::ListView& list, const std::string& key, bool rightButton);
    void propertiesMouseUp(platform::ui::ListView& list, const std::string& key, bool rightButton);
    // lvNodes and lvGateway: mnulvNodes.
    void nodesMouseUp(bool rightButton);

    // The list and row the last mnuParameters pop-up was for; a gateway list at first.
    [[nodiscard]] platform::ui::ListView& targetList() const;
    [[nodiscard]] std::string targetKey() const;
    [[nodiscard]] bool targetIsProperty() const { return property_; }

private:
    [[nodiscard]] bool busy() const;
    void showHint(platform::ui::ListView& list, const std::string& key, bool property);
    void enable(platform::ui::MenuItem& item, bool on);
    void popup(platform::ui::MenuItem& menu);
    void popupParameters(platform::ui::ListView& list, const std::string& key, bool property);

    MonitorContext& c_;
    ParameterTabs& tabs_;
    PollCycle& poll_;
    platform::ui::ListView* target_ = nullptr;
    bool property_ = false;
};

} // namespace zv
