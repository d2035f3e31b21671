// Firmware download in block mode against the simulated pack in its loader.

#include "support/firmware_request.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

zvsim::PackOptions inLoader()
{
    zvsim::PackOptions options;
    options.targetId = 0x1002;
    options.state = zvsim::PackState::AppLoader;
    return options;
}

class BlockModeTest : public ::testing::Test {
protected:
    BlockModeTest()
        : sim(inLoader())
    {
        auto& hooks = sim.main().hooks;
        hooks.firmwareDownloadStatus
            = [this](int percent, const std::string& text) { statuses.emplace_back(percent, text); };
        hooks.firmwareDownloadComplete = [this](bool success) { completions.push_back(success); };
    }

    FileReply download(std::optional<std::size_t> damage = std::nullopt)
    {
        EXPECT_TRUE(sim.openLink());
        return sim.driver().FileAccessRequest(test::firmwareRequest(sim.driver(), damage));
    }

    test::SimHarness sim;
    std::vector<std::pair<int, std::string>> statuses;
    std::vector<bool> completions;
};

} // namespace

TEST_F(BlockModeTest, AGoodImageEndsInStatus8ThenTheResetWait)
{
    const auto start = sim.loop.milliseconds();
    const auto reply = download();
    EXPECT_TRUE(reply.ok);
    EXPECT_EQ(reply.status, 8);
    EXPECT_EQ(completions, std::vector<bool> { true });
    ASSERT_EQ(statuses.size(), 6u + 16u) << "six blocks, then sixteen rounds of the reset wait";
    EXPECT_EQ(statuses[0], std::make_pair(0, std::string("Downloading block 1 of 6")));
    EXPECT_EQ(statuses[5], std::make_pair(100, std::string("Downloading block 6 of 6")));
    EXPECT_EQ(statuses.back(),
        std::make_pair(100, std::string("Please wait while the hardware resets. 100% Complete")));
    EXPECT_GE(sim.loop.milliseconds() - start, 16000);
}

TEST_F(BlockModeTest, ABadImageEndsInTheCrcError)
{
    const auto reply = download(40);
    EXPECT_TRUE(reply.ok) << "every block went out";
    EXPECT_EQ(reply.status, 7);
    EXPECT_EQ(completions, std::vector<bool> { false });
    const auto crc = std::find(statuses.begin(), statuses.end(), std::make_pair(0, std::string("CRC error")));
    EXPECT_NE(crc, statuses.end());
}
