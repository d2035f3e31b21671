#include "platform/ui/show_modal.h"

#include "platform/event_loop.h"
#include "platform/ui/window.h"

namespace zv::platform::ui {

namespace {

// How long one wait for the window lasts before it is looked at again.
constexpr int kWaitSliceMs = 60 * 60 * 1000;

} // namespace

ShowModal eventLoopModal(platform::EventLoop& loop)
{
    return [&loop](platform::ui::Window& window) {
        window.show();
        while (window.visible())
            (void)loop.waitUntil([&window] { return !window.visible(); }, kWaitSliceMs);
    };
}

} // namespace zv::platform::ui
