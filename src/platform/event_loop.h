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
