// The link under the simulator's fault switches: it recovers, and nothing hangs.

#include "support/sim_harness.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

struct FaultCase {
    const char* name;
    zvsim::LinkFaults faults;
};

class LinkFaultsTest : public ::testing::TestWithParam<FaultCase> { };

zvsim::InProcessEndpoint::Options withFaults(const zvsim::LinkFaults& faults)
{
    zvsim::InProcessEndpoint::Options options;
    options.dongle.faults = faults;
    options.dongle.seed = 7;
    return options;
}

} // namespace

TEST_P(LinkFaultsTest, ReadsGoOnThroughTheFaults)
{
    test::SimHarness sim({}, withFaults({}));
    auto& d = sim.driver();
    ASSERT_TRUE(sim.openLink() && d.GetDir());
    std::string text;
    sim.port.clearWritten();
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(d.GetFile(5, text) && d.GetScaling());
    const auto cleanTraffic = sim.port.written().size();

    // Faults from now on; the link must come through them. File reads carry no PEC check, word
    // reads (the scaling) do.
    sim.replaceEndpoint(withFaults(GetParam().faults));
    sim.endpoint->setLineBaud(115200);
    ASSERT_EQ(d.SMBus_Init(), 0) << "the new dongle is configured like the old one";

    const auto start = sim.loop.milliseconds();
    sim.port.clearWritten();
    int good = 0;
    for (int i = 0; i < 20; ++i)
        good += d.GetFile(5, text) && d.GetScaling() ? 1 : 0;
    EXPECT_GE(good, 15) << GetParam().name;
    if (std::string_view(GetParam().name) == "alarm") {
        // A broadcast in the middle of an answer is taken out of it: no retry at all.
        EXPECT_EQ(good, 20);
        EXPECT_EQ(sim.port.written().size(), cleanTraffic);
    } else {
        EXPECT_GT(sim.port.written().size(), cleanTraffic) << "the faults cost retries";
    }
    EXPECT_LT(sim.loop.milliseconds() - start, 20 * 60000) << "no read hangs";
}

INSTANTIATE_TEST_SUITE_P(Faults, LinkFaultsTest,
    ::testing::Values(FaultCase { "pec", { 0.2 } }, FaultCase { "lost", { 0, 0.05 } },
        FaultCase { "cut", { 0, 0, 0.05 } }, FaultCase { "stuck", { 0, 0, 0, 0.05 } },
        FaultCase { "alarm", { 0, 0, 0, 0, 0.2 } }),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LinkPull, APulledPackFailsTheReadsCleanly)
{
    zvsim::LinkFaults faults;
    faults.pullAfterMs = 5000;
    test::SimHarness sim({}, withFaults(faults));
    auto& d = sim.driver();
    ASSERT_TRUE(sim.openLink() && d.GetDir());
    sim.loop.advance(6000);
    EXPECT_FALSE(sim.port.portOpen()) << "the pulled dongle closes the port";
    std::string text;
    EXPECT_FALSE(d.GetFile(5, text));
    EXPECT_NE(d.SMBus_Init(), 0);
}

// A stuck bus reads as all ones with a PEC that does not match: no such value may be taken.
TEST(LinkStuck, AllOnesFromAStuckBusAreNeverTakenForData)
{
    zvsim::LinkFaults faults;
    faults.stuckRate = 0.2;
    test::SimHarness sim({}, withFaults({}));
    auto& d = sim.driver();
    ASSERT_TRUE(sim.openLink() && d.GetDir());
    const auto expected = sim.pack->model().files.bytes(9);
    sim.replaceEndpoint(withFaults(faults));
    sim.endpoint->setLineBaud(115200);
    ASSERT_EQ(d.SMBus_Init(), 0);
    int read = 0;
    for (int i = 0; i < 20; ++i) {
        std::string text;
        if (d.GetFile(9, text)) {
            ++read;
            EXPECT_EQ(hexToBytes(text), expected) << "read " << i;
        }
        if (const auto word = d.Bus.SMBus_ReadWord(0x09)) {
            EXPECT_NE(*word, 0xFFFF) << "a voltage word of all ones came through";
        }
    }
    EXPECT_GE(read, 15);

    faults.stuckRate = 1.0;
    sim.replaceEndpoint(withFaults(faults));
    const auto start = sim.loop.milliseconds();
    EXPECT_FALSE(d.Bus.SMBus_ReadWord(0x09));
    std::string text;
    EXPECT_FALSE(d.GetFile(9, text));
    EXPECT_LT(sim.loop.milliseconds() - start, 60000) << "a bus that stays stuck fails in bounded time";
}
