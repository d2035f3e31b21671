#include "core/settings_table.h"
#include "monitor_fixture.h"
#include "platform/event_loop.h"

#include <gtest/gtest.h>

#include <vector>

namespace zv {
namespace {

using test::MonitorRig;

class PollCycleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(rig.load());
        poll.hooks.updatePlot = [this] { samples.push_back(poll.PollTickCount); };
    }

    // The ticks at which samples fell, over `ticks` ticks of a running poll.
    std::vector<int> tick(int ticks)
    {
        for (int i = 0; i < ticks; ++i)
            poll.tmrPollData_Timer();
        return samples;
    }

    void chooseRate(int seconds) { rig.form->cmbPollRate.userSelect(seconds - 1); }

    MonitorRig rig;
    PollCycle& poll = rig.monitor->poll;
    frmMain& form = *rig.form;
    std::vector<int> samples;
};

TEST_F(PollCycleTest, StartAndStopSetPanelsPriorityAndTheTimer)
{
    form.mnuPollAllContinuously.click();
    EXPECT_TRUE(rig.h.globals.PollingActive);
    EXPECT_TRUE(poll.tmrPollData().enabled());
    EXPECT_EQ(poll.tmrPollData().interval(), 1000);
    EXPECT_TRUE(rig.highPriority);
    EXPECT_EQ(form.sbStatusBar.panelText(kPollingPanel), "Polling Active");
    EXPECT_EQ(rig.info(), "Reading dynamic data for all cells continuously");
    EXPECT_FALSE(form.mnuPollAllContinuously.enabled());
    EXPECT_TRUE(form.mnuStopPolling.enabled());

    form.mnuStopPolling.click();
    EXPECT_FALSE(rig.highPriority);
    EXPECT_EQ(form.sbStatusBar.panelText(kPollingPanel), "Polling Inactive");
    EXPECT_EQ(rig.info(), "Reading Dynamic data for all cells completed");
    EXPECT_TRUE(poll.tmrPollData().enabled()) << "the next tick turns the timer off";
    rig.h.loop.advance(1000);
    EXPECT_FALSE(poll.tmrPollData().enabled());
    EXPECT_TRUE(samples.empty());
}

TEST_F(PollCycleTest, RatesOneSevenAndTwentyFollowTheRingOfTwenty)
{
    rig.h.globals.PollingActive = true;
    chooseRate(1);
    EXPECT_EQ(tick(3), (std::vector<int> { 1, 2, 3 }));

    samples.clear();
    poll.PollTickCount = 0;
    chooseRate(7);
    EXPECT_EQ(tick(28), (std::vector<int> { 7, 14, 7 })) << "the gap after 14 is 13 ticks";

    samples.clear();
    poll.PollTickCount = 0;
    chooseRate(20);
    EXPECT_EQ(tick(40), (std::vector<int> { 20, 20 }));
    EXPECT_EQ(readSetting(rig.h.settings, "PollingInterval", test::programFolder()), "20");
}

TEST_F(PollCycleTest, ARateChosenMidPollCountsOnWithoutReset)
{
    rig.h.globals.PollingActive = true;
    chooseRate(2);
    EXPECT_EQ(tick(3), (std::vector<int> { 2 }));
    chooseRate(4);
    EXPECT_EQ(poll.PollTickCount, 3);
    EXPECT_EQ(tick(1), (std::vector<int> { 2, 4 }));
}

TEST_F(PollCycleTest, ACommandChosenDuringAPollRunsAtTheNextTickEvenIfStopFollows)
{
    ASSERT_TRUE(rig.h.driver().GetAllValues());
    auto* sleep = rig.h.driver().GatewayParameters.FindByName("Sleep Current");
    ASSERT_NE(sleep, nullptr);
    const double before = sleep->value.number();
    sleep->NewValue = before + 5;
    rig.monitor->tabs.LoadTabs();
    EXPECT_TRUE(form.PendingChanges) << "LoadTabs finds the waiting value";
    EXPECT_TRUE(form.mnuParameters_RevertAll.enabled());
    form.mnuPollAllContinuously.click();

    ASSERT_TRUE(form.mnuWritePendingChanges.enabled());
    form.mnuWritePendingChanges.click();
    EXPECT_TRUE(poll.pending(PendingCommand::WritePendingChanges));
    EXPECT_TRUE(sleep->NewValue.hasContent()) << "nothing reaches the device during the poll";
    form.mnuStopPolling.click();

    rig.h.loop.advance(1000);
    EXPECT_FALSE(poll.pending(PendingCommand::WritePendingChanges));
    EXPECT_FALSE(sleep->NewValue.hasContent());
    EXPECT_DOUBLE_EQ(sleep->value.number(), before + 5) << "written and read back";
    EXPECT_FALSE(poll.tmrPollData().enabled());
    EXPECT_TRUE(samples.empty());
    EXPECT_TRUE(form.mnuPollAllContinuously.enabled());
}

