#pragma once
// The event loop of the running Qt application (a QCoreApplication must exist): waits block in
// the OS until an event or a timer wakes them, never spinning.

#include "platform/event_loop.h"

#include <QElapsedTimer>

namespace zv::platform {

class QtEventLoop : public EventLoop {
public:
    QtEventLoop();

    [[nodiscard]] std::int64_t milliseconds() const override;
    [[nodiscard]] std::chrono::system_clock::time_point now() const override;

    void sleep(int ms) override;
    void wait(int ms) override;
    void processEvents() override;
    [[nodiscard]] bool waitUntil(const std::function<bool()>& done, int timeoutMs) override;

    [[nodiscard]] std::unique_ptr<Timer> createTimer() override;

private:
    QElapsedTimer clock_;
};

} // namespace zv::platform
