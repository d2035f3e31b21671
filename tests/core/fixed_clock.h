#pragma once
// A clock that stands still at a chosen wall time; nothing in these tests waits.

#include "platform/event_loop.h"

#include <stdexcept>

namespace zv::testing {

class FixedClock : public platform::EventLoop {
public:
    std::chrono::system_clock::time_point wallTime
        = std::chrono::system_clock::from_time_t(1'790'000'000); // a fixed day in 2026

    [[nodiscard]] std::int64_t milliseconds() const override { return 0; }
    [[nodiscard]] std::chrono::system_clock::time_point now() const override { return wallTime; }
    void sleep(int) override { }
    void wait(int) override { }
    void processEvents() override { }
    [[nodiscard]] bool waitUntil(const std::function<bool()>& done, int) override { return done(); }
    [[nodiscard]] std::unique_ptr<platform::Timer> createTimer() override
    {
        throw std::logic_error("no timers in these tests");
    }
};

} // namespace zv::testing
