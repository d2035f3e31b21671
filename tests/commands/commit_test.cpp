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
    ASSERT_EQ(h.dialogs.notifications().size(), 1u);
    EXPECT_EQ(h.dialogs.notifications()[0].title, "Zentavia Parameters Saved!");
    EXPECT_EQ(h.dialogs.notifications()[0].text, "Recent changes have been committed to flash.");
    EXPECT_EQ(h.dialogs.notifications()[0].icon, platform::Icon::Information);
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

TEST_F(CommitTest, WithoutACommitARestartLosesTheValue)
{
    const auto before = h.pack->model().files.get("Design Capacity");
    (void)writeDesignCapacity();
    restartPack();
    EXPECT_EQ(h.pack->model().files.get("Design Capacity"), before);
}

TEST_F(CommitTest, RefusedCommitKeepsTheFlagAndNotifiesTheFailure)
{
    (void)writeDesignCapacity();
    h.pack->faults().forcedStatus = 5;

    EXPECT_FALSE(commands->CommitChanges(false));

    EXPECT_TRUE(h.driver().Parameters.ParametersWritten);
    ASSERT_EQ(h.dialogs.notifications().size(), 1u);
    EXPECT_EQ(h.dialogs.notifications()[0].title, "Commit Changes Failed");
    EXPECT_EQ(h.dialogs.notifications()[0].text, "An error has occurred while trying to commit.");
    EXPECT_EQ(h.dialogs.notifications()[0].icon, platform::Icon::Critical);
}

TEST_F(CommitTest, DuringAPollTheCommitIsLeftToTheNextTick)
{
    bool deferred = false;
    commands->hooks().deferCommit = [&] { deferred = true; };
    (void)writeDesignCapacity();
    h.globals.PollingActive = true;

    commands->mnuCommit_Click();

    EXPECT_TRUE(deferred);
    EXPECT_TRUE(h.driver().Parameters.ParametersWritten);
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

} // namespace
} // namespace zv::test
