// The dongle engine from the host's side: its wire table, the prompts, the baud model, broadcasts
// and the link faults. Joined reads of words and blocks run in every driver test.

#include "fake_target.h"
#include "frontends/hex_bytes.h"
#include "frontends/hlk_dongle.h"

#include <gtest/gtest.h>

namespace zvsim {
namespace {

using testing::FakeTarget;

class HlkDongleTest : public ::testing::Test {
protected:
    explicit HlkDongleTest(HlkOptions options = {})
        : dongle(target, options)
    {
    }

    std::string send(std::string_view bytes, std::int64_t nowMs = 0) { return dongle.receive(bytes, nowMs); }
    void open() { ASSERT_EQ(send("/O\r"), "/OCC\r\n*"); }

    FakeTarget target;
    HlkDongle dongle;
};

TEST_F(HlkDongleTest, ConfigurationCommandsAnswerWithThePrompt)
{
    EXPECT_EQ(send("/F1\r"), "*");
    EXPECT_EQ(send("/K2\r"), "*");
    EXPECT_EQ(send("/I10\r"), "*");
    EXPECT_EQ(send("/D16\r"), "*");
    EXPECT_EQ(send("/G0\r"), "*");
    EXPECT_EQ(send("/O\r"), "/OCC\r\n*");
    EXPECT_EQ(send("/X\r"), "?\r\n*");
    EXPECT_EQ(send("/D1\r"), "?\r\n*");
    // Joined commands answer one after the other; empty lines and line feeds are ignored.
    EXPECT_EQ(send("/F1\r\r/G0\r\n"), "**");
    EXPECT_TRUE(target.writes.empty());
}

TEST_F(HlkDongleTest, WriteWordPassesTheHostsBytesAndPecUnchanged)
{
    open();
    EXPECT_EQ(send("/T~09~34~12~A4\r\r"), "/MTC\r\n*");
    ASSERT_EQ(target.writes.size(), 1u);
    EXPECT_EQ(target.writes[0], (std::vector<std::uint8_t> { 0x09, 0x34, 0x12, 0xA4 }));
    EXPECT_FALSE(target.lastWriteHasGoodPec());
    const std::uint8_t good = smbusPec({ 0x16, 0x09, 0x34, 0x12 });
    EXPECT_EQ(send("/t~09~34~12~" + hexByte(good) + "\r"), "/MTC\r\n*"); // lower case from a terminal
    EXPECT_TRUE(target.lastWriteHasGoodPec());
}

TEST_F(HlkDongleTest, NoAcknowledgeGivesSna)
{
    EXPECT_EQ(send("/T~00~30~00~EA\r"), "/SNA\r\n*") << "before /O";
    open();
    EXPECT_EQ(send("/D18\r"), "*");
    EXPECT_EQ(send("/T~00~30~00~EA\r"), "/SNA\r\n*") << "another address";
    EXPECT_EQ(send("/D16\r"), "*");
    target.acknowledge = false;
    EXPECT_EQ(send("/T~00~30~00~EA\r"), "/SNA\r\n*");
    EXPECT_EQ(send("/*T~00\r/R3\r"), "/SNA\r\n*/SNA\r\n*");
    EXPECT_EQ(send("/T~0\r"), "?\r\n*");
}

TEST_F(HlkDongleTest, BaudRateFollowsResetAndSelection)
{
    open();
    EXPECT_EQ(send("/B2\r"), "") << "no answer: the host changes its own rate";
    EXPECT_EQ(dongle.baud(), 115200);
    EXPECT_EQ(send("/F1\r"), "") << "the host still at 19200 sends garbage";
    dongle.setLineBaud(115200);
    EXPECT_EQ(send("/F1\r"), "*");
    // The reset bytes at the matching rate bring it back to 19200, closed.
    EXPECT_EQ(send("\x12\x12\x12"), "");
    EXPECT_EQ(dongle.baud(), 19200);
    dongle.setLineBaud(19200);
    EXPECT_EQ(send("/T~00~30~00~EA\r"), "/SNA\r\n*");
    // A broadcast at a rate the host does not use arrives as garbage without a prompt.
    target.broadcasts.push_back({ 0x0B, 0x00, 0x10, 0x00 });
    dongle.setLineBaud(57600);
    const std::string garbage = dongle.poll(0);
    EXPECT_EQ(garbage.size(), std::string("/SRC~0B~00~10~00\r\n*").size());
    EXPECT_EQ(garbage.find_first_of("*/\r\n"), std::string::npos);
}

TEST_F(HlkDongleTest, PacksBroadcastsBecomeSrcLinesOnPoll)
{
    target.broadcasts.push_back({ 0x0B, 0x00, 0x10, 0x91 });
    target.broadcasts.push_back({ 0x0B, 0x01, 0x00, 0x22 });
    EXPECT_EQ(dongle.poll(2500), "/SRC~0B~00~10~91\r\n*/SRC~0B~01~00~22\r\n*");
    EXPECT_EQ(target.clockMs, 2500);
    EXPECT_EQ(dongle.poll(2600), "");
}

TEST_F(HlkDongleTest, TraceShowsEveryLineInAndOut)
{
    std::vector<std::string> lines;
    dongle.setTrace([&](TraceDirection direction, std::string_view text) {
        lines.push_back((direction == TraceDirection::In ? "< " : "> ") + std::string(text));
    });
    (void)send("/F1\r/O\r");
    EXPECT_EQ(lines, (std::vector<std::string> { "< /F1", "> *", "< /O", "> /OCC\r\n*" }));
}

HlkOptions withFaults(LinkFaults faults, std::int64_t startMs = 0)
{
    HlkOptions options;
    options.faults = faults;
    options.startMs = startMs;
    return options;
}

class HlkFaultTest : public ::testing::Test {
protected:
    std::string readWord(HlkDongle& dongle)
    {
        target.queueWord(0x09, 0x1234);
        return dongle.receive("/*T~09\r/R3\r", 0);
    }
    HlkDongle openDongle(LinkFaults faults, std::int64_t startMs = 0)
    {
        HlkDongle dongle(target, withFaults(faults, startMs));
        EXPECT_EQ(dongle.receive("/F1\r/O\r", startMs), "*/OCC\r\n*") << "settings never fail";
        return dongle;
    }
    FakeTarget target;
};

TEST_F(HlkFaultTest, LostCutAndStuckReplies)
{
    auto lost = openDongle({ .lostRate = 1.0 });
    EXPECT_EQ(readWord(lost), "");
    EXPECT_EQ(target.commands.size(), 1u) << "the pack saw the transaction";

    auto cut = openDongle({ .cutRate = 1.0 });
    const std::string cutReply = readWord(cut);
    EXPECT_EQ(cutReply.find('*'), std::string::npos);
    EXPECT_FALSE(cutReply.empty());

    const auto before = target.commands.size();
    auto stuck = openDongle({ .stuckRate = 1.0 });
    EXPECT_EQ(stuck.receive("/*T~09\r", 0), "/SNA\r\n*") << "the acknowledge bit reads high";
    EXPECT_EQ(stuck.receive("/R3\r", 0), "/MRC~FF~FF~FF\r\n*") << "all ones, the PEC too";
    const std::string block = stuck.receive("/R~00\r", 0);
    EXPECT_EQ(block.size(), std::string("/MRC").size() + 257 * 3 + 3) << "count 0xFF, 255 bytes, PEC";
    EXPECT_EQ(target.commands.size(), before) << "a stuck bus reaches no pack";
}

TEST_F(HlkFaultTest, PecFaultCorruptsOnlyThePecOfReads)
{
    auto dongle = openDongle({ .pecRate = 1.0 });
    const std::uint8_t goodPec = smbusPec({ 0x16, 0x09, 0x17, 0x34, 0x12 });
    const std::string reply = readWord(dongle);
    ASSERT_EQ(reply.substr(0, 17), "/MTC\r\n*/MRC~34~12");
    EXPECT_NE(reply.substr(18, 2), hexByte(goodPec));
    EXPECT_EQ(dongle.receive("/T~09~34~12~00\r", 0), "/MTC\r\n*");
}

TEST_F(HlkFaultTest, AlarmFaultPutsABroadcastWithGoodPecBeforeTheData)
{
    auto dongle = openDongle({ .alarmRate = 1.0 });
    const std::uint8_t pec = smbusPec({ 0x10, 0x0B, 0x00, 0x10 });
    const std::string reply = readWord(dongle);
    EXPECT_EQ(reply.substr(0, 30), "/MTC\r\n*/SRC~0B~00~10~" + hexByte(pec) + "\r\n*/MRC");
}

TEST_F(HlkFaultTest, PullingThePackSilencesTheDongleForGood)
{
    auto dongle = openDongle({ .pullAfterMs = 120'000 }, 1000);
    EXPECT_EQ(dongle.nextDueMs(), 121'000);
    EXPECT_EQ(dongle.receive("/F1\r", 120'999), "*");
    EXPECT_FALSE(dongle.pulled());
    EXPECT_EQ(dongle.receive("/F1\r", 121'000), "");
    EXPECT_TRUE(dongle.pulled());
    EXPECT_EQ(dongle.nextDueMs(), std::nullopt);
    target.broadcasts.push_back({ 0x0B, 0, 0, 0 });
    EXPECT_EQ(dongle.poll(130'000), "");
}

TEST_F(HlkFaultTest, TheSeedRepeatsTheFaults)
{
    auto pattern = [&](std::uint64_t seed) {
        HlkOptions options = withFaults({ .lostRate = 0.3 });
        options.seed = seed;
        HlkDongle dongle(target, options);
        (void)dongle.receive("/O\r", 0);
        std::string lostOnes;
        for (int i = 0; i < 1000; ++i)
            lostOnes += dongle.receive("/T~00~00~00~00\r", 0).empty() ? '1' : '0';
        return lostOnes;
    };
    const std::string first = pattern(7);
    EXPECT_EQ(first, pattern(7));
    EXPECT_NE(first, pattern(8));
    EXPECT_NE(first.find('0'), std::string::npos) << "a share, not every reply";
}

} // namespace
} // namespace zvsim
