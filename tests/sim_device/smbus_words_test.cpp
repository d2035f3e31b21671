// The pack's SMBus side: PEC both ways (the Host checks the PEC of every reply), the
// ManufacturerAccess words, the smart-battery words, the block commands and the SBD map.

#include "sim_device/host.h"

#include "device/pec.h"

#include <gtest/gtest.h>

using simtest::Host;
using simtest::pec;

namespace {

zvsim::PackOptions target(std::uint16_t id)
{
    zvsim::PackOptions options;
    options.targetId = id;
    return options;
}

// Target 1001 and a host in front of it.
class Pack1001 : public ::testing::Test {
protected:
    zvsim::Pack pack { target(0x1001) };
    Host host { pack };
};

TEST_F(Pack1001, PackPecWordWriteIsAcceptedOnlyWithTheRightPec)
{
    EXPECT_EQ(zvsim::smbusPec({ 0x16, 0x00, 0x30, 0x00 }), 0xEA);
    EXPECT_EQ(pec({ 0x16, 0x00, 0x30, 0x00 }), 0xEA) << "the host's own CRC agrees";
    std::uint8_t good = pec({ 0x16, 0x09, 0x34, 0x12 });
    EXPECT_TRUE(host.send({ 0x09, 0x34, 0x12, good }));
    EXPECT_FALSE(host.send({ 0x09, 0x34, 0x12, static_cast<std::uint8_t>(good ^ 0x01) }));
    EXPECT_FALSE(host.send({ 0x09, 0x34, 0x12, pec({ 0x09, 0x34, 0x12 }) }))
        << "the address is part of the PEC";
    EXPECT_TRUE(host.send({ 0x09, 0x34, 0x12 })) << "a host without PEC is served";
    EXPECT_FALSE(host.send({ 0x09, 0x34 })) << "a cut word";
}

TEST_F(Pack1001, PackPecBlockWriteWithBadPecLeavesTheProtocolUntouched)
{
    host.open();
    // The PEC covers the address and the request; the request goes without the address.
    const std::vector<std::uint8_t> covered { 0x16, 0x3C, 6, 0, 1, 0, 0, 20, 0 };
    std::vector<std::uint8_t> request(covered.begin() + 1, covered.end());
    request.push_back(static_cast<std::uint8_t>(pec(covered) + 1));
    EXPECT_FALSE(host.send(request));
    EXPECT_EQ(host.status()[0], 0) << "no request was taken";
}

TEST(ManufacturerAccess, IdentifiesTargetLevelAndState)
{
    for (std::uint16_t id : { 0x1001, 0x1002, 0x1003, 0x2222 }) {
        zvsim::Pack pack(target(id));
        Host host(pack);
        EXPECT_EQ(host.readWord(0x00), 0x0000) << "an application answers neither loader word";
        ASSERT_TRUE(host.writeWord(0x00, 0xC01B));
        EXPECT_EQ(host.readWord(0x00), id);
        ASSERT_TRUE(host.writeWord(0x00, 0xC01A));
        EXPECT_EQ(host.readWord(0x00), 3);
    }
    zvsim::PackOptions options = target(0x1003);
    options.state = zvsim::PackState::AppLoader;
    zvsim::Pack appLoader(options);
    options.state = zvsim::PackState::SystemLoader;
    zvsim::Pack systemLoader(options);
    EXPECT_EQ(Host(appLoader).readWord(0x00), 0x6699);
    EXPECT_EQ(Host(systemLoader).readWord(0x00), 0xFA99);
}

TEST_F(Pack1001, ManufacturerAccessExtendedCommandsNeedUnlockThenEnableAndCloseAgain)
{
    EXPECT_FALSE(host.request(0, 1, 0, 20)) << "file protocol closed at power-on";
    ASSERT_TRUE(host.writeWord(0x00, 0x7A3C));
    EXPECT_FALSE(pack.commandSetOpen()) << "enable without unlock";
    host.open();
    EXPECT_TRUE(pack.commandSetOpen());
    EXPECT_TRUE(host.request(0, 1, 0, 20));
    ASSERT_TRUE(host.writeWord(0x00, 0x0000));
    EXPECT_FALSE(host.request(0, 1, 0, 20));
    host.open();
    ASSERT_TRUE(host.writeWord(0x00, 0x0030));
    EXPECT_FALSE(pack.commandSetOpen()) << "lock closes the command set too";
}

TEST_F(Pack1001, SmartBatteryWordsScalingBatteryModeAndMeasuredWords)
{
    std::uint16_t spec = host.readWord(0x1A).value();
    EXPECT_EQ((spec >> 8) & 0xF, 0) << "voltage scale 10^0";
    EXPECT_EQ((spec >> 12) & 0xF, 0) << "current scale 10^0";
    EXPECT_EQ(host.readWord(0x03).value() & 0x8000, 0) << "capacity in mAh";
    pack.model().files.set("Battery Mode-Obsolete", 0x8000);
    EXPECT_EQ(host.readWord(0x03).value() & 0x8000, 0x8000);
    EXPECT_EQ(host.readWord(0x09), pack.model().files.get("Pack Voltage"));
    EXPECT_EQ(host.readWord(0x18), 2200);
}

TEST_F(Pack1001, BlockCommandsDynamicAndGatewayBlocksFollowTheirFiles)
{
    EXPECT_FALSE(host.readBlock(0x80)) << "needs the extended command set";
    host.open();
    host.advance(400'000); // into the discharge part of the cycle
    auto dynamic = host.readBlock(0x80).value();
    ASSERT_EQ(dynamic.size(), 16u);
    auto current = static_cast<std::int16_t>(dynamic[0] | (dynamic[1] << 8));
    EXPECT_EQ(current, pack.model().files.getSigned("Current"));
    EXPECT_EQ(dynamic[14] | (dynamic[15] << 8), static_cast<int>(pack.model().files.get("Status")));
    auto info = host.readBlock(0xEE).value();
    ASSERT_EQ(info.size(), 42u);
    EXPECT_GT(info[2] | (info[3] << 8), 150) << "CellWeft polls counted every two seconds";
}

TEST_F(Pack1001, SbdMapCommandsFromTheMapBeginAnswerMappedWordsWithTheCommandSetClosed)
{
    host.advance(1000);
    const auto& files = pack.model().files;
    ASSERT_EQ(files.get("SBData Map Begin"), 0x50u);
    EXPECT_EQ(host.readWord(0x50), files.get("Temperature"));
    EXPECT_EQ(host.readWord(0x51), files.get("Pack Voltage"));
    EXPECT_EQ(host.readWord(0x58), files.get("Cycle Count"));
    EXPECT_EQ(host.readWord(0x59), 0) << "past the map: a plain word";

    zvsim::Pack other(target(0x1003));
    Host hostOther(other);
    EXPECT_EQ(hostOther.readWord(0x3C), other.model().files.get("Temperature")) << "map from 0x3C";
    hostOther.open();
    EXPECT_FALSE(hostOther.readWord(0x3C)) << "with the command set open 0x3C is the file request";
}

TEST_F(Pack1001, AlarmBroadcastCarriesTheSenderAddressTheWordAndAPecToTheHost)
{
    EXPECT_FALSE(pack.takeAlarmBroadcast());
    pack.model().files.set("Battery Status", 0x9080);
    pack.queueAlarm();
    auto alarm = pack.takeAlarmBroadcast().value();
    ASSERT_EQ(alarm.size(), 4u);
    EXPECT_EQ(alarm[0], 0x0B);
    EXPECT_EQ(alarm[1] | (alarm[2] << 8), 0x9080);
    EXPECT_EQ(alarm[3], pec({ 0x10, 0x0B, 0x80, 0x90 }));
    EXPECT_FALSE(pack.takeAlarmBroadcast()) << "taken once";
}

} // namespace
