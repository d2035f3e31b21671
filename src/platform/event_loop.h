#pragma once
// The clock and event pump through which every wait of the system goes.
// Real: Qt's event loop (waits block in the OS). Virtual: time advances at once.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace zv::platform {

class Timer;

class EventLoop {
public:
    virtual ~EventLoop() = default;

    // Monotonic millisecond counter (the system's tick count).
    [[nodiscard]] virtual std::int64_t milliseconds() const = 0;
    // Wall-clock time, for dates in logs and files.
    [[nodiscard]] virtual std::chrono::system_clock::time_point now() const = 0;

    // Blocks for ms milliseconds; no events run meanwhile.
    virtual void sleep(int ms) = 0;
    // Waits ms milliseconds while pending events (timers, port data, UI) run.
    virtual void wait(int ms) = 0;
    // Runs the events that are pending now, then returns.
    virtual void processEvents() = 0;
    // Runs events until done() is true or timeoutMs has passed; returns done().
    // done() is looked at after every event, so a wait for port data ends as soon as it arrives.
    [[nodiscard]] virtual bool waitUntil(const std::function<bool()>& done, int timeoutMs) = 0;

    [[nodiscard]] virtual std::unique_ptr<Timer> createTimer() = 0;

    // Runs of events in progress (wait, waitUntil, processEvents): 0 at the top of the loop, where
    // nothing of the program is on the stack below the handler that runs.
    [[nodiscard]] int nesting() const { return nesting_; }
    // While set, sleep, wait and waitUntil return at once: the program is ending, and an exchange
    // in progress gives up instead of waiting for a device that is no longer asked.
    void setEnding(bool ending) { ending_ = ending; }
    [[nodiscard]] bool ending() const { return ending_; }

protected:
    // Counts one run of events for as long as it lives.
    class NestedRun {
    public:
        explicit NestedRun(EventLoop& loop)
            : loop_(loop)
        {
            ++loop_.nesting_;
        }
        ~NestedRun() { --loop_.nesting_; }
        NestedRun(const NestedRun&) = delete;
        NestedRun& operator=(const NestedRun&) = delete;

    private:
        EventLoop& loop_;
    };

private:
    int nesting_ = 0;
    bool ending_ = false;
};

// A repeating timer on the event loop: fires onTick every interval while enabled.
class Timer {
public:
    virtual ~Timer() = default;
    virtual void setInterval(int ms) = 0;
    [[nodiscard]] virtual int interval() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    [[nodiscard]] virtual bool enabled() const = 0;
    std::function<void()> onTick;
};

} // namespace zv::platform
