#include "platform/ui/tab_strip.h"

namespace zv::platform::ui {

void TabStrip::setTabs(std::vector<Tab> tabs)
{
    tabs_ = std::move(tabs);
    selected_ = tabs_.empty() ? -1 : 0;
    notify(Change::Tabs);
}

void TabStrip::setTabCaption(int index, std::string caption)
{
    if (!valid(index) || tabs_[index].caption == caption)
        return;
    tabs_[index].caption = std::move(caption);
    notify(Change::Tabs, tabs_[index].key);
}

void TabStrip::setTabVisible(int index, bool visible)
{
    if (!valid(index) || tabs_[index].visible == visible)
        return;
    tabs_[index].visible = visible;
    if (!visible && index == selected_)
        selected_ = nearestVisible(index);
    notify(Change::Tabs, tabs_[index].key);
}

int TabStrip::nearestVisible(int hidden) const
{
    for (int i = hidden + 1; i < tabCount(); ++i)
        if (tabs_[i].visible)
            return i;
    for (int i = hidden - 1; i >= 0; --i)
        if (tabs_[i].visible)
            return i;
    return hidden;
}

void TabStrip::setSelectedIndex(int index)
{
    if (valid(index))
        assign(selected_, index, Change::Selection);
}

void TabStrip::userSelect(int index)
{
    if (!usable() || !valid(index) || !tabs_[index].visible)
        return;
    selected_ = index;
    if (onClick)
        onClick();
}

} // namespace zv::platform::ui
