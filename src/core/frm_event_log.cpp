#include "core/frm_event_log.h"

namespace zv {

namespace {
constexpr PlacementKeys kEventLogPlacement { "EventLogTop", "EventLogLeft", "EventLogWidth",
    "EventLogHeight" };
}

frmEventLog::frmEventLog(const LogWindowContext& context)
    : LogWindow("frmEventLog", context, kEventLogPlacement, txtEvent)
{
    setCaption("Event Log");
    txtEvent.setLocked(true);
    addControls({ &txtEvent });
}

void frmEventLog::addLine(const std::string& line)
{
    load();
    txtEvent.setText(line + txtEvent.text());
}

void frmEventLog::handleUnload()
{
    LogWindow::handleUnload();
    txtEvent.setText({});
}

} // namespace zv
