#include "monitor/frm_main.h"

#include "core/app_logs.h"
#include "core/error_handler.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "monitor/main_title.h"
#include "monitor/unexpected_error.h"

#include <cstdio>

namespace zv {

namespace {

constexpr const char* kTarget1003 = "1003";

std::string smbusAddressText(int address7)
{
    char hex[8];
    std::snprintf(hex, sizeof hex, "%02X", address7 & 0xFF);
    return std::string("SMBus Address 0x") + hex;
}

// A status panel shows one line.
std::string oneLine(std::string text)
{
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        line += text[i] == '\n' || text[i] == '\r' ? ' ' : text[i];
    }
    return line;
}

void run(const std::function<void()>& step)
{
    if (step)
        step();
}

} // namespace

frmMain::frmMain(MainFormContext context)
    : Window("frmMain")
    , context_(std::move(context))
{
    setCaption(kAppTitle);
    setBounds({ 0, 0, 19200, 12600 });
    buildMenus();
    wireMenus();
    buildStatusBar();
    // "Select all" of the pop-up menu works on the gateway lists.
    for (auto& list : lvParameters)
        list.setMultiSelect(true);
    lblSHIP_BIT.setCaption("Ship");
    lblUNLOCK_BIT.setCaption("Wired");
    lblCONFIG_BIT.setCaption("Configured");
    listControls();
    refreshAvailability();
    showVoltageCalibration();
}

frmMain::~frmMain() = default;

void frmMain::listControls()
{
    for (const auto* tree : { &menuBar_, &popupMenus_ })
        forEachMenuNode(*tree, [this](const MenuNode& node) { addControls({ node.item }); });
    addControls({ &lblSHIP_BIT, &lblUNLOCK_BIT, &lblCONFIG_BIT, &lvGateway, &lvNodes, &SSTab1, &SSTab,
        &fraStatus, &lvStatus, &cmbPollRate, &cmdCollapseCells, &cmdCollapsePack, &sbStatusBar, &trayIcon });
    picProgress.setVisible(false);
    addControls({ &picProgress });
    for (auto& list : lvProperties)
        addControls({ &list });
    for (auto& list : lvParameters)
        addControls({ &list });
    // The trend plot.
    addControls({ &iPlot, &cmdToggleGridY, &cmdResetPlot, &cmdToggleTabView, &cmdZoomx, &cmdZoomy, &cmdTrackx,
        &cmdTracky });
    for (auto& plotSwitch : iSwitchLed)
        addControls({ &plotSwitch });
    addControls({ &lvFET, &SSTabFlags });
    for (auto& list : lvFlags)
        addControls({ &list });
}

void frmMain::buildStatusBar()
{
    sbStatusBar.addPanel({ kNodesPanel, "Cells", "", "Number of cells", 1100 });
    sbStatusBar.addPanel({ kCommPanel, "COM", "", "Communications port", 900 });
    sbStatusBar.addPanel({ kPollingPanel, "Polling Inactive", "Pollingd",
        "Shows whether polling is active or inactive", 1800 });
    sbStatusBar.addPanel({ kLoggingPanel, "Logging Inactive", "Loggingd",
        "Shows whether logging is active or inactive", 1800 });
    sbStatusBar.addPanel({ kHlkPanel, "HLK Response", "", "Displays communication status", 1600 });
    sbStatusBar.addPanel({ kInfoPanel, "Info", "information", "Shows general status information", 5400 });
    sbStatusBar.addPanel({ kAlarmsPanel, smbusAddressText(context_.globals.gAddress7), "", "", 0 });
    sbStatusBar.addPanel({ kAccessPanel, "Access Level", "", "User access level", 1800 });
}

void frmMain::LoadMainForm(clsMain& main)
{
    try {
        loadMainForm(main);
    } catch (const std::exception& e) {
        if (!context_.errors)
            throw;
        if (context_.errors->ReportError(unexpectedError(e), "Main", "Load") == ErrorResponse::Retry)
            LoadMainForm(main);
    }
}

