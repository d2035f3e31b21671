#pragma once
// frmSafeDisconnect: while the device holds its FETs open the user may pull the pack's power. The
// window counts 20 seconds down and looks each second whether the device still answers; when it
// is gone or the time is up the window lets itself close and the application ends.

#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <functional>
#include <memory>
#include <string>

namespace zv::platform {
class EventLoop;
class Timer;
} // namespace zv::platform

namespace zv {

struct SafeDisconnectServices {
    platform::EventLoop& loop;
    // One read of word 0 of the device; true when it answered.
    std::function<bool()> readWordZero;
    // The main window's close request: the exit order runs and the application ends.
    std::function<void()> endApplication;
};

class frmSafeDisconnect : public platform::ui::Window {
public:
    static constexpr int kSeconds = 20;
    static constexpr int kRetryPauseMs = 2000;

    explicit frmSafeDisconnect(SafeDisconnectServices services);
    ~frmSafeDisconnect() override;

    // "Exiting in 00:MM:SS".
    [[nodiscard]] static std::string timeText(int seconds);

    [[nodiscard]] int counter() const { return counter_; }

    platform::ui::Label lblHeading { "lblHeading" };
    platform::ui::Label lblMessage { "lblMessage" };
    platform::ui::Label lblTime { "lblTime" };

protected:
    void handleLoad() override;
    void handleUnload() override;
    [[nodiscard]] bool handleCloseRequest() override { return canClose_; }

private:
    void tmrSafeDisconnect_Timer();
    void leave();

    SafeDisconnectServices s_;
    std::unique_ptr<platform::Timer> tmrSafeDisconnect;
    int counter_ = kSeconds;
    bool canClose_ = false;
};

} // namespace zv
