#include "commands/frm_safe_disconnect.h"

#include "platform/event_loop.h"

#include <cstdio>

namespace zv {

frmSafeDisconnect::frmSafeDisconnect(SafeDisconnectServices services)
    : Window("frmSafeDisconnect")
    , s_(std::move(services))
{
    setCaption("Zentavia - Safe Disconnect");
    lblHeading.setCaption("Disconnect power now!");
    lblMessage.setCaption("It is now safe to disconnect the power (battery) from the EVM. If the power is "
                          "not disconnected within 20 seconds then the device will exit this mode and it "
                          "will no longer be safe to disconnect power.");
    lblTime.setCaption(timeText(kSeconds));
    addControls({ &lblHeading, &lblMessage, &lblTime });
}

frmSafeDisconnect::~frmSafeDisconnect() = default;

std::string frmSafeDisconnect::timeText(int seconds)
{
    char text[32];
    std::snprintf(text, sizeof text, "Exiting in 00:%02d:%02d", seconds / 60, seconds % 60);
    return text;
}

void frmSafeDisconnect::handleLoad()
{
    counter_ = kSeconds;
    canClose_ = false;
    lblTime.setCaption(timeText(counter_));
    tmrSafeDisconnect = s_.loop.createTimer();
    tmrSafeDisconnect->setInterval(1000);
    tmrSafeDisconnect->onTick = [this] { tmrSafeDisconnect_Timer(); };
    tmrSafeDisconnect->setEnabled(true);
}

void frmSafeDisconnect::handleUnload()
{
    tmrSafeDisconnect.reset();
}

// The timer stays off while the device is asked, so that a slow answer never stacks ticks.
void frmSafeDisconnect::tmrSafeDisconnect_Timer()
{
    tmrSafeDisconnect->setEnabled(false);
    --counter_;
    lblTime.setCaption(timeText(counter_));
    if (counter_ <= 0) {
        leave();
        return;
    }
    if (!s_.readWordZero()) {
        s_.loop.wait(kRetryPauseMs);
        if (!s_.readWordZero()) {
            leave();
            return;
        }
    }
    tmrSafeDisconnect->setEnabled(true);
}

void frmSafeDisconnect::leave()
{
    tmrSafeDisconnect->setEnabled(false);
    canClose_ = true;
    hide();
    if (s_.endApplication)
        s_.endApplication();
}

} // namespace zv
