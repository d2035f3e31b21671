#pragma once
// What the event log and the communications log windows share: they open where they were last
// left (clamped onto the screen), their text control fills them less a margin, and unloading
// stores their position and size.

#include "core/window_placement.h"
#include "platform/settings_store.h"
#include "platform/ui/window.h"

#include <functional>
#include <string>

namespace zv {

struct LogWindowContext {
    platform::SettingsStore& store;
    std::function<platform::ui::ScreenSize()> screen;
    std::string programFolder;
};

class LogWindow : public platform::ui::Window {
public:
    LogWindow(std::string name, const LogWindowContext& context, const PlacementKeys& keys,
        platform::ui::Control& textControl);

protected:
    void handleLoad() override;
    void handleUnload() override;
    void handleResize() override;

private:
    LogWindowContext context_;
    PlacementKeys keys_;
    platform::ui::Control& textControl_;
};

} // namespace zv
