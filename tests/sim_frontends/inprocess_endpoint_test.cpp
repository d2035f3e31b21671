// The in-process endpoint on a virtual clock: replies come back with the time they are due. Unpaced
// replies and the line rate run in every driver test through the harness.

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

} // namespace
} // namespace zvsim
