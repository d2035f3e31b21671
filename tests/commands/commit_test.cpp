// Commit writes RAM to flash: what was written survives a restart only after it.

#include "commands_fixture.h"

#include "driver/cls_main.h"

namespace zv::test {
namespace {

class CommitTest : public CommandsTest {
protected:
    // Writes "Design Capacity" (file 9, kept in flash only by a commit) to RAM.
    std::uint32_t writeDesignCapacity()
    {
        auto& d = h.driver();
        const std::uint32_t changed = h.pack->model().files.get("Design Capacity") + 100;
        d.GatewayParameters.FindByName("Design Capacity")->NewValue = static_cast<int>(changed);
        EXPECT_TRUE(d.WriteParameter("Design Capacity", 0));
        EXPECT_TRUE(d.Parameters.ParametersWritten);
        return changed;
    }
    void restartPack() { h.pack->powerCycle(0); }
};

TEST_F(CommitTest, NotSilentCommitStoresTheValueClearsTheFlagAndTellsTheUser)
{
    const auto changed = writeDesignCapacity();
    frmMain& window = *made;
    window.mnuCommit.setEnabled(true);

    window.mnuCommit.onClick();

    EXPECT_FALSE(h.driver().Parameters.ParametersWritten);
    EXPECT_FALSE(window.mnuCommit.enabled());
    EXPECT_FALSE(window.mnuParameters_commit.enabled());
    expectOnlyNotification("Zentavia Parameters Saved!", "Recent changes have been committed to flash.");
    restartPack();
    EXPECT_EQ(h.pack->model().files.get("Design Capacity"), changed);
}

TEST_F(CommitTest, SilentCommitShowsNothingButClearsTheFlag)
{
    bool calibrationPending = true;
    commands->hooks().clearCalibrationPending = [&] { calibrationPending = false; };
    const auto changed = writeDesignCapacity();

    EXPECT_TRUE(commands->CommitChanges(true));

    EXPECT_FALSE(h.driver().Parameters.ParametersWritten);
    EXPECT_FALSE(calibrationPending);
    EXPECT_TRUE(h.dialogs.notifications().empty());
    restartPack();
    EXPECT_EQ(h.pack->model().files.get("Design Capacity"), changed);
}

TEST_F(CommitTest, WiringEnablesTheCommandsAndLeavesCommitToWrittenParameters)
{
    frmMain& window = *made;
    EXPECT_TRUE(window.mnuInitialize.enabled());
    EXPECT_TRUE(window.mnuSafeDisconnect.enabled());
    EXPECT_TRUE(window.mnuToggleConfigure.enabled());
    EXPECT_FALSE(window.mnuCommit.enabled());
    (void)writeDesignCapacity();
    wireDeviceCommands(window, *commands);
    EXPECT_TRUE(window.mnuCommit.enabled());
    EXPECT_TRUE(window.mnuParameters_commit.enabled());
}

TEST_F(CommitTest, CommitFollowsOnlyTheWrittenFlagThroughLoadsAndRewiring)
{
    frmMain& window = *made;
    window.LoadMainForm(h.main());
    window.refreshAvailability();
    EXPECT_FALSE(window.mnuCommit.enabled()) << "a load with nothing written";
    EXPECT_FALSE(window.mnuParameters_commit.enabled());
    (void)writeDesignCapacity();
    window.LoadMainForm(h.main());
    EXPECT_TRUE(window.mnuCommit.enabled()) << "a reload keeps what waits for the commit";
    window.mnuCommit.onClick();
    window.refreshAvailability();
    EXPECT_FALSE(window.mnuCommit.enabled());
}

} // namespace
} // namespace zv::test
