// The main window's answer to the driver's FileAccessStatus: a device that refuses or reports a
// request tells the user why, in the panel "Info", the event log and a notification.

#include "core/app_logs.h"
#include "monitor/frm_main.h"

namespace zv {

void frmMain::FileAccessStatus(const std::string& message, int fileNumber)
{
    ++FileAccessErrors;
    LastFileAccessError = message;
    const std::string count = std::to_string(FileAccessErrors);
    const std::string file = "File " + std::to_string(fileNumber);
    context_.logs.LogEvent(
        "Last Error Status: " + message + " (" + file + ")  Communication Errors: " + count);
    sbStatusBar.setPanelText(kInfoPanel, message);
    if (!fileAccessNotices || fileAccessNotices())
        Notify("File Access Error", "Communication Errors: " + count + "\r\n" + message + "\r\n" + file,
            platform::Icon::Exclamation);
}

} // namespace zv
