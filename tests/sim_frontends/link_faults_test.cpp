// The --faults list: what each switch sets, what is refused, and the die behind the rates.

#include "frontends/link_faults.h"

#include <gtest/gtest.h>

namespace zvsim {
namespace {

TEST(FaultList, EverySwitchLandsInItsPlace)
{
    const auto result = parseFaultList(
        "pec:0.05,lost:0.01,cut:0.02,stuck:0.03,alarm:0.04,noack:0.1,restart:0.2,busy:3,status:9,pull:120");
    ASSERT_EQ(result.error, "");
    const FaultPlan& plan = result.plan;
    EXPECT_DOUBLE_EQ(plan.link.pecRate, 0.05);
    EXPECT_DOUBLE_EQ(plan.link.lostRate, 0.01);
    EXPECT_DOUBLE_EQ(plan.link.cutRate, 0.02);
    EXPECT_DOUBLE_EQ(plan.link.stuckRate, 0.03);
    EXPECT_DOUBLE_EQ(plan.link.alarmRate, 0.04);
    EXPECT_DOUBLE_EQ(plan.device.noAckRate, 0.1);
    EXPECT_DOUBLE_EQ(plan.device.restartRate, 0.2);
    EXPECT_EQ(plan.device.busyPolls, 3);
    EXPECT_EQ(plan.device.forcedStatus, 9);
    EXPECT_EQ(plan.link.pullAfterMs, 120'000);
    EXPECT_EQ(describeFaults(plan),
        "pec:0.05,lost:0.01,cut:0.02,stuck:0.03,alarm:0.04,noack:0.1,restart:0.2,busy:3,status:9,pull:120");
}

TEST(FaultList, EmptyMeansNoFaults)
{
    const auto result = parseFaultList("");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.plan.device.forcedStatus, -1);
    EXPECT_FALSE(result.plan.link.pullAfterMs);
    EXPECT_EQ(describeFaults(result.plan), "none");
    EXPECT_EQ(describeFaults(parseFaultList("status:0").plan), "status:0") << "status 0 is a fault too";
}

TEST(FaultList, RefusesWhatItCannotUse)
{
    EXPECT_NE(parseFaultList("pec:1.5").error.find("from 0 to 1"), std::string::npos);
    EXPECT_NE(parseFaultList("lost:-0.1").error, "");
    EXPECT_NE(parseFaultList("busy:x").error, "");
    EXPECT_NE(parseFaultList("status:256").error, "");
    EXPECT_NE(parseFaultList("pull").error.find("no value"), std::string::npos);
    EXPECT_NE(parseFaultList("jitter:0.1").error.find("unknown fault 'jitter'"), std::string::npos);
    EXPECT_NE(parseFaultList("pec:0.1x").error, "");
    // Numbers that are not finite, or a pull too late to count in milliseconds.
    for (const char* item : { "pull:inf", "pull:nan", "pull:1e300", "pec:nan", "noack:inf", "restart:-nan" })
        EXPECT_NE(parseFaultList(item).error, "") << item;
}

TEST(FaultDice, RateZeroNeverRateOneAlways)
{
    FaultDice dice(42);
    int hits = 0;
    for (int i = 0; i < 10'000; ++i) {
        EXPECT_FALSE(dice.roll(0.0));
        EXPECT_TRUE(dice.roll(1.0));
        hits += dice.roll(0.25) ? 1 : 0;
    }
    EXPECT_GT(hits, 2300);
    EXPECT_LT(hits, 2700);
}

} // namespace
} // namespace zvsim
