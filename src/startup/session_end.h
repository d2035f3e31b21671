#pragma once
// How the program ends, whatever the user is leaving (the main window, the splash, the login, the
// connection dialog). The exit order runs at the top of the event loop: asked from inside a wait
// (an exchange with the device in progress), the waits are cut short first, so that nothing on the
// stack still uses the driver when it is released. The order itself gets a budget: once it runs
// out, every wait ends at once and a link that does not answer cannot hold the exit.

#include <functional>
#include <memory>

namespace zv::platform {
class EventLoop;
class Timer;
} // namespace zv::platform

namespace zv {

// How long the exit order may talk to the device before its waits are cut short.
inline constexpr int kExitBudgetMs = 4000;

class SessionEnd {
public:
    explicit SessionEnd(platform::EventLoop& loop);
    ~SessionEnd();
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    // True when the caller stands at the top of the loop. Otherwise the waits below it are cut
    // short and again() runs once the loop is back at its top; false then.
    [[nodiscard]] bool atTop(std::function<void()> again);
    // Runs one step of the exit order within the budget; its result.
    [[nodiscard]] bool withinBudget(const std::function<bool()>& step);

private:
    void tryAgain();

    platform::EventLoop& loop_;
    std::unique_ptr<platform::Timer> deferred_;
    std::unique_ptr<platform::Timer> budget_;
    std::function<void()> again_;
};

} // namespace zv
