#pragma once
// The event log window: what the program did, newest line first, in memory only. Its close box
// really closes it and the text goes; the next line starts a new log in the background.

#include "core/log_window.h"
#include "platform/ui/simple_controls.h"

#include <string>

namespace zv {

class frmEventLog : public LogWindow {
public:
    explicit frmEventLog(const LogWindowContext& context);

    // Puts one line (its line break included) at the top of txtEvent, loading the window hidden
    // when it is not loaded.
    void addLine(const std::string& line);

    platform::ui::TextBox txtEvent { "txtEvent", true };

protected:
    void handleUnload() override;
};

} // namespace zv
