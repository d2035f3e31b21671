#pragma once
// The live monitor of the main window: the lists and tabs, the poll and the parameter edits,
// joined to frmMain's load steps, menu entries and list events.

#include "monitor/link_activity.h"
#include "monitor/list_menus.h"
#include "monitor/monitor_context.h"
#include "monitor/parameter_edits.h"
#include "monitor/parameter_tabs.h"
#include "monitor/poll_cycle.h"
#include "monitor/status_panes.h"
#include "monitor/trend_plot.h"

namespace zv {

class Monitor {
public:
    // Fills the form's MonitorLoadSteps and wires its poll, read and write entries and lists.
    explicit Monitor(MonitorContext context);
    // Takes the alarm and file status hooks back from gMain, which may outlive the monitor.
    ~Monitor();
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    // OpenHelpLink as the poll allows it: at once, or as a pending command while polling
    // (mnuParameterHelp, the help button of the parameter editor).
    void helpLink();

    MonitorContext context;
    ParameterTabs tabs { context };
    PollCycle poll { context, tabs };
    ParameterEdits edits { context, tabs, poll };
    ListMenus menus { context, tabs, poll };
    TrendPlot plot { context, poll };
    StatusPanes panes { context };
    LinkActivity activity { context.form, context.main, context.loop };

private:
    void wireLoadSteps();
    void wireMenus();
    void wireLists();
    void wirePlot();
    void wireStatusPanes();
    void wireFileAccessStatus();
};

} // namespace zv
