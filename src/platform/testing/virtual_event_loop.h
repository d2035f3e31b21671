#pragma once
// An event loop on a virtual clock for tests: time starts at 0 and moves only when the code
// under test waits or the test advances it, and then at once. Timers and scheduled callbacks run
// in the order of their due time (ties in the order they were scheduled), with the clock set to
// each one's due time while it runs.

#include "platform/event_loop.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace zv::platform {

class VirtualEventLoop : public EventLoop {
public:
    // The wall clock at virtual time 0 unless setWallClock says otherwise: 2024-01-01 00:00 UTC.
    static constexpr std::chrono::seconds kDefaultEpoch { 1704067200 };

    VirtualEventLoop();
    ~VirtualEventLoop() override;
    VirtualEventLoop(const VirtualEventLoop&) = delete;
    VirtualEventLoop& operator=(const VirtualEventLoop&) = delete;

    [[nodiscard]] std::int64_t milliseconds() const override;
    [[nodiscard]] std::chrono::system_clock::time_point now() const override;

    // Moves the clock on; nothing runs.
    void sleep(int ms) override;
    // Runs everything due within ms, then leaves the clock ms later.
    void wait(int ms) override;
    // Runs what was due when called.
    void processEvents() override;
    // Runs due events in order until done() holds (true, the clock at that event) or timeoutMs
    // passed (done() looked at once more, the clock at the deadline).
    [[nodiscard]] bool waitUntil(const std::function<bool()>& done, int timeoutMs) override;

    // Timers may outlive the loop; they then never fire.
    [[nodiscard]] std::unique_ptr<Timer> createTimer() override;

    // Runs fn once, delayMs from now (a simulated device answering after a latency).
    void post(int delayMs, std::function<void()> fn);
    // The test moves time on, running what falls due, as the top of the loop (not nested).
    void advance(int ms);
    // Sets the wall clock that now() gives at the present virtual time.
    void setWallClock(std::chrono::system_clock::time_point time);

    // Scheduled callbacks not yet run, plus enabled timers.
    [[nodiscard]] int pendingCount() const;

    struct Core;

private:
    std::shared_ptr<Core> core_;
};

} // namespace zv::platform
