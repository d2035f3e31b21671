#include "platform/testing/virtual_event_loop.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace zv::platform {

namespace {

// The scheduling state of one timer; shared so that a timer destroyed in its own tick does
// not pull the state away from the loop that is running it.
struct TimerSlot {
    Timer* owner = nullptr;
    int interval = 0;
    bool enabled = false;
    bool firing = false; // a timer does not fire again inside its own tick
    std::int64_t due = 0;
    std::uint64_t seq = 0;
};

constexpr auto kAnySeq = std::numeric_limits<std::uint64_t>::max();

} // namespace

struct VirtualEventLoop::Core {
    using Key = std::pair<std::int64_t, std::uint64_t>; // due time, order of scheduling

    std::int64_t now = 0;
    std::chrono::system_clock::time_point epoch { kDefaultEpoch };
    std::uint64_t nextSeq = 0;
    std::multimap<Key, std::function<void()>> posted;
    std::vector<std::weak_ptr<TimerSlot>> timers;

    void schedule(TimerSlot& slot, std::int64_t due)
    {
        slot.due = due;
        slot.seq = nextSeq++;
    }

    [[nodiscard]] std::shared_ptr<TimerSlot> earliestTimer()
    {
        std::erase_if(timers, [](const auto& weak) { return weak.expired(); });
        std::shared_ptr<TimerSlot> best;
        for (const auto& weak : timers) {
            auto slot = weak.lock();
            if (!slot->enabled || slot->interval <= 0 || slot->firing)
                continue;
            if (!best || Key { slot->due, slot->seq } < Key { best->due, best->seq })
                best = slot;
        }
        return best;
    }

    // Runs the earliest event due by limit and scheduled before seqLimit; false when none is.
    bool runOne(std::int64_t limit, std::uint64_t seqLimit)
    {
        const auto timer = earliestTimer();
        const bool hasPosted = !posted.empty();
        const bool timerFirst
            = timer && (!hasPosted || Key { timer->due, timer->seq } < posted.begin()->first);
        const Key key = timerFirst ? Key { timer->due, timer->seq }
                                   : (hasPosted ? posted.begin()->first : Key { limit + 1, 0 });
        if (key.first > limit || key.second >= seqLimit)
            return false;
        now = std::max(now, key.first);
        if (timerFirst)
            fire(*timer);
        else
            runPosted();
        return true;
    }

    void runPosted()
    {
        auto fn = std::move(posted.begin()->second);
        posted.erase(posted.begin());
        fn();
    }

    void fire(TimerSlot& slot)
    {
        const std::int64_t next = slot.due + slot.interval;
        schedule(slot, next > now ? next : now + slot.interval);
        if (!slot.owner || !slot.owner->onTick)
            return;
        slot.firing = true;
        const auto tick = slot.owner->onTick; // the tick may destroy its timer
        tick();
        slot.firing = false;
    }

    void runUntil(std::int64_t deadline)
    {
        while (runOne(deadline, kAnySeq)) { }
        now = std::max(now, deadline);
    }
};

namespace {

class VirtualTimer : public Timer {
public:
    explicit VirtualTimer(std::shared_ptr<VirtualEventLoop::Core> core)
        : core_(std::move(core))
        , slot_(std::make_shared<TimerSlot>())
    {
        slot_->owner = this;
        core_->timers.push_back(slot_);
    }
    ~VirtualTimer() override { slot_->owner = nullptr; }

    void setInterval(int ms) override
    {
        slot_->interval = ms;
        if (slot_->enabled)
            core_->schedule(*slot_, core_->now + ms);
    }
    [[nodiscard]] int interval() const override { return slot_->interval; }

    void setEnabled(bool enabled) override
    {
        if (enabled && !slot_->enabled)
            core_->schedule(*slot_, core_->now + slot_->interval);
        slot_->enabled = enabled;
    }
    [[nodiscard]] bool enabled() const override { return slot_->enabled; }

private:
    std::shared_ptr<VirtualEventLoop::Core> core_;
    std::shared_ptr<TimerSlot> slot_;
};

} // namespace

VirtualEventLoop::VirtualEventLoop()
    : core_(std::make_shared<Core>())
{
}

VirtualEventLoop::~VirtualEventLoop() = default;

std::int64_t VirtualEventLoop::milliseconds() const
{
    return core_->now;
}

std::chrono::system_clock::time_point VirtualEventLoop::now() const
{
    return core_->epoch + std::chrono::milliseconds(core_->now);
}

void VirtualEventLoop::sleep(int ms)
{
    if (!ending())
        core_->now += std::max(ms, 0);
}

void VirtualEventLoop::wait(int ms)
{
    if (ending())
        return;
    const NestedRun run(*this);
    const auto deadline = core_->now + std::max(ms, 0);
    while (core_->runOne(deadline, kAnySeq)) {
        if (ending())
            return;
    }
    core_->now = std::max(core_->now, deadline);
}

void VirtualEventLoop::processEvents()
{
    const NestedRun run(*this);
    const auto dueBy = core_->now;
    const auto scheduledBefore = core_->nextSeq;
    while (core_->runOne(dueBy, scheduledBefore)) { }
}

bool VirtualEventLoop::waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    if (done())
        return true;
    if (ending())
        return false;
    const NestedRun run(*this);
    const auto deadline = core_->now + std::max(timeoutMs, 0);
    while (core_->runOne(deadline, kAnySeq)) {
        if (done())
            return true;
        if (ending())
            return false;
    }
    core_->now = std::max(core_->now, deadline);
    return done();
}

std::unique_ptr<Timer> VirtualEventLoop::createTimer()
{
    return std::make_unique<VirtualTimer>(core_);
}

void VirtualEventLoop::post(int delayMs, std::function<void()> fn)
{
    core_->posted.emplace(Core::Key { core_->now + std::max(delayMs, 0), core_->nextSeq++ }, std::move(fn));
}

void VirtualEventLoop::advance(int ms)
{
    // The test stands at the top of the loop: its runs are not nested.
    core_->runUntil(core_->now + std::max(ms, 0));
}

void VirtualEventLoop::setWallClock(std::chrono::system_clock::time_point time)
{
    core_->epoch = time - std::chrono::milliseconds(core_->now);
}

int VirtualEventLoop::pendingCount() const
{
    int count = static_cast<int>(core_->posted.size());
    for (const auto& weak : core_->timers) {
        if (const auto slot = weak.lock(); slot && slot->enabled && slot->interval > 0)
            ++count;
    }
    return count;
}

} // namespace zv::platform
