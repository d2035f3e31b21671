#pragma once
// The logging commands of the main window over the live monitor: the log writer joined to the
// poll (a row a sample, AutoLogging, the pending start, comment, learned data and export), the
// CHANGE rows of the parameter writes, frmLogging, the comment dialog and the entries of the
// "Logging" menu.

#include "logging/frm_log_comment.h"
#include "logging/frm_log_wizard.h"
#include "logging/frm_logging.h"
#include "logging/log_writer.h"
#include "platform/ui/show_modal.h"

#include <functional>
#include <memory>
#include <string>

namespace zv::platform {
class Desktop;
}

namespace zv {

class Monitor;
class frmMain;

struct LoggingCommandServices {
    platform::Desktop* desktop = nullptr; // the associated program of an exported log
    std::function<void(int)> setMousePointer; // 11 hourglass, 0 default
    platform::ui::ShowModal showModal; // frmLogging and the comment dialog
    std::function<bool()> isTheDeviceWired;
};

class LoggingCommands {
public:
    LoggingCommands(Monitor& monitor, LoggingCommandServices services);
    ~LoggingCommands();
    LoggingCommands(const LoggingCommands&) = delete;
    LoggingCommands& operator=(const LoggingCommands&) = delete;

    void mnuConfigLogging_Click();
    void mnuStartLogging_Click();
    void mnuStopLogging_Click();
    void mnuAddComment_Click();
    void mnuCaptureLearnedData_Click();
    void mnuExport_Click();
    void mnuLoadLoggingDefinitionFile_Click();
    // The log definition tool, made on first use.
    void mnuGenerateLogDefinitionFile_Click();

    LogWriter writer;
    frmLogging logging;
    frmLogComment comment;
    std::unique_ptr<frmLogWizard> wizard;

private:
    [[nodiscard]] LogWriterHooks writerHooks();
    void wireMonitor();
    void setMenus(bool open);
    // The visibility of the start and stop entries: hidden while AutoLogging is on.
    void showStartStop(bool autoLogging);

    Monitor& m_;
    LoggingCommandServices s_;
    std::string exportPath_;
};

// Sets the click handlers of the "Logging" entries; the commands must outlive the window's use.
void wireLoggingCommands(frmMain& form, LoggingCommands& commands);

} // namespace zv
