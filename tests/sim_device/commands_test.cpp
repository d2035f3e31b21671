// The command file: commit into the state file across runs, the state bits, and the calibration
// steps acting on files 24 and 31 and on the readings. Commit and initialize as the application
// uses them are covered by its command tests.

#include "sim_device/host.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

using simtest::Host;

namespace {

zvsim::PackOptions options(std::uint16_t id = 0x1001)
{
    zvsim::PackOptions o;
    o.targetId = id;
    return o;
}

void setWord(Host& host, int file, int element, std::uint16_t value)
{
    ASSERT_EQ(host.writeFile(file, element, 1,
                  { static_cast<std::uint8_t>(value & 0xFF), static_cast<std::uint8_t>(value >> 8) }),
        0);
}

// Target 1001 with the extended command set open.
class CommandFile : public ::testing::Test, public simtest::OpenPack {
protected:
    const zvsim::FileStore& files() const { return pack.model().files; }
};

TEST(StateFile, CarriesFlashIntoTheNextRun)
{
    auto path
        = std::filesystem::temp_directory_path() / ("zvsim-state-" + std::to_string(::getpid()) + ".txt");
    std::filesystem::remove(path);
    zvsim::PackOptions o = options();
    o.stateFile = path.string();
    {
        zvsim::Pack pack(o);
        Host host(pack);
        host.open();
        setWord(host, 10, 0, 4100); // Cell Over Voltage Limit
        ASSERT_EQ(host.command(0x03, 0), 0);
        setWord(host, 10, 2, 2700); // not committed
    }
    zvsim::Pack next(o);
    EXPECT_EQ(next.model().files.get("Cell Over Voltage Limit"), 4100u);
    EXPECT_EQ(next.model().files.get("Cell Under Voltage Limit"), 2800u);
    std::filesystem::remove(path);
}

TEST_F(CommandFile, StateBitsDataFlowShipModeAndSafeDisconnect)
{
    ASSERT_EQ(host.command(0x0E, 1), 0);
    EXPECT_TRUE(files().get("Internal Flags 2") & 0x0004);
    std::uint32_t polls = files().get("Number of CellWeft Polls");
    host.advance(10'000);
    EXPECT_EQ(files().get("Number of CellWeft Polls"), polls)
        << "no CellWeft polls while the flow is stopped";
    ASSERT_EQ(host.command(0x0E, 0), 0);
    host.advance(10'000);
    EXPECT_GT(files().get("Number of CellWeft Polls"), polls);
    EXPECT_EQ(host.command(0x0E, 7), 5);

    ASSERT_EQ(host.command(0x10, 0), 0);
    host.advance(250);
    EXPECT_TRUE(files().get("Internal Flags 2") & 0x0001);
    EXPECT_EQ(files().get("FET Status") & 0x3, 0u) << "ship mode opens the FETs";
    ASSERT_EQ(host.command(0x10, 0), 0);
    host.advance(250);
    EXPECT_EQ(files().get("FET Status") & 0x3, 0x3u);

    ASSERT_EQ(host.command(0x0C, 0), 0);
    host.advance(250);
    EXPECT_TRUE(files().get("Internal Flags 2") & 0x0002);
    EXPECT_EQ(files().get("FET Status") & 0x3, 0u);
    host.advance(zvsim::CommandFile::SafeDisconnectMs);
    EXPECT_FALSE(files().get("Internal Flags 2") & 0x0002);
    EXPECT_EQ(files().get("FET Status") & 0x3, 0x3u);
    EXPECT_EQ(host.command(0x55, 0), 5) << "an unknown command";
}

TEST_F(CommandFile, WiredBitChangesOnlyAfterTheWiredCommand)
{
    std::uint16_t algorithm = host.word(9, 0);
    ASSERT_FALSE(algorithm & 0x0008);
    EXPECT_EQ(host.writeFile(9, 0, 1, { static_cast<std::uint8_t>(algorithm | 8), 0 }), 5);
    EXPECT_EQ(host.writeFile(9, 0, 1, { static_cast<std::uint8_t>(algorithm | 0x20), 0 }), 0)
        << "other bits need no wired command";
    ASSERT_EQ(host.command(0x0D, 0), 0);
    EXPECT_EQ(host.writeFile(9, 0, 1, { static_cast<std::uint8_t>(algorithm | 0x28), 0 }), 0);
    EXPECT_EQ(host.word(9, 0) & 0x28, 0x28);
    EXPECT_EQ(host.writeFile(9, 0, 1, { static_cast<std::uint8_t>(algorithm), 0 }), 5) << "armed once";
}

TEST_F(CommandFile, ResetFuseAndRebuild)
{
    auto& files = pack.model().files;
    files.setBits("Safety Flags", 0x8000, true);
    files.set("Permanent Disable Status", 0x0080);
    host.advance(250);
    EXPECT_EQ(files.get("FET Status") & 0x3, 0u) << "a blown fuse opens the FETs";
    ASSERT_EQ(host.command(0x0B, 0), 0);
    host.advance(250);
    EXPECT_EQ(files.get("Safety Flags") & 0x8000, 0u);
    EXPECT_EQ(files.get("Permanent Disable Status"), 0u);
    EXPECT_EQ(files.get("FET Status") & 0x3, 0x3u);

    setWord(host, 9, 3, 6); // Expected Number Of Cells
    ASSERT_EQ(host.command(0x04, 0), 0);
    EXPECT_EQ(files.get("Actual Number Of Cells"), 6u);
    EXPECT_EQ(files.get("Number of CellWeft rebuilds"), 1u);
    setWord(host, 9, 3, 12);
    ASSERT_EQ(host.command(0x04, 0), 0);
    EXPECT_EQ(files.get("Actual Number Of Cells"), 8u) << "no more cells than the pack has";
}

class Calibration : public CommandFile {
protected:
    Calibration() { setWord(host, 9, 0, static_cast<std::uint16_t>(host.word(9, 0) | 0xF000)); }
};

TEST_F(Calibration, StepsAreRefusedOutsideCalibrationMode)
{
    zvsim::Pack plain(options());
    Host h(plain);
    h.open();
    for (std::uint16_t code : { 0, 1, 2, 8, 9, 10 })
        EXPECT_EQ(h.command(code, code == 2 ? 2981 : 1), 5) << code;
}

TEST_F(Calibration, CurrentOffsetAndGainMakeTheReadingTrue)
{
    ASSERT_EQ(host.command(0x00, 0), 0);
    host.advance(250);
    EXPECT_NEAR(files().getSigned("Current"), 0, 1);
    ASSERT_EQ(host.command(0x01, static_cast<std::uint16_t>(-2000)), 0);
    host.advance(250);
    EXPECT_NEAR(files().getSigned("Current"), -2000, 2);
    EXPECT_NE(files().get("Current Gain"), 32767u) << "the sensor had a gain error";
    EXPECT_EQ(host.word(24, 1), files().get("Current Gain"));
    EXPECT_EQ(host.command(0x01, 0), 5) << "no current, no gain";
}

TEST_F(Calibration, TemperatureSetsTheSensorOffsets)
{
    ASSERT_EQ(host.command(0x02, 2982), 0);
    host.advance(250);
    for (int sensor = 0; sensor < 5; ++sensor)
        EXPECT_NEAR(host.word(21, sensor), 2982, 1) << sensor;
    EXPECT_EQ(host.command(0x02, 100), 5);
}

TEST_F(Calibration, TwoPointsGiveACellItsOffsetAndGain)
{
    EXPECT_EQ(host.command(0x09, 2800), 5) << "no cell chosen";
    ASSERT_EQ(host.command(0x08, 3), 0);
    ASSERT_EQ(host.command(0x09, 2800), 0);
    ASSERT_EQ(host.command(0x0A, 4200), 0);
    EXPECT_EQ(host.word(31, 8), 2800) << "file 31 keeps the points of cell 3";
    EXPECT_EQ(host.word(31, 10), 4200);
    EXPECT_NE(files().get("Cell 3 Voltage Gain"), 32768u);
    EXPECT_EQ(host.command(0x08, 9), 5) << "an 8-cell pack has no cell 9";
    // Leave calibration mode: the cell reads its own voltage through the new calibration.
    setWord(host, 9, 0, static_cast<std::uint16_t>(host.word(9, 0) & 0x0FFF));
    host.advance(2500);
    double raw = pack.physics().rawCellMv(3);
    double expected
        = raw * 32768.0 / files().get("Cell 3 Voltage Gain") + files().getSigned("Cell 3 Voltage Offset");
    EXPECT_NEAR(files().get("Voltage", 3), expected, 1.5);
}

} // namespace
