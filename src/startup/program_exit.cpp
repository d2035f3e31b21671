#include "startup/program_exit.h"

#include "core/globals.h"
#include "driver/cellweft.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "startup/session_end.h"

namespace zv {

namespace {

void call(const std::function<void()>& hook)
{
    if (hook)
        hook();
}

// Yes commits, No drops the flag; false for Cancel.
bool settleUncommittedWrites(const ExitServices& s)
{
    if (!s.driver || !s.driver->Parameters.ParametersWritten)
        return true;
    const platform::Answer answer = s.dialogs.messageBox(
        "Some parameters have been written to the hardware but have not been committed to flash.\r\n"
        "Would you like to commit before exiting the application?",
        platform::Buttons::YesNoCancel, platform::Icon::Question, "Save changes to Hardware");
    if (answer == platform::Answer::Cancel)
        return false;
    if (answer == platform::Answer::Yes)
        call(s.commitChanges);
    else
        s.driver->Parameters.ParametersWritten = false;
    return true;
}

} // namespace

void CloseLink(const ExitServices& s)
{
    if (s.globals.gDemo || !s.driver)
        return;
    const bool dongle = !s.globals.usbTransport();
    if (dongle && !s.driver->Link.portOpen())
        return;
    call(s.closeCommandLock);
    if (dongle)
        s.driver->Link.ResetHLK();
}

bool CloseMainWindow(const ExitServices& s)
{
    if (!settleUncommittedWrites(s))
        return false;
    const auto rest = [&s] {
        if (s.globals.PollingActive || (s.pollTimerRunning && s.pollTimerRunning())) {
            call(s.stopPolling);
            if (s.pollTimerRunning)
                (void)s.loop.waitUntil([&s] { return !s.pollTimerRunning(); }, kPollStopLimitMs);
        }
        CloseLink(s);
        call(s.removeTrayIcon);
        return true;
    };
    return s.session ? s.session->withinBudget(rest) : rest();
}

void EndProgram(bool usbTransport, const EndServices& services)
{
    if (usbTransport)
        call(services.releaseUsbAdapter);
    call(services.unloadForms);
    call(services.releaseMain);
    call(services.quit);
}

} // namespace zv
