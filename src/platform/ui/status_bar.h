#pragma once
// A status bar of keyed panels, each with a text, a picture key and a tool-tip.

#include "platform/ui/control.h"

#include <string>
#include <vector>

namespace zv::platform::ui {

struct StatusPanel {
    std::string key;
    std::string text;
    std::string picture; // key of an image, empty for none
    std::string toolTip;
    int widthTwips = 0; // 0: the panel takes the room that is left
};

class StatusBar : public Control {
public:
    using Control::Control;
    void addPanel(StatusPanel panel);
    [[nodiscard]] const std::vector<StatusPanel>& panels() const { return panels_; }
    [[nodiscard]] bool hasPanel(const std::string& key) const;

    // These throw std::out_of_range for a key that names no panel.
    [[nodiscard]] const std::string& panelText(const std::string& key) const;
    void setPanelText(const std::string& key, const std::string& text);
    void setPanelPicture(const std::string& key, const std::string& picture);
    void setPanelToolTip(const std::string& key, const std::string& toolTip);

private:
    [[nodiscard]] std::size_t indexOf(const std::string& key) const;
    void update(const std::string& key, std::string StatusPanel::*field, const std::string& value);

    std::vector<StatusPanel> panels_;
};

} // namespace zv::platform::ui
