#include "platform/ui/status_bar.h"

#include <algorithm>
#include <stdexcept>

namespace zv::platform::ui {

void StatusBar::addPanel(StatusPanel panel)
{
    if (hasPanel(panel.key))
        throw std::invalid_argument(name() + ": key is not unique: " + panel.key);
    panels_.push_back(std::move(panel));
    notify(Change::Panels);
}

bool StatusBar::hasPanel(const std::string& key) const
{
    return std::any_of(panels_.begin(), panels_.end(), [&](const StatusPanel& p) { return p.key == key; });
}

std::size_t StatusBar::indexOf(const std::string& key) const
{
    const auto it
        = std::find_if(panels_.begin(), panels_.end(), [&](const StatusPanel& p) { return p.key == key; });
    if (it == panels_.end())
        throw std::out_of_range(name() + ": no panel with key " + key);
    return static_cast<std::size_t>(it - panels_.begin());
}

const std::string& StatusBar::panelText(const std::string& key) const
{
    return panels_[indexOf(key)].text;
}

void StatusBar::update(const std::string& key, std::string StatusPanel::*field, const std::string& value)
{
    StatusPanel& target = panels_[indexOf(key)];
    if (target.*field == value)
        return;
    target.*field = value;
    notify(Change::PanelChanged, key);
}

void StatusBar::setPanelText(const std::string& key, const std::string& text)
{
    update(key, &StatusPanel::text, text);
}
void StatusBar::setPanelPicture(const std::string& key, const std::string& picture)
{
    update(key, &StatusPanel::picture, picture);
}
void StatusBar::setPanelToolTip(const std::string& key, const std::string& toolTip)
{
    update(key, &StatusPanel::toolTip, toolTip);
}

} // namespace zv::platform::ui
