// Connect runs the target detection again; safe disconnect lets the device open its FETs, counts
// down and ends the application when the pack's power goes away or the 20 seconds are up.

#include "commands_fixture.h"

#include "commands/frm_safe_disconnect.h"
#include "link/smbus_transactions.h"

namespace zv::test {
namespace {

class SafeDisconnectTest : public CommandsTest {
protected:
    // Runs the command; returns the virtual time from its start to the end of the application.
    std::int64_t runSafeDisconnect()
    {
        const auto start = h.loop.milliseconds();
        made->onExit = [this] { exitAt = h.loop.milliseconds(); };
        // The end goes through the main window's close request (commit question, lock, reset).
        made->closeRequested = [this] {
            ++closeRequests;
            return true;
        };
        commands->safeDisconnect().setChangeListener([](const platform::ui::ChangeEvent&) {}); // its form
        made->mnuSafeDisconnect.onClick();
        return exitAt - start;
    }

    std::int64_t exitAt = -1;
    int closeRequests = 0;
};

// The next tick's read fails after the link's retries, the second after the 2 s pause; the
// countdown does not run on.
TEST_F(SafeDisconnectTest, PullingThePackEndsTheApplicationAfterTheNextTicksTwoReads)
{
    std::int64_t pulledAt = 0;
    bool stayedAfterCloseBox = false;
    frmSafeDisconnect& form = commands->safeDisconnect();
    h.loop.post(3000, [&] {
        form.requestClose();
        stayedAfterCloseBox = form.visible();
    });
    h.loop.post(6500, [&] {
        pulledAt = h.loop.milliseconds();
        h.pack->powerCycle(60000);
    });

    (void)runSafeDisconnect();

    EXPECT_TRUE(stayedAfterCloseBox);
    EXPECT_EQ(h.pack->model().files.get("Internal Flags 2") & 2, 0u) << "the restart ended the mode";
    ASSERT_GT(exitAt, pulledAt);
    constexpr int kFailedReadMs = (SmbusTransactions::kRetryLimit + 1) * SmbusTransactions::kRetryPauseMs;
    EXPECT_GT(exitAt - pulledAt, frmSafeDisconnect::kRetryPauseMs);
    EXPECT_LT(exitAt - pulledAt, 1000 + frmSafeDisconnect::kRetryPauseMs + 2 * kFailedReadMs);
    EXPECT_FALSE(form.visible());
    EXPECT_FALSE(made->visible());
    EXPECT_GT(form.counter(), 10);
    EXPECT_LT(form.counter(), 16);
}

TEST_F(SafeDisconnectTest, APackThatStaysEndsTheApplicationWhenTheTimeIsUp)
{
    frmSafeDisconnect& form = commands->safeDisconnect();
    std::string shownAtStart;
    h.loop.post(1500, [&] { shownAtStart = form.lblTime.caption(); });

    const auto elapsed = runSafeDisconnect();

    EXPECT_EQ(form.caption(), "Zentavia - Safe Disconnect");
    EXPECT_EQ(shownAtStart, "Exiting in 00:00:20");
    EXPECT_EQ(form.lblTime.caption(), "Exiting in 00:00:00");
    EXPECT_EQ(closeRequests, 1) << "the one close path, not an unload past its questions";
    EXPECT_GE(elapsed, 1000 + 20 * 1000);
    EXPECT_LT(elapsed, 1000 + 21 * 1000);
    EXPECT_TRUE(h.dialogs.notifications().empty());
}

TEST_F(CommandsTest, ConnectDetectsLoadsAndReadsAllOrStopsOrTakesTheDemoCapture)
{
    bool detected = true;
    commands->hooks().DetectTarget = [&] { return detected; };
    commands->hooks().DetectDemoTarget = [this] { calls.emplace_back("DetectDemoTarget"); };
    made->mnuReadAllNodes.onClick = [this] { calls.emplace_back("mnuReadAllNodes"); };
    const auto connect = [this] {
        calls.clear();
        made->mnuConnect.onClick();
        return calls;
    };
    using Calls = std::vector<std::string>;

    EXPECT_EQ(
        connect(), (Calls { "splash Initializing communications...", "LoadMainForm", "mnuReadAllNodes" }));
    detected = false;
    EXPECT_EQ(connect(), (Calls { "splash Initializing communications..." }));
    h.globals.gDemo = true;
    EXPECT_EQ(connect(), (Calls { "DetectDemoTarget", "LoadMainForm" }));
}

} // namespace
} // namespace zv::test
