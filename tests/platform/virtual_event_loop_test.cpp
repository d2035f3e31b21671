#include "platform/testing/virtual_event_loop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using zv::platform::Timer;
using zv::platform::VirtualEventLoop;

namespace {

std::unique_ptr<Timer> startTimer(VirtualEventLoop& loop, int interval, std::function<void()> tick)
{
    auto timer = loop.createTimer();
    timer->onTick = std::move(tick);
    timer->setInterval(interval);
    timer->setEnabled(true);
    return timer;
}

} // namespace

TEST(VirtualClock, WaitsCostNoRealTimeAndMoveTheClock)
{
    VirtualEventLoop loop;
    EXPECT_EQ(loop.milliseconds(), 0);
    const auto wallAtStart = loop.now();
    EXPECT_EQ(wallAtStart.time_since_epoch(), VirtualEventLoop::kDefaultEpoch);

    loop.wait(10'000);
    EXPECT_EQ(loop.milliseconds(), 10'000);
    EXPECT_EQ(loop.now() - wallAtStart, std::chrono::seconds(10));

    loop.sleep(250);
    EXPECT_EQ(loop.milliseconds(), 10'250);
    EXPECT_FALSE(loop.waitUntil([] { return false; }, 16'000));
    EXPECT_EQ(loop.milliseconds(), 26'250);

    const auto noon = std::chrono::system_clock::time_point(std::chrono::hours(24 * 20000 + 12));
    loop.setWallClock(noon);
    EXPECT_EQ(loop.now(), noon);
    loop.wait(1500);
    EXPECT_EQ(loop.now(), noon + std::chrono::milliseconds(1500));
    EXPECT_EQ(loop.milliseconds(), 27'750); // the counter is not moved by the wall clock
}

TEST(VirtualClock, SleepRunsNothingButLaterWaitsCatchUp)
{
    VirtualEventLoop loop;
    std::vector<std::int64_t> ranAt;
    loop.post(10, [&] { ranAt.push_back(loop.milliseconds()); });
    auto timer = startTimer(loop, 25, [&] { ranAt.push_back(-loop.milliseconds()); });

    loop.sleep(100);
    EXPECT_TRUE(ranAt.empty());

    // Overdue events run at once, each once: a timer that missed several periods fires one tick.
    loop.processEvents();
    EXPECT_EQ(ranAt, (std::vector<std::int64_t> { 100, -100 }));
    loop.wait(24);
    EXPECT_EQ(ranAt.size(), 2u);
    loop.wait(1);
    EXPECT_EQ(ranAt.back(), -125);
}

TEST(VirtualClock, EventsRunInDueOrderWithTiesInSchedulingOrder)
{
    VirtualEventLoop loop;
    std::vector<std::string> order;
    auto log = [&](std::string name) {
        return [&, name] { order.push_back(name + "@" + std::to_string(loop.milliseconds())); };
    };
    auto slow = startTimer(loop, 300, log("slow"));
    loop.post(100, log("reply"));
    auto fast = startTimer(loop, 100, log("fast"));
    loop.post(50, log("early"));

    loop.wait(300);
    EXPECT_EQ(order,
        (std::vector<std::string> {
            "early@50", "reply@100", "fast@100", "fast@200", "slow@300", "fast@300" }));
    EXPECT_EQ(loop.milliseconds(), 300);
}

TEST(VirtualClock, ProcessEventsRunsOnlyWhatIsDueNow)
{
    VirtualEventLoop loop;
    int runs = 0;
    loop.post(0, [&] {
        ++runs;
        loop.post(0, [&] { ++runs; }); // scheduled while running: waits for the next pass
    });
    loop.post(1, [&] { runs += 100; });

    loop.processEvents();
    EXPECT_EQ(runs, 1);
    loop.processEvents();
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(loop.milliseconds(), 0);
    EXPECT_EQ(loop.pendingCount(), 1);
}

TEST(VirtualClock, WaitUntilEndsAtTheSatisfyingEventOrItsDeadline)
{
    VirtualEventLoop loop;
    bool answered = false;
    bool late = false;
    loop.post(40, [] {});
    loop.post(130, [&] { answered = true; });
    loop.post(131, [&] { late = true; });

    EXPECT_TRUE(loop.waitUntil([&] { return answered; }, 1000));
    EXPECT_EQ(loop.milliseconds(), 130);

    // Already true: returns at once, running nothing.
    EXPECT_TRUE(loop.waitUntil([] { return true; }, 1000));
    EXPECT_EQ(loop.milliseconds(), 130);
    EXPECT_FALSE(late) << "ran after the wait was satisfied";

    // Not satisfied: gives up at its deadline and leaves the later event.
    answered = false;
    loop.post(1001, [&] { answered = true; });
    EXPECT_FALSE(loop.waitUntil([&] { return answered; }, 1000));
    EXPECT_EQ(loop.milliseconds(), 1130);
    loop.advance(1);
    EXPECT_TRUE(answered);
}

TEST(VirtualClock, NestedWaitsInsideEventsKeepTheOrder)
{
    VirtualEventLoop loop;
    std::vector<std::string> order;
    loop.post(10, [&] {
        order.push_back("outer@" + std::to_string(loop.milliseconds()));
        loop.wait(100); // runs the events due within its wait
        order.push_back("outer-done@" + std::to_string(loop.milliseconds()));
    });
    loop.post(50, [&] { order.push_back("inner@" + std::to_string(loop.milliseconds())); });
    loop.post(200, [&] { order.push_back("late@" + std::to_string(loop.milliseconds())); });

    loop.wait(150);
    EXPECT_EQ(order, (std::vector<std::string> { "outer@10", "inner@50", "outer-done@110" }));
    EXPECT_EQ(loop.milliseconds(), 150);
}

TEST(VirtualTimers, DisablingInsideTheTickStopsTheTimer)
{
    VirtualEventLoop loop;
    std::unique_ptr<Timer> timer;
    int ticks = 0;
    timer = startTimer(loop, 1000, [&] {
        ++ticks;
        timer->setEnabled(false);
    });
    loop.wait(5000);
    EXPECT_EQ(ticks, 1);
    EXPECT_FALSE(timer->enabled());
    EXPECT_EQ(loop.pendingCount(), 0);

    // Enabled again, it counts its interval from then.
    timer->setEnabled(true);
    loop.wait(999);
    EXPECT_EQ(ticks, 1);
    loop.wait(1);
    EXPECT_EQ(ticks, 2);
}

TEST(VirtualTimers, IntervalChangesRestartTheCount)
{
    VirtualEventLoop loop;
    std::vector<std::int64_t> ticks;
    auto timer = startTimer(loop, 1000, [&] { ticks.push_back(loop.milliseconds()); });
    loop.wait(600);
    timer->setInterval(250); // from now: 850, 1100, ...
    loop.wait(600);
    EXPECT_EQ(ticks, (std::vector<std::int64_t> { 850, 1100 }));

    // Changed inside its own tick, the new interval counts from that tick.
    ticks.clear();
    timer->onTick = [&] {
        ticks.push_back(loop.milliseconds());
        timer->setInterval(50'000);
    };
    loop.wait(50'000);
    EXPECT_EQ(ticks, (std::vector<std::int64_t> { 1350 }));
    loop.wait(150);
    EXPECT_EQ(ticks.back(), 51'350);
}

TEST(VirtualTimers, EnablingAnEnabledTimerKeepsItsCountAndZeroIntervalNeverFires)
{
    VirtualEventLoop loop;
    int ticks = 0;
    auto timer = startTimer(loop, 250, [&] { ++ticks; });
    loop.wait(200);
    timer->setEnabled(true);
    loop.wait(50);
    EXPECT_EQ(ticks, 1);

    auto idle = startTimer(loop, 0, [&] { ticks += 100; });
    loop.wait(1000);
    EXPECT_EQ(ticks, 5);
    EXPECT_TRUE(idle->enabled());
}

TEST(VirtualTimers, ATimerDoesNotFireInsideItsOwnTick)
{
    VirtualEventLoop loop;
    int depth = 0;
    int deepest = 0;
    std::vector<std::int64_t> ticks;
    auto timer = startTimer(loop, 10, [&] {
        ticks.push_back(loop.milliseconds());
        ++depth;
        deepest = std::max(deepest, depth);
        if (ticks.size() == 1)
            loop.wait(35); // a long handler, as a transaction inside a poll tick
        --depth;
    });
    loop.wait(60);
    EXPECT_EQ(deepest, 1);
    // The overdue tick runs once right after the long one, then the period resumes from there.
    EXPECT_EQ(ticks, (std::vector<std::int64_t> { 10, 45, 55 }));
}

TEST(VirtualTimers, ATimerMayBeDestroyedInItsTickOrOutliveTheLoop)
{
    std::unique_ptr<Timer> survivor;
    {
        VirtualEventLoop loop;
        std::unique_ptr<Timer> timer;
        int ticks = 0;
        timer = startTimer(loop, 10, [&] {
            ++ticks;
            timer.reset();
        });
        loop.wait(100);
        EXPECT_EQ(ticks, 1);
        survivor = startTimer(loop, 10, [] {});
    }
    survivor->setEnabled(false);
    survivor->setEnabled(true);
    EXPECT_EQ(survivor->interval(), 10);
}
