#pragma once
// Showing a logic window modally: the call returns once the window is hidden.

#include <functional>

namespace zv::platform {
class EventLoop;
namespace ui {
class Window;
}
} // namespace zv::platform

namespace zv {

using ShowModal = std::function<void(platform::ui::Window&)>;

// Shows the window and runs events until it is hidden (by a button or its close box). The Qt form
// of the window blocks input to the other windows meanwhile.
[[nodiscard]] ShowModal eventLoopModal(platform::EventLoop& loop);

} // namespace zv
