#include "link/hlk_reply.h"
#include "link/hlk_text.h"
#include "link/pec.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

using namespace zv;

TEST(Pec, KnownAnswers)
{
    const std::array<std::uint8_t, 4> lock { 0x16, 0x00, 0x30, 0x00 };
    EXPECT_EQ(pec(lock), 0xEA);
    EXPECT_EQ(pec({}), 0x00);
    // CRC-8/SMBUS check value over "123456789".
    const std::string check = "123456789";
    EXPECT_EQ(pec(std::span(reinterpret_cast<const std::uint8_t*>(check.data()), check.size())), 0xF4);
}

TEST(HlkText, BytesAndBaudRates)
{
    EXPECT_EQ(ByteToTildeHex(0x0B), "~0B");
    EXPECT_EQ(GetBaudRate(0), "19200");
    EXPECT_EQ(GetBaudRate(2), "115200");
    EXPECT_EQ(GetBaudRate(3), "");
}

TEST(HlkText, TransactionStrings)
{
    const std::array<std::uint8_t, 4> covered { 0x16, 0x09, 0x34, 0x12 };
    EXPECT_EQ(hlk::writeWord(0x16, 0x09, 0x1234), "/T~09~34~12" + ByteToTildeHex(pec(covered)) + "\r");
    EXPECT_EQ(hlk::writeWord(0x16, 0x00, 0x0030), "/T~00~30~00~EA\r");

    const std::array<std::uint8_t, 3> data { 0x01, 0x02, 0x03 };
    const std::array<std::uint8_t, 6> blockCovered { 0x16, 0x3C, 0x03, 0x01, 0x02, 0x03 };
    EXPECT_EQ(
        hlk::writeBlock(0x16, 0x3C, data), "/T~3C~03~01~02~03" + ByteToTildeHex(pec(blockCovered)) + "\r");
    EXPECT_EQ(hlk::writeRaw(data), "/T~01~02~03\r");
    EXPECT_EQ(hlk::readCommand(0x3D), "/*T~3D\r");
}

TEST(HlkText, ParsesReplies)
{
    const auto word = hlk::parseWordReply("/MTC*/MRC~34~12~5A\r\n*");
    ASSERT_TRUE(word);
    EXPECT_EQ(word->low, 0x34);
    EXPECT_EQ(word->high, 0x12);
    EXPECT_EQ(word->pec, 0x5A);
    EXPECT_FALSE(hlk::parseWordReply("/MRC~34~1"));
    EXPECT_FALSE(hlk::parseWordReply("/MRC~3G~12~5A"));

    const auto block = hlk::parseBlockReply("/MRC~03~AA~BB~CC*");
    ASSERT_TRUE(block);
    EXPECT_EQ(*block, (std::vector<std::uint8_t> { 0xAA, 0xBB, 0xCC }));
    EXPECT_FALSE(hlk::parseBlockReply("/MRC~04~AA~BB~CC*")) << "too short for its length";
    EXPECT_FALSE(hlk::parseBlockReply("/MRC~00*")) << "an empty block cannot be taken";
}

TEST(HlkReply, SingleSegment)
{
    using hlk::Verdict;
    EXPECT_EQ(hlk::judgeReply("junk/MTC\r\n*", "/MTC", 1).verdict, Verdict::Accepted)
        << "only the presence of the expected text counts";
    EXPECT_EQ(hlk::judgeReply("/SRC~0B~01~00~77\r\n", "/MTC", 1).verdict, Verdict::Unsolicited);
    const auto sna = hlk::judgeReply("/SNA\r\n*", "/MTC", 1);
    EXPECT_EQ(sna.verdict, Verdict::Failed);
    EXPECT_EQ(sna.snaCount, 1);

    std::string stuck;
    for (int i = 0; i < 30; ++i)
        stuck += "~FF";
    EXPECT_EQ(hlk::judgeReply("/MRC" + stuck + "*", "/MRC", 1).verdict, Verdict::StuckBus)
        << "a stuck bus fails even when the expected text is there";
    EXPECT_EQ(hlk::judgeReply(stuck.substr(3) + "*", "/MRC", 1).verdict, Verdict::Failed)
        << "29 pairs are not a stuck bus";
}

TEST(HlkReply, JoinedSegments)
{
    using hlk::Verdict;
    EXPECT_EQ(hlk::judgeReply("/MTC*/MRC~00~00~00*", "", 2).verdict, Verdict::Accepted);
    const auto second = hlk::judgeReply("/MTC*/SNA*", "", 2);
    EXPECT_EQ(second.verdict, Verdict::Failed);
    EXPECT_EQ(second.snaCount, 1);
    EXPECT_EQ(hlk::judgeReply("/MTC*/MTC*/MRC~01~02~03*", "", 3).verdict, Verdict::Accepted);
    EXPECT_EQ(hlk::judgeReply("/MTC*/MRC*/MRC*", "", 3).verdict, Verdict::Failed);
    EXPECT_EQ(hlk::judgeReply("/SNA*/SNA*/SNA*", "", 3).snaCount, 3);
}

TEST(HlkUnsolicited, CollectsLinesAndParsesAlarms)
{
    hlk::LineCollector lines;
    std::optional<std::string> line;
    for (char c : std::string("/SR\n"))
        line = lines.feed(c);
    EXPECT_FALSE(line) << "an LF with fewer than four characters keeps the buffer";
    EXPECT_EQ(lines.pending(), "/SR");
    for (char c : std::string("C~0B~34~12~00\r\n"))
        line = lines.feed(c);
    ASSERT_TRUE(line);
    EXPECT_EQ(*line, "/SRC0B341200");
    EXPECT_TRUE(lines.pending().empty());

    auto message = hlk::parseSrcLine(*line);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->sender, 0x0B);
    EXPECT_EQ(message->word(), 0x1234);
    const std::array<std::uint8_t, 4> covered { 0x10, 0x0B, 0x34, 0x12 };
    EXPECT_EQ(message->computedPec(), pec(covered));
    EXPECT_FALSE(hlk::parseSrcLine("/SRC0B34"));
}
