#include "fake_dongle.h"
#include "link/cellweft_events.h"
#include "link/dongle_link.h"
#include "link/hlk_text.h"
#include "link/pec.h"
#include "link/smbus_transactions.h"

#include <gtest/gtest.h>

#include <array>

using namespace zv;

namespace {

struct RecordedError {
    int number;
    std::string text;
};

class RecordingEvents : public CellWeftEvents {
public:
    std::vector<RecordedError> errors;
    std::vector<int> txCounts;
    void SMBusError(int number, const std::string& text, const std::string&) override
    {
        errors.push_back({ number, text });
    }
    void TxRetryCounter(int count) override { txCounts.push_back(count); }
};

std::string readWordReply(std::uint8_t command, int value, std::uint8_t address = 0x16, int pecDelta = 0)
{
    const std::array<std::uint8_t, 5> covered { address, command, static_cast<std::uint8_t>(address + 1),
        static_cast<std::uint8_t>(value & 0xFF), static_cast<std::uint8_t>(value >> 8) };
    return "/MRC" + ByteToTildeHex(covered[3]) + ByteToTildeHex(covered[4])
        + ByteToTildeHex(static_cast<std::uint8_t>(pec(covered) + pecDelta)) + "\r\n*";
}

class DongleLinkTest : public ::testing::Test {
protected:
    platform::VirtualEventLoop loop;
    platform::MemorySerialPort port;
    test::FakeDongle dongle { port, loop };
    RecordingEvents events;
    std::vector<std::string> logged;
    std::vector<int> alarms;
    DongleLink link { DongleLinkServices { port, loop, events, nullptr,
        [this](const std::string& t) { logged.push_back(t); }, [this](int word) { alarms.push_back(word); },
        nullptr, nullptr } };
    SmbusTransactions bus { link, loop, events };

    void SetUp() override { ASSERT_EQ(link.SMBus_Init(), 0); }
};

} // namespace

TEST_F(DongleLinkTest, InitResetsAndConfiguresTheDongle)
{
    EXPECT_EQ(
        dongle.commands, (std::vector<std::string> { "/B2", "/F1", "/K2", "/I10", "/D16", "/G0", "/O" }));
    EXPECT_EQ(port.settingsHistory(),
        (std::vector<std::string> {
            "19200,n,8,1", "57600,n,8,1", "115200,n,8,1", "19200,n,8,1", "115200,n,8,1" }));
    EXPECT_EQ(link.SMBusStatus(), "SMBus Initialized");
    EXPECT_EQ(port.written().substr(0, 3), std::string(3, '\x12'));
}

// A missing or busy port gives the port's error number: the connection dialogs' tests show it.
TEST_F(DongleLinkTest, InitReportsASilentDongle)
{
    dongle.silent = true;
    EXPECT_EQ(link.SMBus_Init(), kDongleNotAnswering);
    EXPECT_EQ(link.SMBusStatus(), "SMBus Failed");
}

TEST_F(DongleLinkTest, SilentDongleTimesOutAfterAboutOneSecond)
{
    dongle.silent = true;
    const auto start = loop.milliseconds();
    std::string response;
    EXPECT_FALSE(link.i2c_send_receive("/F1\r", "*", response));
    EXPECT_NEAR(loop.milliseconds() - start, 1000, 10);
    ASSERT_EQ(events.errors.size(), 1u);
    EXPECT_EQ(events.errors[0].number, kErrTimeout);
    EXPECT_EQ(events.errors[0].text, "Timeout waiting for response");
}

TEST_F(DongleLinkTest, UnsolicitedAlarmInPlaceOfTheAnswerIsDiscarded)
{
    dongle.scriptedReplies = { "/SRC~0B~01~00~00\r\n*" };
    loop.post(800, [this] { dongle.send("/MTC\r\n*"); });
    std::string response;
    EXPECT_TRUE(link.i2c_send_receive("/T~09\r", "/MTC", response));
    EXPECT_TRUE(events.errors.empty());
    EXPECT_EQ(response, "/MTC\r\n*");
}

TEST_F(DongleLinkTest, StuckBusFailsWithoutAnError)
{
    std::string stuck;
    for (int i = 0; i < 30; ++i)
        stuck += "~FF";
    dongle.scriptedReplies = { "/MRC" + stuck + "*" };
    std::string response;
    EXPECT_FALSE(link.i2c_send_receive("/R3\r", "/MRC", response));
    EXPECT_TRUE(events.errors.empty());
}

TEST_F(DongleLinkTest, NoAcknowledgeCountsAndRaises10018)
{
    dongle.scriptedReplies = { "/SNA\r\n*" };
    std::string response;
    EXPECT_FALSE(link.i2c_send_receive("/T~09\r", "/MTC", response));
    EXPECT_EQ(link.SNACount, 1);
    ASSERT_EQ(events.errors.size(), 1u);
    EXPECT_EQ(events.errors[0].number, kErrUnexpectedReply);
    EXPECT_EQ(events.errors[0].text, "Error in i2c_send_receive. Response = /SNA\r\n*. Expected = /MTC");
}

