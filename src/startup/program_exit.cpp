#include "startup/program_exit.h"

#include "core/globals.h"
#include "driver/cellweft.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

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

// The command set closed and, on the dongle, the dongle reset.
void closeLink(const ExitServices& s)
{
    if (s.globals.gDemo || !s.driver)
        return;
    call(s.closeCommandLock);
    if (!s.globals.usbTransport())
        s.driver->Link.ResetHLK();
}

} // namespace

bool CloseMainWindow(const ExitServices& s)
{
    if (!settleUncommittedWrites(s))
        return false;
    if (s.globals.PollingActive || (s.pollTimerRunning && s.pollTimerRunning())) {
        call(s.stopPolling);
        if (s.pollTimerRunning)
            (void)s.loop.waitUntil([&s] { return !s.pollTimerRunning(); }, kPollStopLimitMs);
    }
    closeLink(s);
    call(s.removeTrayIcon);
    return true;
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
