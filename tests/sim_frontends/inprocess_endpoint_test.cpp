// The in-process endpoint on a virtual clock: replies come back with the time they are due.

#include "fake_target.h"
#include "frontends/inprocess_endpoint.h"

#include <gtest/gtest.h>

namespace zvsim {
namespace {

using testing::FakeTarget;

struct Delivery {
    std::string bytes;
    std::int64_t dueMs;
};

class InProcessEndpointTest : public ::testing::Test {
protected:
    InProcessEndpoint make(InProcessEndpoint::Options options = {})
    {
        return InProcessEndpoint(
            target, [this] { return clockMs; },
            [this](std::string bytes, std::int64_t dueMs) {
                deliveries.push_back({ std::move(bytes), dueMs });
            },
            options);
    }

    FakeTarget target;
    std::int64_t clockMs = 5000;
    std::vector<Delivery> deliveries;
};

TEST_F(InProcessEndpointTest, WithoutPacingRepliesAreDueAtOnce)
{
    auto endpoint = make();
    endpoint.write("/O\r");
    clockMs = 5100;
    target.queueWord(0x00, 0x1001);
    endpoint.write("/*T~00\r/R3\r");
    ASSERT_EQ(deliveries.size(), 2u);
    EXPECT_EQ(deliveries[0].bytes, "/OCC\r\n*");
    EXPECT_EQ(deliveries[0].dueMs, 5000);
    EXPECT_EQ(deliveries[1].bytes.substr(0, 17), "/MTC\r\n*/MRC~01~10");
    EXPECT_EQ(deliveries[1].dueMs, 5100);
    EXPECT_EQ(target.clockMs, 5100) << "the pack runs on the embedder's clock";
}

TEST_F(InProcessEndpointTest, WirePacingTakesTenBitsACharacterBothWays)
{
    InProcessEndpoint::Options options;
    options.wirePacing = true;
    auto endpoint = make(options);
    endpoint.write("/F1\r"); // 4 characters in, 1 out at 19200: 5 * 520.8 us
    ASSERT_EQ(deliveries.size(), 1u);
    EXPECT_EQ(deliveries[0].dueMs, 5003);
    // A second command handed over at once queues behind the first answer.
    endpoint.write("/O\r"); // waits for the line (5002.6 ms), answer of 7 characters (3.65 ms)
    EXPECT_EQ(deliveries[1].dueMs, 5007);
    // At 115200 the same exchange is six times faster.
    EXPECT_EQ(WirePacer::wireTimeUs(12, 115200), 1041);
    EXPECT_EQ(WirePacer::wireTimeUs(12, 19200), 6250);
}

TEST_F(InProcessEndpointTest, TickDeliversBroadcastsAndNextDueCoversThePull)
{
    InProcessEndpoint::Options options;
    options.dongle.faults.pullAfterMs = 60'000;
    auto endpoint = make(options);
    EXPECT_EQ(endpoint.nextDueMs(), 5100) << "looks for broadcasts every poll period";
    target.broadcasts.push_back({ 0x0B, 0x00, 0x40, 0x77 });
    clockMs = 5100;
    endpoint.tick();
    ASSERT_EQ(deliveries.size(), 1u);
    EXPECT_EQ(deliveries[0].bytes, "/SRC~0B~00~40~77\r\n*");
    clockMs = 64'990;
    endpoint.tick();
    EXPECT_EQ(endpoint.nextDueMs(), 65'000) << "the pull comes before the next poll";
    clockMs = 65'000;
    endpoint.tick();
    EXPECT_TRUE(endpoint.pulled());
    EXPECT_EQ(endpoint.nextDueMs(), std::nullopt);
    endpoint.write("/O\r");
    EXPECT_EQ(deliveries.size(), 1u);
}

TEST_F(InProcessEndpointTest, HostAtAnotherRateGetsNoAnswer)
{
    auto endpoint = make();
    endpoint.setLineBaud(115200);
    endpoint.write("/F1\r");
    EXPECT_TRUE(deliveries.empty());
    endpoint.setLineBaud(19200);
    endpoint.write("/B1\r");
    EXPECT_EQ(endpoint.dongleBaud(), 57600);
    endpoint.setLineBaud(57600);
    endpoint.write("/F1\r");
    ASSERT_EQ(deliveries.size(), 1u);
    EXPECT_EQ(deliveries[0].bytes, "*");
}

} // namespace
} // namespace zvsim