TEST_F(PollCycleTest, FailedSamplesCountAndNotifyFromTheSecondThenOnlineComesBack)
{
    rig.failDevice(true);
    poll.PollDynamicData();
    EXPECT_EQ(rig.info(), "Lost communication1 Sample(s) Ago.");
    EXPECT_TRUE(rig.h.dialogs.notifications().empty());
    EXPECT_EQ(form.lvGateway.rows().at(0).text, "Offline");
    EXPECT_EQ(form.sbStatusBar.panelText(kHlkPanel), "Lost Comms");
    EXPECT_TRUE(poll.tmrPollData().enabled()) << "a failed sample never stops the poll";

    poll.PollDynamicData();
    ASSERT_EQ(rig.h.dialogs.notifications().size(), 1u);
    const auto& note = rig.h.dialogs.notifications().back();
    EXPECT_EQ(note.title, "Communications Error");
    EXPECT_EQ(note.text,
        "Lost communication 2 Sample(s) Ago.\r\nTry reconnecting to the pack using the menu Commands >> "
        "Connect to Pack");
    EXPECT_EQ(note.icon, platform::Icon::Critical);

    rig.activeForm.clear();
    poll.PollDynamicData();
    EXPECT_EQ(rig.info(), "Lost communication3 Sample(s) Ago.");
    EXPECT_EQ(rig.h.dialogs.notifications().size(), 1u) << "no notification while another form is active";
    rig.activeForm.set(rig.form.get());
    poll.PollDynamicData();
    EXPECT_EQ(rig.h.dialogs.notifications().size(), 2u);
    EXPECT_TRUE(samples.empty());

    rig.failDevice(false);
    poll.PollDynamicData();
    EXPECT_EQ(form.lvGateway.rows().at(0).text, "Online");
    EXPECT_EQ(poll.GatewayState, 1);
    EXPECT_EQ(poll.LostCommSamples, 0);
    EXPECT_TRUE(
        rig.info().starts_with("Last Hardware Poll ") || rig.info() == "Hardware Poll Completed Last Sample.")
        << rig.info();
    EXPECT_EQ(samples.size(), 1u);
    EXPECT_FALSE(form.lvGateway.rows().at(0).subItems.at(0).empty()) << "pack voltage shown";
    EXPECT_FALSE(form.lvNodes.row("n1")->subItems.at(0).empty()) << "cell voltage shown";
    EXPECT_EQ(form.lblUNLOCK_BIT.caption(), "Wired");
}

TEST_F(PollCycleTest, ThePollRunsThroughFaultSwitchesWithoutHanging)
{
    chooseRate(1);
    form.mnuPollAllContinuously.click();
    rig.h.loop.advance(3500);
    EXPECT_GE(samples.size(), 2u);
    EXPECT_EQ(form.lvGateway.rows().at(0).text, "Online");

    // A failed tick spends its retries and timeouts on the virtual clock: about 15 s each.
    rig.failDevice(true);
    rig.h.loop.advance(40000);
    EXPECT_EQ(form.lvGateway.rows().at(0).text, "Offline");
    EXPECT_GE(poll.LostCommSamples, 2);
    EXPECT_TRUE(rig.h.globals.PollingActive);
    EXPECT_TRUE(poll.tmrPollData().enabled());

    rig.h.pack->faults().busyPolls = 3;
    rig.failDevice(false);
    const auto good = samples.size();
    rig.h.loop.advance(5000);
    EXPECT_EQ(form.lvGateway.rows().at(0).text, "Online");
    EXPECT_GT(samples.size(), good);

    form.mnuStopPolling.click();
    rig.h.loop.advance(60000);
    EXPECT_FALSE(poll.tmrPollData().enabled());
}

