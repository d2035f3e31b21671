// The wired question, the state bits of file 9, the ship bit, reset fuse and the LAN rebuild.

#include "commands_fixture.h"

#include "commands/frm_safe_disconnect.h"
#include "core/active_form.h"
#include "driver/cls_main.h"

namespace zv::test {
namespace {

using platform::Answer;

TEST_F(CommandsTest, UnwiredDeviceAnsweredNoEndsTheCommandWithoutAWord)
{
    setDeviceWired(false);
    h.pack->model().files.setBits("Safety Flags", 0x8000, true);
    h.dialogs.answerMessage(Answer::No);

    made->mnuResetFuse.onClick();

    ASSERT_EQ(h.dialogs.shown().size(), 1u);
    EXPECT_EQ(h.dialogs.shown()[0].title, "Set Wired Bit?");
    EXPECT_EQ(h.dialogs.shown()[0].text,
        "Cannot perform this operation when the 'Wired' bit is not set.\nWould you like to set the "
        "'Wired' bit now?");
    EXPECT_NE(h.pack->model().files.get("Safety Flags") & 0x8000, 0u);
    EXPECT_TRUE(h.dialogs.notifications().empty());
    EXPECT_FALSE(called("LoadTabs"));
}

TEST_F(CommandsTest, UnwiredDeviceAnsweredYesSetsTheWiredBitAndGoesOn)
{
    setDeviceWired(false);
    h.dialogs.answerMessage(Answer::Yes);

    EXPECT_TRUE(commands->IsTheDeviceWired());

    EXPECT_TRUE(deviceWired());
    EXPECT_TRUE(h.globals.gAlgEnableBit3);
    EXPECT_TRUE(notified("Zentavia Parameters Saved!"));
    EXPECT_TRUE(notified("Wired Bit Toggled"));
    EXPECT_TRUE(made->mnuToggleWired.enabled());
}

TEST_F(CommandsTest, ToggleConfiguredFlipsBitFiveAndCommitsIt)
{
    setDeviceWired(true);
    const bool before = (h.pack->model().files.get("Algorithm Enable") & 0x20) != 0;

    made->mnuToggleConfigure.onClick();

    EXPECT_NE((h.pack->model().files.get("Algorithm Enable") & 0x20) != 0, before);
    EXPECT_EQ(h.globals.gAlgEnableBit5, !before);
    EXPECT_TRUE(called("LoadTabs"));
    h.pack->powerCycle(0);
    EXPECT_NE((h.pack->model().files.get("Algorithm Enable") & 0x20) != 0, before);
}

TEST_F(CommandsTest, ShipBitTogglesAndTellsTheUser)
{
    setDeviceWired(true);
    made->mnuToggleSM.onClick();
    EXPECT_EQ(h.pack->model().files.get("Internal Flags 2") & 1, 1u);
    expectOnlyNotification("Toggle Ship Mode Bit", "The ship mode bit has been toggled.");
}

TEST_F(CommandsTest, ResetFuseClearsTheFuseCommitsSilentlyAndRefreshes)
{
    setDeviceWired(true);
    h.pack->model().files.setBits("Safety Flags", 0x8000, true);

    made->mnuResetFuse.onClick();

    EXPECT_EQ(h.pack->model().files.get("Safety Flags") & 0x8000, 0u);
    expectOnlyNotification("Reset Fuse", "The fuse has been reset.");
    EXPECT_TRUE(called("UpdateDynamicData"));
    EXPECT_TRUE(called("LoadTabs"));
}

// A device that refuses the command: the failure is told and nothing that follows success runs.
TEST_F(CommandsTest, RefusedCommandsNotifyTheFailureAndGoNoFurther)
{
    auto& d = h.driver();
    d.GatewayParameters.FindByName("Design Capacity")->NewValue = 1000;
    ASSERT_TRUE(d.WriteParameter("Design Capacity", 0));
    struct Refusal {
        std::function<void()> run;
        std::string title, text;
    };
    const std::vector<Refusal> refusals {
        { [this] { EXPECT_FALSE(commands->CommitChanges(false)); }, "Commit Changes Failed",
            "An error has occurred while trying to commit." },
        { [this] { EXPECT_FALSE(commands->CommandInitialize(true)); }, "Initialization Failed",
            "An error has occurred while trying to initialize." },
        { [this] { EXPECT_FALSE(commands->ResetFuse()); }, "Reset Fuse Failed",
            "An error has occurred while trying to reset the fuse." },
        { [this] { made->mnuSafeDisconnect.onClick(); }, "Safe Disconnect Failed",
            "An error has occurred while trying to enable safe disconnect." },
    };
    for (std::size_t i = 0; i < refusals.size(); ++i) {
        SCOPED_TRACE(refusals[i].title);
        h.pack->faults().forcedStatus = 5; // the next command's status
        refusals[i].run();
        ASSERT_EQ(h.dialogs.notifications().size(), i + 1);
        EXPECT_EQ(h.dialogs.notifications().back().title, refusals[i].title);
        EXPECT_EQ(h.dialogs.notifications().back().text, refusals[i].text);
        EXPECT_EQ(h.dialogs.notifications().back().icon, platform::Icon::Critical);
    }
    EXPECT_TRUE(d.Parameters.ParametersWritten) << "the commit is still due";
    EXPECT_FALSE(called("Parameters_ReadAll"));
    EXPECT_FALSE(called("exit"));
    EXPECT_FALSE(commands->safeDisconnect().visible());
}

TEST_F(CommandsTest, RebuildOfABuiltLanStillRebuildsTheViews)
{
    setDeviceWired(true);
    h.dialogs.answerMessage(Answer::No);
    made->mnuRebuildLAN.onClick();
    EXPECT_FALSE(called("rebuildLists"));

    h.dialogs.answerMessage(Answer::Yes);
    made->mnuRebuildLAN.onClick();

    EXPECT_EQ(h.dialogs.shown()[0].title, "Confirm Rebuild");
    EXPECT_EQ(made->sbStatusBar.panelText(kInfoPanel),
        "The LAN is already built to the 'Expected Number Of Cells'");
    EXPECT_EQ(made->sbStatusBar.panelText(kNodesPanel), "8 Cells");
    EXPECT_TRUE(called("rebuildLists"));
    EXPECT_TRUE(called("BuildPlotChannels"));
    EXPECT_TRUE(made->mnuRebuildLAN.enabled());
}

TEST_F(CommandsTest, RebuildToFewerExpectedCellsBuildsTheSmallerLan)
{
    setDeviceWired(true);
    h.pack->model().files.set("Expected Number Of Cells", 6);
    h.dialogs.answerMessage(Answer::Yes);

    made->mnuRebuildLAN.onClick();

    EXPECT_EQ(made->sbStatusBar.panelText(kInfoPanel), "Rebuild LAN Successful");
    EXPECT_EQ(made->sbStatusBar.panelText(kNodesPanel), "6 Cells");
    EXPECT_EQ(h.driver().nodes.Count(), 6);
    EXPECT_EQ(h.globals.gNodeCount, 6);
}

} // namespace
} // namespace zv::test
