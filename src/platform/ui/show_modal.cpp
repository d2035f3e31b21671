#include "platform/ui/show_modal.h"

#include "platform/event_loop.h"
#include "platform/ui/window.h"

#include <stdexcept>

namespace zv::platform::ui {

namespace {

// How long one wait for the window lasts before it is looked at again.
constexpr int kWaitSliceMs = 60 * 60 * 1000;

} // namespace

ShowModal eventLoopModal(platform::EventLoop& loop)
{
    return [&loop](platform::ui::Window& window) {
        // Without a form nobody could ever hide the window, and the wait would never end.
        if (!window.bound())
            throw std::logic_error("The window " + window.name() + " has no form to show");
        window.show();
        while (window.visible()) {
            if (loop.ending()) {
                window.hide();
                return;
            }
            (void)loop.waitUntil(
                [&window, &loop] { return !window.visible() || loop.ending(); }, kWaitSliceMs);
        }
    };
}

} // namespace zv::platform::ui
