// The file protocol from the device's side: the status sequence of a request, busy periods, the
// directory, refusals by level and by size, the extra byte, and the restart fault (the driver's
// tests exercise the busy, forced-status and no-acknowledge switches).

#include "sim_device/host.h"

#include <gtest/gtest.h>

using simtest::OpenPack;

namespace {

TEST(FileProtocol, RequestIsBusyThenGoodThenDataFollow)
{
    OpenPack p;
    ASSERT_TRUE(p.host.request(0, 1, 0, 20));
    EXPECT_EQ(p.host.status()[0], 255) << "busy right after the request";
    EXPECT_EQ(p.host.status()[0], 255) << "still busy while no time passed";
    p.host.advance(5);
    EXPECT_EQ(p.host.status()[0], 0);
    auto data = p.host.readBlock(0x3F).value();
    EXPECT_EQ(data.size(), 40u);
    EXPECT_EQ(data[16] | (data[17] << 8), static_cast<int>(p.pack.model().files.get("Pack Voltage")));
    EXPECT_EQ(p.host.readBlock(0x3F).value(), data) << "a repeated data read gives the same bytes";
}

TEST(FileProtocol, DirectoryRecordsDescribeTheFiles)
{
    OpenPack p;
    auto first = p.host.readFile(0, 0, 1);
    ASSERT_EQ(first.status, 0);
    ASSERT_EQ(first.data.size(), 32u);
    EXPECT_EQ(std::string(first.data.begin(), first.data.begin() + 9), "Directory");
    int size = first.data[15] | (first.data[16] << 8);
    int chunk = first.data[17] | (first.data[18] << 8);
    EXPECT_EQ(size / chunk, 41) << "files 0 to 39 and the entry named Error";
    auto error = p.host.readFile(0, 40, 1);
    EXPECT_EQ(std::string(error.data.begin(), error.data.begin() + 5), "Error");

    auto identity = p.host.readFile(0, 8, 1).data;
    int type = identity[13] | (identity[14] << 8);
    EXPECT_EQ((type >> 4) & 0xF, 5) << "block format";
    EXPECT_TRUE(type & 0x100) << "clone";
    EXPECT_TRUE(type & 0x400) << "commit";
    EXPECT_LT(identity[23] | (identity[24] << 8), identity[15] | (identity[16] << 8))
        << "FileMaxBytes below the size: read in parts";
}

TEST(FileProtocol, RefusalsTellWhatIsWrong)
{
    OpenPack p;
    EXPECT_EQ(p.host.readFile(41, 0, 1).status, 4) << "no such file";
    EXPECT_EQ(p.host.readFile(40, 0, 1).status, 4) << "the Error entry is no file";
    EXPECT_EQ(p.host.readFile(33, 0, 182).status, 6) << "more than FileMaxBytes";
    EXPECT_EQ(p.host.readFile(33, 128, 64).status, 9) << "past the end";
    EXPECT_EQ(p.host.readFile(33, 128, 54).status, 0) << "the last part";
    EXPECT_EQ(p.host.writeFile(1, 0, 1, { 0, 0 }), -1);
    EXPECT_EQ(p.host.lastRequestStatus, 15) << "read-only";
    EXPECT_TRUE(p.host.request(2, 1, 0, 1));
    p.host.advance(5);
    EXPECT_EQ(p.host.settle(), 5) << "an access that is neither read nor write";
}

TEST(FileProtocol, LevelsRefuseWithTheLevelNeeded)
{
    OpenPack p({ .level = 0 });
    EXPECT_EQ(p.host.readFile(5, 0, 22).status, 0) << "state is readable sealed";
    EXPECT_EQ(p.host.readFile(6, 0, 4).status, 1);
    EXPECT_EQ(p.host.readFile(24, 0, 32).status, 2);
    EXPECT_EQ(p.host.readFile(2, 0, 1).status, 3);
    EXPECT_EQ(p.host.writeFile(9, 0, 1, { 0x47, 0 }), -1);
    EXPECT_EQ(p.host.lastRequestStatus, 2);
    OpenPack open({ .level = 2 });
    EXPECT_EQ(open.host.readFile(24, 0, 32).status, 0);
    EXPECT_EQ(open.host.readFile(34, 0, 1).status, 3);
}

TEST(FileProtocol, ExtraByteAsksForAPauseOnSlowWrites)
{
    OpenPack p;
    ASSERT_TRUE(p.host.request(1, 27, 0, 2));
    p.host.advance(5);
    EXPECT_EQ(p.host.status(), (std::array<std::uint8_t, 2> { 0, 1 })) << "command file";
    ASSERT_TRUE(p.host.request(1, 9, 0, 1));
    p.host.advance(5);
    EXPECT_EQ(p.host.status(), (std::array<std::uint8_t, 2> { 0, 0 })) << "a RAM write";
}

TEST(FileProtocol, WriteThenReadBackAndAStatusThatStaysForTheNextRequest)
{
    OpenPack p;
    EXPECT_EQ(p.host.writeFile(13, 2, 1, { 0x10, 0x27 }), 0);
    EXPECT_EQ(p.pack.model().files.get("Charging Current"), 10000u);
    EXPECT_EQ(p.host.writeFile(13, 0, 2, { 1, 2 }), 5) << "fewer bytes than the request named";
    EXPECT_EQ(p.host.status()[0], 5) << "the status stays until the next request";
}

TEST(DeviceFaults, RestartDuringATransferSilencesThePackForAWhile)
{
    OpenPack p;
    p.pack.faults().restartRate = 1.0;
    EXPECT_TRUE(p.host.request(0, 1, 0, 20)) << "the request itself is taken";
    EXPECT_TRUE(p.pack.silent());
    EXPECT_FALSE(p.host.readWord(0x3D));
    p.host.advance(zvsim::Pack::FaultRestartSilentMs);
    EXPECT_FALSE(p.pack.silent());
    EXPECT_FALSE(p.pack.commandSetOpen()) << "a restarted pack starts closed";
    p.pack.faults().restartRate = 0.0;
    p.host.open();
    EXPECT_EQ(p.host.readFile(1, 0, 20).status, 0);
}

} // namespace
