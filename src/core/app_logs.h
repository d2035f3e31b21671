#pragma once
// The application logs: LogEvent (status bar and event log), ReadWriteLog (parameter traffic)
// and log_ModemEvent (communications log). The two log windows are created on first use.

#include "core/active_form.h"
#include "core/frm_event_log.h"
#include "core/frm_modem_log.h"
#include "core/globals.h"
#include "platform/event_loop.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zv {

class AppLogs {
public:
    AppLogs(const AppGlobals& globals, const LogWindowContext& context, const platform::EventLoop& clock,
        ActiveForm& activeForm);

    // The panel "Info" of the active form, then the top of the event log: date and time, " : ",
    // the text, a line break.
    void LogEvent(const std::string& text);

    // kind, blank, name, blank, number, blank, value; with ReadWriteLogging on, the line goes only
    // to the panel "Info", else through LogEvent.
    void ReadWriteLog(
        std::string_view kind, std::string_view name, std::string_view number, std::string_view value);

    // Goes to the communications log when it exists and is visible; costs nothing otherwise.
    void log_ModemEvent(const std::string& text, bool transmitted);

    [[nodiscard]] frmEventLog& eventLog();
    [[nodiscard]] frmModemLog& modemLog();
    [[nodiscard]] bool hasEventLog() const { return eventLog_ != nullptr; }
    [[nodiscard]] bool hasModemLog() const { return modemLog_ != nullptr; }

    // Called once for each log window when it is created, so the front end can bind it.
    std::function<void(platform::ui::Window&)> onWindowCreated;

private:
    const AppGlobals& globals_;
    LogWindowContext context_;
    const platform::EventLoop& clock_;
    ActiveForm& activeForm_;
    std::unique_ptr<frmEventLog> eventLog_;
    std::unique_ptr<frmModemLog> modemLog_;
};

} // namespace zv