TEST_F(PollCycleTest, ATickThatComesWhileAPendingCommandWaitsIsDropped)
{
    chooseRate(20);
    int comments = 0;
    poll.actions[static_cast<std::size_t>(PendingCommand::AddComment)] = [&] {
        ++comments;
        rig.h.loop.wait(3500); // a modal dialog or a device exchange runs events meanwhile
    };
    form.mnuPollAllContinuously.click();
    poll.runOrDefer(PendingCommand::AddComment);
    rig.h.loop.advance(1000);
    EXPECT_EQ(comments, 1);
    EXPECT_EQ(poll.PollTickCount, 1) << "the ticks during the wait began no device work";
    rig.h.loop.advance(1000);
    EXPECT_GT(poll.PollTickCount, 1) << "the poll goes on";
}

TEST_F(PollCycleTest, ClosingWhilePollingServesThePendingCommandsFirst)
{
    form.mnuPollAllContinuously.click();
    form.mnuReadSelectedNode.click();
    ASSERT_TRUE(poll.pending(PendingCommand::ReadSelected));
    poll.stopForClose();
    EXPECT_FALSE(poll.pending(PendingCommand::ReadSelected));
    EXPECT_FALSE(poll.tmrPollData().enabled());
    EXPECT_FALSE(rig.h.globals.PollingActive);
    EXPECT_EQ(rig.info(), "Reading Dynamic Data Complete");
}

TEST_F(PollCycleTest, HeartbeatWaitsForTheTickWhilePollingAndRunsAtOnceWhenIdle)
{
    EXPECT_TRUE(poll.tmrHeartbeat().enabled());
    rig.h.globals.PollingActive = true;
    poll.tmrHeartbeat_Timer();
    EXPECT_TRUE(poll.pending(PendingCommand::Heartbeat));
    poll.tmrPollData_Timer();
    EXPECT_FALSE(poll.pending(PendingCommand::Heartbeat));
    EXPECT_TRUE(rig.h.pack->commandSetOpen());
}

TEST_F(PollCycleTest, AnIdleHeartbeatLooksAtTheStatusOnceAndSkipsABusyDevice)
{
    std::vector<std::string> messages;
    rig.h.main().hooks.fileAccessStatus = [&](const std::string& m, int) { messages.push_back(m); };
    for (const bool busy : { false, true }) {
        SCOPED_TRACE(busy ? "busy" : "idle");
        rig.h.pack->faults().busyPolls = busy ? 1000000 : 0;
        std::string text;
        (void)rig.h.driver().GetFile(9, text); // leaves the device busy, or not
        messages.clear();
        rig.h.port.clearWritten();
        const auto start = rig.h.loop.milliseconds();

        poll.tmrHeartbeat_Timer();

        const std::string& sent = rig.h.port.written();
        std::size_t statusReads = 0;
        for (auto at = sent.find("/*T~3D"); at != std::string::npos; at = sent.find("/*T~3D", at + 1))
            ++statusReads;
        EXPECT_EQ(statusReads, 1u);
        EXPECT_LT(rig.h.loop.milliseconds() - start, 1000) << "no wait for the device";
        EXPECT_TRUE(messages.empty()) << "nothing to tell the user";
        EXPECT_EQ(sent.find("/T~00~") != std::string::npos, !busy)
            << "the command set is refreshed only when the device is not busy";
    }
}

TEST_F(PollCycleTest, AFailedReadOfEitherStateFileClearsOnlyItsOwnStates)
{
    AppGlobals& g = rig.h.globals;
    auto& files = rig.h.pack->model().files;
    files.set("Internal Flags 2", 0x1); // ship mode
    files.set("Algorithm Enable", files.get("Algorithm Enable") | 0x28); // wired and configured
    struct Case {
        const char* failing;
        bool ship, wired;
    };
    for (const Case c : { Case { "none", true, true }, Case { "file 9", true, false } }) {
        SCOPED_TRACE(c.failing);
        if (std::string(c.failing) == "file 9")
            rig.h.pack->faults().forcedStatus = 4; // the next request is the read of file 9
        poll.UpdateDeviceBits();
        EXPECT_EQ(g.gInternalFlag0, c.ship);
        EXPECT_EQ(g.gAlgEnableBit3, c.wired);
        EXPECT_EQ(g.gAlgEnableBit5, c.wired);
        EXPECT_EQ(form.lblSHIP_BIT.caption(), c.wired ? "Ship" : "n/a");
    }
}

