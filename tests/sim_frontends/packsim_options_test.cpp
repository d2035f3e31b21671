// The command line of zentavia-packsim.

#include "packsim/packsim_options.h"

#include <gtest/gtest.h>

namespace zvsim {
namespace {

PackSimArgs parse(std::vector<std::string_view> args)
{
    return parsePackSimArgs(args);
}

TEST(PackSimArgs, EveryOptionSetsItsField)
{
    const auto parsed = parse({ "--target", "1003", "--cells", "16", "--level", "2", "--sealed", "--password",
        "open sesame", "--state", "app-loader", "--state-file", "/tmp/flash.txt", "--address", "0x0C",
        "--link", "/tmp/ttyPACK", "--usb-socket", "/tmp/usb.sock", "--wire-pacing", "--any-baud", "--faults",
        "busy:3,pec:0.5", "--alarm-every", "2.5", "--seed", "99", "--trace" });
    ASSERT_EQ(parsed.error, "");
    const PackSimOptions& o = parsed.options;
    EXPECT_EQ(o.pack.targetId, 0x1003);
    EXPECT_EQ(o.pack.cells, 16);
    EXPECT_EQ(o.pack.level, 2);
    EXPECT_TRUE(o.pack.sealed);
    EXPECT_EQ(o.pack.password, "open sesame");
    EXPECT_EQ(o.pack.state, PackState::AppLoader);
    EXPECT_EQ(o.pack.stateFile, "/tmp/flash.txt");
    EXPECT_EQ(o.pack.address7, 0x0C);
    EXPECT_TRUE(o.pty) << "--link implies the pseudo-terminal";
    EXPECT_EQ(o.link, "/tmp/ttyPACK");
    EXPECT_EQ(o.usbSocket, "/tmp/usb.sock");
    EXPECT_TRUE(o.wirePacing && o.anyBaud && o.trace);
    EXPECT_EQ(o.faults.device.busyPolls, 3);
    EXPECT_DOUBLE_EQ(o.faults.link.pecRate, 0.5);
    EXPECT_EQ(o.pack.alarmPeriodMs, 2500);
    EXPECT_EQ(o.pack.seed, 99u);
    const std::string description = describePack(o);
    EXPECT_NE(
        description.find("target 1003, 16 cells, sealed, state app-loader, address 0x0C"), std::string::npos)
        << description;
    EXPECT_NE(description.find("faults: pec:0.5,busy:3, wire pacing on, alarm every 2.5 s, seed 99"),
        std::string::npos)
        << description;
}

TEST(PackSimArgs, DefaultsServeThePtyOnly)
{
    const auto parsed = parse({});
    ASSERT_EQ(parsed.error, "");
    EXPECT_TRUE(parsed.options.pty);
    EXPECT_EQ(parsed.options.pack.targetId, 0x1001);
    EXPECT_FALSE(parse({ "--usb-socket", "/tmp/s" }).options.pty);
    EXPECT_TRUE(parse({ "--help" }).options.help);
    EXPECT_NE(packSimUsage().find("--faults LIST"), std::string::npos);
    EXPECT_NE(
        describePack(parsed.options).find("target 1001, the target's cells, level 3"), std::string::npos);
    EXPECT_EQ(parse({ "--target", "BEEF" }).options.pack.targetId, 0xBEEF) << "any id: an unknown target";
}

TEST(PackSimArgs, MistakesAreNamed)
{
    EXPECT_EQ(parse({ "--cells", "17" }).error, "--cells needs a number from 1 to 16");
    EXPECT_EQ(parse({ "--cells" }).error, "--cells needs a value");
    EXPECT_EQ(parse({ "--level", "4" }).error, "--level needs a number from 0 to 3");
    EXPECT_EQ(parse({ "--state", "boot" }).error, "--state needs app, system-loader or app-loader");
    EXPECT_EQ(parse({ "--target", "12345" }).error, "--target (hexadecimal) needs a number from 0 to 65535");
    EXPECT_EQ(parse({ "--verbose" }).error, "unknown option '--verbose' (try --help)");
    EXPECT_NE(parse({ "--faults", "pec:2" }).error, "");
    EXPECT_NE(parse({ "--alarm-every", "-1" }).error, "");
    for (const char* seconds : { "inf", "nan", "1e300" })
        EXPECT_EQ(parse({ "--alarm-every", seconds }).error, "--alarm-every needs seconds from 0 to 31536000")
            << seconds;
}

} // namespace
} // namespace zvsim