void frmMain::loadMainForm(clsMain& main)
{
    main_ = &main;
    const AppGlobals& g = context_.globals;
    sbStatusBar.setPanelPicture(kHlkPanel, "netNone");
    sbStatusBar.setPanelText(kHlkPanel, "Idle");
    showTitle();
    GetUserLevelFromHardware();
    showPanels();
    run(monitorSteps.loggingState);
    refreshAvailability();
    enableAllCommands(true);
    run(monitorSteps.lists);
    run(monitorSteps.plot);
    if (main.CellWeft().Status() == 1) {
        disableAllCommands(true);
        run(monitorSteps.offline);
        setCommand(mnuConnect, true);
        setCommand(mnuConfigCommPort, true);
        setCommand(mnuStartLogging, false);
    }
    context_.logs.LogEvent(std::string(kAppTitle) + " Started");
    // The section length of the per-node files is counted from node 1 by the driver where it
    // is used, so a rebuilt cell list never leaves a stale length behind.
    run(monitorSteps.tabs);
    run(monitorSteps.pollRate);
    ScriptBinPath = readSetting(context_.settings, "Path_ScriptBin", context_.programFolder);
    showTargetLinks();
    showVoltageCalibration();
    sbStatusBar.setPanelText(kAlarmsPanel, smbusAddressText(g.gAddress7));
    if (!g.gDemo && firmwareCheck)
        firmwareCheck();
}

void frmMain::showTitle()
{
    const AppGlobals& g = context_.globals;
    if (g.gTargetID.empty())
        return;
    setCaption(
        mainTitle({ appVersion(), g.gTargetName, g.gDemo, g.gTargetID == kTarget1003 && g.gCal470Enabled }));
    trayIcon.setToolTip(caption());
}

void frmMain::showPanels()
{
    const AppGlobals& g = context_.globals;
    sbStatusBar.setPanelPicture(kPollingPanel, "Pollingd");
    sbStatusBar.setPanelPicture(kLoggingPanel, "Loggingd");
    ShowAccessLevel(main_->UserAccessLevel());
    sbStatusBar.setPanelText(
        kCommPanel, g.usbTransport() ? "usb" : "COM" + std::to_string(main_->CellWeft().Link.SMBusCommPort));
    sbStatusBar.setPanelText(kNodesPanel, std::to_string(g.gNodeCount) + " Cells");
}

void frmMain::showTargetLinks()
{
    const AppGlobals& g = context_.globals;
    mnuInformationOnline.setCaption(g.gTargetName + " Information Online");
    mnuInformationOnline.setVisible(!g.gTargetURL.empty());
    mnuTechnicalReferenceManual.setCaption(g.gTargetName + " Technical Reference Manual Online");
    mnuTechnicalReferenceManual.setVisible(!g.gTargetREF.empty());
}

void frmMain::showVoltageCalibration()
{
    const AppGlobals& g = context_.globals;
    const bool on = g.gTargetID == kTarget1003 && g.gCal470Enabled;
    mnuCal470.setVisible(on);
    mnuRelearnPreserve.setVisible(on);
}

void frmMain::ShowAccessLevel(int level)
{
    sbStatusBar.setPanelText(kAccessPanel, "Access Level " + std::to_string(level));
}

void frmMain::GetUserLevelFromHardware()
{
    if (userLevelReader)
        userLevelReader(*this);
    else
        UpdateMenus();
}

void frmMain::UpdateMenus()
{
    if (menuPolicy)
        menuPolicy(*this);
}

void frmMain::AddTrayIcon()
{
    trayIcon.setToolTip(caption());
    trayIcon.setVisible(true);
}

void frmMain::Notify(const std::string& title, const std::string& text, platform::Icon icon)
{
    context_.dialogs.notify(title, text, icon);
}

void frmMain::NotifyInStatusBar(const std::string& title, const std::string& text)
{
    const std::string line = oneLine(title.empty() ? text : title + ": " + text);
    sbStatusBar.setPanelText(kInfoPanel, line);
    context_.logs.LogEvent(line);
}

bool frmMain::handleCloseRequest()
{
    return !closeRequested || closeRequested();
}

void frmMain::boundsChanged(bool resized)
{
    Window::boundsChanged(resized);
    if (resized && onResize)
        onResize();
}

void frmMain::handleUnload()
{
    RemoveTrayIcon();
    if (onExit)
        onExit();
}

} // namespace zv
