// A running poll that loses its link and finds it again on its own: the dongle's device node goes
// and comes back, or the pack restarts and forgets that it was unlocked. The lists go "Offline"
// and come back "Online" with fresh values within a few ticks, with no user action.

#include "monitor_fixture.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::MonitorRig;

class LinkRecoveryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(rig.load());
        poll.hooks.updatePlot = [this] { ++samples; };
        rig.form->cmbPollRate.userSelect(0); // a sample each tick
        rig.form->mnuPollAllContinuously.click();
        rig.h.loop.advance(2500);
        ASSERT_EQ(gatewayText(), "Online");
    }

    [[nodiscard]] std::string gatewayText() const { return rig.form->lvGateway.rows().at(0).text; }
    // Advances tick by tick until the gateway row reads `text`; the virtual time it took.
    [[nodiscard]] std::int64_t until(const std::string& text, std::int64_t limitMs)
    {
        const auto start = rig.h.loop.milliseconds();
        while (gatewayText() != text && rig.h.loop.milliseconds() - start < limitMs)
            rig.h.loop.advance(500);
        return rig.h.loop.milliseconds() - start;
    }

    MonitorRig rig;
    PollCycle& poll = rig.monitor->poll;
    int samples = 0;
};

TEST_F(LinkRecoveryTest, ADongleUnpluggedAndPluggedBackIsFoundAgainByThePoll)
{
    const int opensBefore = rig.h.port.openCount();
    rig.h.port.pull();
    EXPECT_LT(until("Offline", 10000), 10000);
    EXPECT_TRUE(rig.h.globals.PollingActive);
    EXPECT_EQ(rig.form->sbStatusBar.panelText(kHlkPanel), "Lost Comms");
    // While the node is away each tick fails at once: nothing waits on a closed port.
    const auto lost = poll.LostCommSamples;
    rig.h.loop.advance(5000);
    EXPECT_GE(poll.LostCommSamples, lost + 3);

    // A new dongle on the same port (the node comes back, the dongle powered up afresh).
    rig.h.replaceEndpoint({});
    rig.h.port.plugIn();
    const int before = samples;
    EXPECT_LE(until("Online", 10000), 3000) << "within a few poll ticks";
    EXPECT_GT(samples, before) << "a good sample with its consumers";
    EXPECT_EQ(poll.LostCommSamples, 0);
    EXPECT_GT(rig.h.port.openCount(), opensBefore) << "the port was opened again";
    EXPECT_FALSE(rig.form->lvGateway.rows().at(0).subItems.at(0).empty()) << "pack voltage shown";
    EXPECT_TRUE(rig.h.pack->commandSetOpen()) << "unlocked and the command set opened again";
    rig.form->mnuStopPolling.click();
    rig.h.loop.advance(2000);
    EXPECT_EQ(rig.form->sbStatusBar.panelText(kHlkPanel), "Idle") << "the link panel quiet again";
}

TEST_F(LinkRecoveryTest, APackThatRestartsIsRiddenThroughAndUnlockedAgain)
{
    // Silent for three seconds, then back with its command set closed: the request that met the
    // silence rebuilds the link and is made again, so the poll goes on.
    rig.h.pack->powerCycle(3000);
    const int before = samples;
    rig.h.loop.advance(20000);
    EXPECT_EQ(gatewayText(), "Online");
    EXPECT_GT(samples, before + 5);
    EXPECT_TRUE(rig.h.pack->commandSetOpen());
    EXPECT_EQ(poll.LostCommSamples, 0);
}

} // namespace
} // namespace zv