TEST_F(PollCycleTest, TheParameterHelpEntryAndTheEditorsLinkWaitForTheTickWhilePolling)
{
    rig.h.globals.gTargetURL = "https://example.org/zk9460";
    ASSERT_TRUE(form.mnuParameterHelp.enabled()) << "the entry is wired";
    form.mnuParameterHelp.click();
    EXPECT_EQ(rig.desktop.opened, std::vector<std::string> { rig.h.globals.gTargetURL });

    form.mnuPollAllContinuously.click();
    form.mnuParameterHelp.click();
    rig.monitor->helpLink(); // the editor's help button
    EXPECT_EQ(rig.desktop.opened.size(), 1u) << "nothing opens inside a sample";
    EXPECT_TRUE(poll.pending(PendingCommand::HelpLink));
    poll.tmrPollData_Timer();
    EXPECT_EQ(rig.desktop.opened.size(), 2u) << "one pending command, served once";
}

TEST_F(PollCycleTest, ASampleFillsEveryValueOfTheDynamicTabWithoutAReadOfAll)
{
    rig.monitor->tabs.LoadTabs();
    const auto& dynamic = form.lvParameters.at(0);
    ASSERT_GT(dynamic.rowCount(), 10);
    rig.h.globals.PollingActive = true;
    chooseRate(1);
    tick(1);
    ASSERT_EQ(samples.size(), 1u);
    for (const auto& row : dynamic.rows())
        EXPECT_FALSE(row.subItems.empty() || row.subItems.at(0).empty()) << row.text << "is blank";
}

TEST_F(PollCycleTest, TheBatteryModeTimerRunsWithAlarmModeAndAsksAPollForTheCommandRefresh)
{
    EXPECT_FALSE(poll.tmrBatteryMode().enabled()) << "AlarmMode is off";
    rig.h.globals.settings.AlarmMode = 1;
    form.enableAllCommands(true);
    ASSERT_TRUE(poll.tmrBatteryMode().enabled());
    form.disableAllCommands(false);
    EXPECT_TRUE(poll.tmrBatteryMode().enabled()) << "only disableAllCommands(true) stops it";
    form.enableAllCommands(false);

    std::vector<bool> runs;
    const auto timer = form.batteryModeTimer;
    form.batteryModeTimer = [&](bool run) {
        runs.push_back(run);
        timer(run);
    };
    poll.tmrBatteryMode().onTick();
    poll.tmrPollData_Timer();
    EXPECT_TRUE(runs.empty()) << "idle: nothing to refresh";

    form.mnuPollAllContinuously.click();
    poll.tmrBatteryMode().onTick();
    poll.tmrPollData_Timer();
    EXPECT_EQ(runs, (std::vector<bool> { false, true })) << "the next tick's disable and enable";
    EXPECT_TRUE(poll.tmrBatteryMode().enabled());

    rig.h.globals.gTransport = kTransportUsbAdapter;
    form.enableAllCommands(true);
    EXPECT_FALSE(poll.tmrBatteryMode().enabled()) << "the USB adapter has no such timer";
}

TEST(DemoPoll, TheDemoStartMakesTheRowsThatThePollFills)
{
    MonitorRig rig;
    ASSERT_TRUE(rig.h.connect());
    rig.h.globals.gNodeCount = static_cast<std::uint8_t>(rig.h.driver().nodes.Count());
    rig.h.globals.gDemo = true; // level 2 without a level read
    rig.h.main().UserAccessLevel() = 2;
    rig.form->LoadMainForm(rig.h.main());
    EXPECT_GT(rig.form->lvParameters.at(0).rowCount(), 10) << "the Dynamic tab has its rows";
}

} // namespace
} // namespace zv
