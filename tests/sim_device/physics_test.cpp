// The pack's physics and memory: determinism by seed, coulomb counting, the CellWeft poll flag,
// protection with its safety record and alarm broadcast, lifetime counters, and log samples.

#include "sim_device/host.h"

#include <gtest/gtest.h>

using simtest::Host;

namespace {

zvsim::PackOptions seeded(std::uint32_t seed, std::uint16_t id = 0x1001)
{
    zvsim::PackOptions o;
    o.seed = seed;
    o.targetId = id;
    return o;
}

TEST(Physics, SameSeedSameStoryOtherSeedOtherSpread)
{
    zvsim::Pack a(seeded(7)), b(seeded(7)), c(seeded(8));
    for (std::int64_t t = 0; t <= 300'000; t += 12'345)
        a.advanceTo(t);
    b.advanceTo(300'000);
    a.advanceTo(300'000);
    c.advanceTo(300'000);
    EXPECT_EQ(a.model().files.bytes(4), b.model().files.bytes(4)) << "independent of the step pattern";
    EXPECT_EQ(a.model().files.bytes(1), b.model().files.bytes(1));
    EXPECT_NE(a.model().files.bytes(4), c.model().files.bytes(4));
}

TEST(Physics, DischargeLowersChargeAndCellsFollowTheirCurve)
{
    zvsim::Pack pack(seeded(1));
    const auto& files = pack.model().files;
    pack.advanceTo(130'000);
    std::uint32_t before = files.get("Remaining Capacity");
    int v1 = static_cast<int>(files.get("Voltage", 1));
    EXPECT_LT(files.getSigned("Current"), -2500) << "discharging";
    pack.advanceTo(590'000);
    std::uint32_t after = files.get("Remaining Capacity");
    EXPECT_NEAR(static_cast<double>(before - after), 3000.0 * 460 / 3600, 25) << "coulomb counting";
    int loaded = static_cast<int>(files.get("Voltage", 1));
    EXPECT_LT(loaded, v1);
    EXPECT_TRUE(files.get("Battery Status") & 0x0040) << "discharging bit";
    int sum = 0;
    for (int node = 1; node <= pack.model().cells(); ++node)
        sum += static_cast<int>(files.get("Voltage", node));
    EXPECT_NEAR(static_cast<int>(files.get("Pack Voltage")), sum, 60)
        << "pack voltage is the sum of its cells";
    pack.advanceTo(700'000);
    EXPECT_NEAR(files.getSigned("Current"), 0, 15) << "rest";
    EXPECT_GT(static_cast<int>(files.get("Voltage", 1)), loaded + 50) << "the IR drop is gone at rest";
}

TEST(Physics, CellWeftPollFlagIsToldOnceByFileFive)
{
    zvsim::Pack pack(seeded(1));
    Host host(pack);
    host.open();
    host.advance(2100);
    EXPECT_TRUE(host.word(5, 1) & 0x2000);
    EXPECT_FALSE(host.word(5, 1) & 0x2000) << "cleared by the read";
    host.advance(2000);
    EXPECT_TRUE(host.word(5, 1) & 0x2000);
}

TEST(Physics, CrossingALimitRaisesAlertThenStatusRecordsTheEventAndBroadcasts)
{
    zvsim::Pack pack(seeded(3));
    Host host(pack);
    host.open();
    host.advance(1000);
    const auto& files = pack.model().files;
    int head = files.word(33, 0);
    ASSERT_EQ(host.writeFile(10, 0, 1, { 0xB8, 0x0B }), 0); // Cell Over Voltage Limit 3000 mV
    host.advance(250);
    EXPECT_TRUE(files.get("Safety Alert") & 1);
    EXPECT_FALSE(files.get("Safety Status") & 1) << "confirmed after a second";
    host.advance(1250);
    EXPECT_TRUE(files.get("Safety Status") & 1);
    EXPECT_FALSE(files.get("FET Status") & 2) << "charge FET open";
    EXPECT_TRUE(files.get("Battery Status") & 0x8000);
    EXPECT_TRUE(files.get("Cell Status", 1) & 0x04);
    int slot = 2 + 18 * head;
    EXPECT_EQ(files.bytes(33)[static_cast<std::size_t>(slot + 3)], 1) << "event code of a cell over voltage";
    EXPECT_GT(files.word(33, slot + 4), 3000);
    EXPECT_EQ(files.word(33, 0), (head + 1) % 10);
    auto alarm = pack.takeAlarmBroadcast();
    ASSERT_TRUE(alarm);
    EXPECT_TRUE(((*alarm)[1] | ((*alarm)[2] << 8)) & 0x8000);
    ASSERT_EQ(host.writeFile(10, 0, 1, { 0x9A, 0x10 }), 0); // back to 4250 mV
    host.advance(250);
    EXPECT_FALSE(files.get("Safety Status") & 1);
    EXPECT_TRUE(files.get("FET Status") & 2);
    EXPECT_FALSE(files.get("Cell Status", 1) & 0x04);
}

TEST(Physics, AlarmPeriodBroadcastsTheStatusWord)
{
    zvsim::PackOptions o = seeded(1);
    o.alarmPeriodMs = 5000;
    zvsim::Pack pack(o);
    pack.advanceTo(16'000);
    int count = 0;
    while (pack.takeAlarmBroadcast())
        ++count;
    EXPECT_EQ(count, 3);
}

TEST(Lifetime, EachHourCountsOnceAndInTheCellsBands)
{
    zvsim::Pack pack(seeded(1));
    const auto& files = pack.model().files;
    int cells = pack.model().cells();
    int hours = files.word(7, 0);
    int bandSum = 0;
    for (int v = 1; v <= 4 * cells; ++v)
        bandSum += files.word(7, 2 * v);
    EXPECT_EQ(bandSum, hours * cells) << "the bands of the cells add up to the lifetime";
    pack.advanceTo(3'600'000 + 1000);
    EXPECT_EQ(files.word(7, 0), hours + 1);
    int after = 0;
    for (int v = 1; v <= 4 * cells; ++v)
        after += files.word(7, 2 * v);
    EXPECT_EQ(after, (hours + 1) * cells);
}

TEST(LogSample, DefinitionSelectsTheWordsOfTheSample)
{
    zvsim::Pack pack(seeded(1));
    Host host(pack);
    host.open();
    host.advance(5000);
    // Three entries: the tick, "Pack Voltage" (file 1 word 8), cell 2's voltage (file 4 word 6).
    ASSERT_EQ(host.writeFile(30, 0, 4, { 3, 0, 0, 0, 1, 8, 4, 6 }), 0);
    auto sample = host.readFile(29, 0, 3);
    ASSERT_EQ(sample.status, 0);
    ASSERT_EQ(sample.data.size(), 6u);
    const auto& files = pack.model().files;
    EXPECT_EQ(sample.data[0] | (sample.data[1] << 8), 5);
    EXPECT_EQ(sample.data[2] | (sample.data[3] << 8), static_cast<int>(files.get("Pack Voltage")));
    EXPECT_EQ(sample.data[4] | (sample.data[5] << 8), static_cast<int>(files.get("Voltage", 2)));
    std::vector<std::uint8_t> tooMany(66, 0);
    tooMany[0] = 33;
    EXPECT_EQ(host.writeFile(30, 0, 33, tooMany), 6) << "more entries than the file's length";
}

} // namespace