TEST_F(DongleLinkTest, PulledDongleFailsCleanlyAndRecovers)
{
    dongle.silent = true;
    loop.post(100, [this] { port.pull(); });
    std::string response;
    EXPECT_FALSE(link.i2c_send_receive("/F1\r", "*", response));
    EXPECT_LT(loop.milliseconds(), 1000) << "a closed port ends the wait at once";
    EXPECT_FALSE(port.portOpen());
    EXPECT_FALSE(link.i2c_send_receive("/F1\r", "*", response));
    EXPECT_EQ(events.errors.back().number, kErrNotOpened);
    EXPECT_EQ(link.SMBus_Init(), platform::kPortErrorNoSuchPort);
    port.plugIn();
    dongle.silent = false;
    EXPECT_EQ(link.SMBus_Init(), 0);
}

TEST_F(DongleLinkTest, ATransactionGivesBackTheReceiveThresholdItFound)
{
    for (const int threshold : { 0, 1, 5 }) {
        port.setRThreshold(threshold);
        std::string response;
        EXPECT_TRUE(link.i2c_send_receive("/F1\r", "*", response));
        EXPECT_EQ(port.rThreshold(), threshold);
    }
}

TEST_F(DongleLinkTest, AnUnpluggedDongleIsLoggedAsSuchNotAsABreak)
{
    port.pull();
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_EQ(logged[0], "The serial port closed: the dongle was removed or failed (No such device)");
}

TEST_F(DongleLinkTest, UnsolicitedLinesReachTheAlarmPathOnlyWithAGoodPec)
{
    const std::array<std::uint8_t, 4> covered { 0x10, 0x0B, 0x34, 0x12 };
    dongle.send("/SRC~0B~34~12" + ByteToTildeHex(pec(covered)) + "\r\n");
    EXPECT_EQ(alarms, std::vector<int> { 0x1234 });
    EXPECT_EQ(link.BroadcastCount, 1);
    dongle.send("/SRC~0B~34~12" + ByteToTildeHex(static_cast<std::uint8_t>(pec(covered) + 1)) + "\r\n");
    EXPECT_EQ(alarms.size(), 1u);
    EXPECT_EQ(
        logged.back().rfind("Received an unsolicited message with a PEC error. Msg = /SRC0B3412", 0), 0u);
    dongle.send("/STR\r\n");
    EXPECT_EQ(logged.back(), "Unexpected Slave Transmit Request");
}

TEST_F(DongleLinkTest, WriteWordCarriesPecAndRetriesThenRebuildsTheLink)
{
    EXPECT_TRUE(bus.SMBus_WriteWord(0x09, 0x1234));
    const std::array<std::uint8_t, 4> covered { 0x16, 0x09, 0x34, 0x12 };
    EXPECT_EQ(dongle.commands.back(), "/T~09~34~12" + ByteToTildeHex(pec(covered)));

    const int opens = port.openCount();
    dongle.scriptedReplies.assign(11, "/SNA\r\n*");
    const auto start = loop.milliseconds();
    EXPECT_FALSE(bus.SMBus_WriteWord(0x09, 0x1234));
    EXPECT_GE(loop.milliseconds() - start, 11 * SmbusTransactions::kRetryPauseMs);
    EXPECT_EQ(events.txCounts.back(), 11);
    ASSERT_EQ(events.errors.back().number, 10008);
    EXPECT_EQ(port.openCount(), opens + 1) << "the link is rebuilt once";
}

TEST_F(DongleLinkTest, ReadWordRetriesPecFailuresWithoutRebuilding)
{
    dongle.scriptedReplies
        = { "/MTC\r\n*", readWordReply(0x09, 0x1234, 0x16, 1), "/MTC\r\n*", readWordReply(0x09, 0x1234) };
    EXPECT_EQ(bus.SMBus_ReadWord(0x09), 0x1234);
    EXPECT_TRUE(events.errors.empty()) << "a PEC failure that passes later raises nothing";

    const int opens = port.openCount();
    for (int i = 0; i < 11; ++i) {
        dongle.scriptedReplies.push_back("/MTC\r\n*");
        dongle.scriptedReplies.push_back(readWordReply(0x09, 0x1234, 0x16, 1));
    }
    EXPECT_FALSE(bus.SMBus_ReadWord(0x09));
    ASSERT_EQ(events.errors.size(), 1u);
    EXPECT_EQ(events.errors[0].number, 65011);
    EXPECT_EQ(port.openCount(), opens) << "no rebuild for a PEC failure";
}

TEST_F(DongleLinkTest, TargetQueriesAndBlocks)
{
    dongle.scriptedReplies = { "/MTC\r\n*", "/MTC\r\n*", readWordReply(0x00, 0x1003) };
    EXPECT_EQ(bus.GetTargetID(), 0x1003);
    EXPECT_EQ(dongle.commands.back(), "/R3");

    dongle.scriptedReplies = { "/MTC\r\n*", "/MRC~03~01~02~03\r\n*" };
    EXPECT_EQ(bus.SMBus_ReadBlock(0x80), (std::vector<std::uint8_t> { 1, 2, 3 }));
    dongle.scriptedReplies = { "/MTC\r\n*", "/MRC~00\r\n*" };
    EXPECT_FALSE(bus.SMBus_ReadBlock(0x80));
    EXPECT_EQ(events.errors.back().number, 10016);

    dongle.silent = true;
    EXPECT_EQ(bus.GetTargetID(), -1000);
}
