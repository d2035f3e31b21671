#include "access/menu_policy.h"
#include "core/error_handler.h"
#include "core/temp_folder.h"
#include "main_form_fixture.h"
#include "monitor/main_title.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>

namespace zv {
namespace {

namespace ui = platform::ui;

std::vector<std::string> childNames(const MenuNode& node)
{
    std::vector<std::string> names;
    for (const auto& child : node.children)
        names.push_back(child.item->name());
    return names;
}

class FrmMainTest : public test::MainFormTest {
protected:
    // Gives every entry a command, as if every feature were built.
    void wireEverything()
    {
        for (const auto* tree : { &form.menuBar(), &form.popupMenus() })
            forEachMenuNode(*tree, [](const MenuNode& n) {
                if (!n.isSubMenu() && !n.item->onClick)
                    n.item->onClick = [] {};
            });
        form.refreshAvailability();
    }

    frmMain& form = makeForm();
};

TEST_F(FrmMainTest, MenuBarHoldsEveryMenuInOrderWithItsCaption)
{
    std::vector<std::string> menus;
    for (const auto& node : form.menuBar())
        menus.push_back(node.item->name() + "=" + node.item->caption());
    EXPECT_EQ(menus,
        (std::vector<std::string> { "mnuFile=File", "mnulogging=Logging", "mnuCommand=Commands",
            "mnuView=Advanced", "mnuConfigure=Configure", "mnuUtilities=Utilities", "mnuHelp=Help" }));

    const MenuNode& file = form.menuBar().front();
    EXPECT_TRUE(file.children[1].isSeparator());
    EXPECT_EQ(childNames(file.children[4]),
        (std::vector<std::string> { "mnuLoadPackConfiguration", "mnuLoadPackConfigurationRelearn",
            "mnuSavePackConfiguration", "mnuDatExport" }));
    EXPECT_EQ(form.mnuSavePackConfiguration.caption(), "Save Configuration to File... (.dat) Only");
    EXPECT_EQ(form.mnuExit.caption(), "E&xit");
    EXPECT_EQ(form.mnuCal470.caption(), "Calibrate ZK9470 Voltage...");
    EXPECT_EQ(form.mnulvNodes_ReadParameters.caption(), "Update Dynamic Data");
}

TEST_F(FrmMainTest, EveryNameThePolicyAndTheCommandsUseIsAControlOnceOnly)
{
    for (const clsMenu& row : BuildMenuPolicy())
        EXPECT_TRUE(dynamic_cast<ui::MenuItem*>(form.findControl(row.menuName))) << row.menuName;
    for (const char* name : { "mnuStartLogging", "mnuStopLogging", "mnuloogingsep1", "mnuParameters_Write",
             "mnuParameters_RevertAll", "mnuParameters_commit", "mnulvNodes_ReadParameters", "mnuCal470",
             "mnuRelearnPreserve", "mnuInformationOnline", "mnuTechnicalReferenceManual" })
        EXPECT_TRUE(dynamic_cast<ui::MenuItem*>(form.findControl(name))) << name;
    EXPECT_TRUE(dynamic_cast<ui::Label*>(form.findControl("lblCONFIG_BIT")));
    EXPECT_EQ(form.findControl("mnusep1"), &form.mnuSep1);

    std::set<std::string> lowerNames;
    for (const auto* control : form.controls()) {
        std::string lower = control->name();
        std::transform(
            lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
        EXPECT_TRUE(lowerNames.insert(lower).second) << control->name();
    }
}

TEST_F(FrmMainTest, OnlyWiredEntriesAreAvailable)
{
    EXPECT_FALSE(form.mnuCal470.visible()); // until a target asks for it
    EXPECT_TRUE(form.mnuEventLog.enabled());
    EXPECT_TRUE(form.mnuExit.enabled());
    EXPECT_TRUE(form.mnuFile.enabled());
    EXPECT_TRUE(form.mnuSep2.enabled());
    EXPECT_FALSE(form.mnuCalibration.enabled());
    EXPECT_FALSE(form.mnulogging.enabled()); // a sub-menu with nothing wired
    EXPECT_FALSE(form.mnuCommand.enabled());

    form.enableAllCommands(true);
    EXPECT_FALSE(form.mnuConnect.enabled());

    form.mnuConnect.onClick = [] {};
    form.enableAllCommands(true);
    EXPECT_TRUE(form.mnuConnect.enabled());
    form.refreshAvailability();
    EXPECT_TRUE(form.mnuCommand.enabled());
}

TEST_F(FrmMainTest, DisablingCommandsKeepsThePollCommandsReachable)
{
    wireEverything();
    form.mnuCommit.setEnabled(true); // as after a write
    h.globals.PollingActive = true;
    form.disableAllCommands(false);
    EXPECT_FALSE(form.mnuLoadPackConfiguration.enabled());
    EXPECT_FALSE(form.mnuConnect.enabled());
    EXPECT_FALSE(form.mnuSmbusAddress.enabled());
    EXPECT_TRUE(form.mnuWritePendingChanges.enabled());
    EXPECT_TRUE(form.mnuCommit.enabled());
    EXPECT_FALSE(form.mnuAddComment.enabled()) << "no log is open";
    EXPECT_TRUE(form.mnuStopPolling.enabled());
    EXPECT_TRUE(form.mnuStartLogging.enabled());

    form.disableAllCommands(true);
    EXPECT_FALSE(form.mnuWritePendingChanges.enabled());
    EXPECT_FALSE(form.mnuReadAllNodes.enabled());
    EXPECT_FALSE(form.mnuParameters_RevertAll.enabled());
    EXPECT_TRUE(form.mnuCommit.enabled());

    h.globals.PollingActive = false;
    bool logOpen = true;
    form.logFileOpen = [&] { return logOpen; };
    for (int twice = 0; twice < 2; ++twice) {
        form.enableAllCommands(true);
        EXPECT_TRUE(form.mnuLoadPackConfiguration.enabled());
        EXPECT_FALSE(form.mnuStopPolling.enabled());
        EXPECT_FALSE(form.mnuStartLogging.enabled());
        EXPECT_FALSE(form.mnuWritePendingChanges.enabled()); // nothing pending
        EXPECT_TRUE(form.mnuReadSelectedNode.enabled());
    }
    form.WritePending(true);
    form.enableAllCommands(true);
    EXPECT_TRUE(form.mnuWritePendingChanges.enabled());
    EXPECT_TRUE(form.mnuParameters_Write.enabled());
}

TEST_F(FrmMainTest, StatusPanelsInOrderWithTheirToolTips)
{
    std::vector<std::string> panels;
    for (const auto& p : form.sbStatusBar.panels())
        panels.push_back(p.key + "|" + p.text + "|" + p.toolTip);
    EXPECT_EQ(panels,
        (std::vector<std::string> { "Nodes|Cells|Number of cells", "Comm|COM|Communications port",
            "Polling|Polling Inactive|Shows whether polling is active or inactive",
            "Logging|Logging Inactive|Shows whether logging is active or inactive",
            "HLK|HLK Response|Displays communication status", "Info|Info|Shows general status information",
            "Alarms|SMBus Address 0x00|", "Access|Access Level|User access level" }));
    EXPECT_EQ(form.sbStatusBar.panels()[6].widthTwips, 0); // the spring
}

TEST(MainTitle, VersionAndBuild)
{
    EXPECT_EQ(mainTitle({ { 3, 0, 0 }, "ZK9460" }), "Norvale Systems - Zentavia 3.0 : ZK9460");
    EXPECT_EQ(mainTitle({ { 3, 1, 27 }, "ZK9460" }), "Norvale Systems - Zentavia 3.1 Build(27) : ZK9460");
}

TEST_F(FrmMainTest, LoadMainFormAgainstThePack)
{
    ASSERT_TRUE(h.connect());
    auto& g = h.globals;
    g.gTargetID = "1001";
    g.gTargetName = "ZK9460";
    g.gTargetREF = "https://zentavia.example/ref";
    g.gNodeCount = static_cast<std::uint8_t>(h.driver().nodes.Count());
    g.setAddress(0x0B);
    g.gCal470Enabled = true; // no effect on 1001

    std::vector<std::string> steps;
    const auto step = [&](const char* name) { return [&steps, name] { steps.push_back(name); }; };
    form.userLevelReader = [&](frmMain& f) {
        steps.push_back("level");
        f.UpdateMenus();
    };
    form.menuPolicy = [&](frmMain&) { steps.push_back("menus"); };
    form.monitorSteps
        = { step("logging"), step("lists"), step("plot"), step("offline"), step("tabs"), step("pollRate") };
    form.LoadMainForm(h.main());

    EXPECT_EQ(steps,
        (std::vector<std::string> { "level", "menus", "logging", "lists", "plot", "tabs", "pollRate" }));
    EXPECT_EQ(form.caption(), "Norvale Systems - Zentavia 3.0 : ZK9460");
    const auto& bar = form.sbStatusBar;
    EXPECT_EQ(bar.panelText("HLK"), "Idle");
    EXPECT_EQ(bar.panels()[4].picture, "netNone");
    EXPECT_EQ(bar.panelText("Comm"), "COM" + std::to_string(h.driver().Link.SMBusCommPort));
    EXPECT_EQ(bar.panelText("Nodes"), std::to_string(g.gNodeCount) + " Cells");
    EXPECT_GT(g.gNodeCount, 0);
    EXPECT_EQ(bar.panelText("Access"), "Access Level " + std::to_string(h.main().UserAccessLevel()));
    EXPECT_EQ(bar.panelText("Alarms"), "SMBus Address 0x0B");
    EXPECT_NE(logs.eventLog().txtEvent.text().find(" : Zentavia Started\n"), std::string::npos);
    EXPECT_FALSE(form.mnuInformationOnline.visible());
    EXPECT_TRUE(form.mnuTechnicalReferenceManual.visible());
    EXPECT_EQ(form.mnuTechnicalReferenceManual.caption(), "ZK9460 Technical Reference Manual Online");
    EXPECT_FALSE(form.mnuCal470.visible());
    EXPECT_FALSE(form.mnuRelearnPreserve.visible());
}

TEST_F(FrmMainTest, LoadMainFormOfflineLeavesConnectAndPortOnly)
{
    wireEverything();
    bool offlineShown = false;
    form.monitorSteps.offline = [&] { offlineShown = true; };
    h.driver().Link.Status = 1;
    form.LoadMainForm(h.main());
    EXPECT_TRUE(offlineShown);
    EXPECT_EQ(form.caption(), kAppTitle); // no target known
    EXPECT_TRUE(form.mnuConnect.enabled());
    EXPECT_TRUE(form.mnuConfigCommPort.enabled());
    EXPECT_FALSE(form.mnuStartLogging.enabled());
    EXPECT_FALSE(form.mnuPollAllContinuously.enabled());
    EXPECT_FALSE(form.mnuReadAllNodes.enabled());
    EXPECT_TRUE(form.mnuExit.enabled());
}

TEST(FrmMainErrors, AFailedLoadIsReportedAndCanBeRetried)
{
    testing::TempFolder folder;
    test::SimHarness h;
    ActiveForm active;
    AppLogs logs { h.globals, { h.settings, [] { return ui::ScreenSize {}; }, folder.path().string() },
        h.loop, active };
    ErrorHandler errors(h.dialogs, h.loop, folder.file("error.log"), {});
    frmMain form({ h.globals, h.settings, h.dialogs, logs, test::programFolder(), nullptr, &errors });
    int attempts = 0;
    form.monitorSteps.plot = [&] {
        if (++attempts == 1)
            throw std::runtime_error("plot not ready");
    };
    h.dialogs.answerMessage(platform::Answer::Retry);
    form.LoadMainForm(h.main());
    EXPECT_EQ(attempts, 2);
    EXPECT_EQ(h.dialogs.lastShown().title, "Application Error");
    EXPECT_NE(h.dialogs.lastShown().text.find("    Procedure: Load\n"), std::string::npos);
    const std::string record = folder.read("error.log");
    EXPECT_NE(record.find("\tMain\tLoad\t1\tplot not ready\tRetry"), std::string::npos) << record;
}

TEST_F(FrmMainTest, LoadMainFormOnUsbDemoWithVoltageCalibration)
{
    auto& g = h.globals;
    g.gTransport = kTransportUsbAdapter;
    g.gDemo = true;
    g.gTargetID = "1003";
    g.gTargetName = "ZK9470";
    g.gCal470Enabled = true;
    form.LoadMainForm(h.main());
    EXPECT_EQ(form.caption(),
        "Norvale Systems - Zentavia 3.0 : ZK9470 DEMO : Unoffical Release - Voltage Calibration Enabled");
    EXPECT_EQ(form.sbStatusBar.panelText("Comm"), "usb");
    EXPECT_TRUE(form.mnuCal470.visible());
    EXPECT_TRUE(form.mnuRelearnPreserve.visible());
}

TEST_F(FrmMainTest, NotificationsWithoutATrayGoToStatusBarAndEventLog)
{
    form.NotifyInStatusBar("Commit changes to flash",
        "Parameter changes are saved in RAM\r\nuntil you commit the changes to FLASH.");
    const std::string line
        = "Commit changes to flash: Parameter changes are saved in RAM until you commit the "
          "changes to FLASH.";
    EXPECT_EQ(form.sbStatusBar.panelText("Info"), line);
    EXPECT_NE(logs.eventLog().txtEvent.text().find(line + "\n"), std::string::npos);
    EXPECT_FALSE(logs.eventLog().visible()); // nothing pops up

    form.Notify("Zentavia Parameters Saved!", "Recent changes have been committed to flash.",
        platform::Icon::Information);
    ASSERT_EQ(h.dialogs.notifications().size(), 1u);
    EXPECT_EQ(h.dialogs.notifications()[0].title, "Zentavia Parameters Saved!");
    EXPECT_TRUE(h.dialogs.shown().empty());
}

TEST_F(FrmMainTest, TrayIconLivesWithTheWindowAndCloseCanBeRefused)
{
    form.show();
    form.AddTrayIcon();
    EXPECT_TRUE(form.trayIcon.visible());
    EXPECT_EQ(form.trayIcon.toolTip(), kAppTitle);

    int exits = 0;
    form.onExit = [&] { ++exits; };
    form.closeRequested = [] { return false; };
    form.mnuExit.click();
    EXPECT_TRUE(form.loaded());
    form.closeRequested = [] { return true; };
    form.mnuExit.click();
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.trayIcon.visible());
    EXPECT_EQ(exits, 1);
}

TEST_F(FrmMainTest, LogEntriesOpenAndClearTheLogs)
{
    form.mnuEventLog.click();
    EXPECT_TRUE(logs.eventLog().visible());
    form.mnuCommunicationsLog.click();
    logs.log_ModemEvent("0B 3D", true);
    EXPECT_FALSE(logs.modemLog().rtfEvent.runs().empty());
    form.mnuClearLog.click();
    EXPECT_TRUE(logs.modemLog().rtfEvent.runs().empty());
}

} // namespace
} // namespace zv
