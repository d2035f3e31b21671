#pragma once
// Showing a logic window modally: the call returns once the window is hidden.

#include <functional>

namespace zv::platform {
class EventLoop;
}

namespace zv::platform::ui {

class Window;

using ShowModal = std::function<void(Window&)>;

// Shows the window and runs events until it is hidden (by a button or its close box), or until the
// program ends (the window is hidden then). The Qt form of the window blocks input to the other
// windows meanwhile. A window that has no form throws std::logic_error.
[[nodiscard]] ShowModal eventLoopModal(EventLoop& loop);

} // namespace zv::platform::ui
