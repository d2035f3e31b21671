#include "platform/qt/qt_event_loop.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace zv::platform {

namespace {

class QtTimer : public Timer {
public:
    QtTimer()
        : timer_(new QTimer)
    {
        timer_->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer_, &QTimer::timeout, timer_, [this] { tick(); });
    }

    ~QtTimer() override
    {
        *alive_ = false;
        timer_->stop();
        QObject::disconnect(timer_, nullptr, nullptr, nullptr);
        // A timer destroyed in its own tick leaves its QTimer to the loop, which is inside it.
        if (firing_)
            timer_->deleteLater();
        else
            delete timer_;
    }

    void setInterval(int ms) override
    {
        interval_ = ms;
        timer_->setInterval(ms);
        startOrStop();
    }
    [[nodiscard]] int interval() const override { return interval_; }

    // An enabled timer with interval 0 stays idle until it gets an interval.
    void setEnabled(bool enabled) override
    {
        if (enabled == enabled_)
            return;
        enabled_ = enabled;
        startOrStop();
    }
    [[nodiscard]] bool enabled() const override { return enabled_; }

private:
    void startOrStop()
    {
        if (enabled_ && interval_ > 0)
            timer_->start(); // restarts the count, as a changed interval does
        else
            timer_->stop();
    }

    void tick()
    {
        if (!onTick)
            return;
        const auto handler = onTick; // the tick may destroy its timer
        const auto alive = alive_;
        firing_ = true;
        handler();
        if (*alive)
            firing_ = false;
    }

    QTimer* timer_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    int interval_ = 0;
    bool enabled_ = false;
    bool firing_ = false;
};

} // namespace

QtEventLoop::QtEventLoop()
{
    clock_.start();
}

std::int64_t QtEventLoop::milliseconds() const
{
    return clock_.elapsed();
}

std::chrono::system_clock::time_point QtEventLoop::now() const
{
    return std::chrono::system_clock::now();
}

void QtEventLoop::sleep(int ms)
{
    if (ms > 0 && !ending())
        QThread::msleep(static_cast<unsigned long>(ms));
}

void QtEventLoop::wait(int ms)
{
    if (ms <= 0) {
        processEvents();
        return;
    }
    (void)waitUntil([] { return false; }, ms);
}

void QtEventLoop::processEvents()
{
    const NestedRun run(*this);
    QEventLoop().processEvents(QEventLoop::AllEvents);
}

bool QtEventLoop::waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    if (done())
        return true;
    if (ending())
        return false;
    const NestedRun run(*this);
    const QDeadlineTimer deadline(std::max(timeoutMs, 0), Qt::PreciseTimer);
    // Wakes the blocking wait at the deadline when nothing else does.
    QTimer wake;
    wake.setSingleShot(true);
    wake.setTimerType(Qt::PreciseTimer);
    QEventLoop loop;
    while (true) {
        if (!wake.isActive())
            wake.start(static_cast<int>(std::max<qint64>(deadline.remainingTime(), 0)));
        loop.processEvents(QEventLoop::WaitForMoreEvents);
        if (done())
            return true;
        if (deadline.hasExpired() || ending())
            return false;
    }
}

std::unique_ptr<Timer> QtEventLoop::createTimer()
{
    return std::make_unique<QtTimer>();
}

} // namespace zv::platform
