#include "core/app_logs.h"

#include "core/local_time.h"

namespace zv {

AppLogs::AppLogs(const AppGlobals& globals, const LogWindowContext& context, const platform::EventLoop& clock,
    ActiveForm& activeForm)
    : globals_(globals)
    , context_(context)
    , clock_(clock)
    , activeForm_(activeForm)
{
}

frmEventLog& AppLogs::eventLog()
{
    if (!eventLog_) {
        eventLog_ = std::make_unique<frmEventLog>(context_);
        if (onWindowCreated)
            onWindowCreated(*eventLog_);
    }
    return *eventLog_;
}

frmModemLog& AppLogs::modemLog()
{
    if (!modemLog_) {
        modemLog_ = std::make_unique<frmModemLog>(context_, globals_);
        if (onWindowCreated)
            onWindowCreated(*modemLog_);
    }
    return *modemLog_;
}

void AppLogs::LogEvent(const std::string& text)
{
    activeForm_.showInfo(text);
    eventLog().addLine(dateAndTime(clock_.now()) + " : " + text + "\n");
}

void AppLogs::ReadWriteLog(
    std::string_view kind, std::string_view name, std::string_view number, std::string_view value)
{
    std::string line(kind);
    for (std::string_view part : { name, number, value }) {
        line += ' ';
        line += part;
    }
    if (globals_.settings.ReadWriteLogging)
        activeForm_.showInfo(line);
    else
        LogEvent(line);
}

void AppLogs::log_ModemEvent(const std::string& text, bool transmitted)
{
    if (modemLog_)
        modemLog_->log_ModemEvent(text, transmitted);
}

} // namespace zv
