// zentavia-cli over the USB adapter, the simulated pack behind it.

#include "cli_fixture.h"

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;

TEST_F(CliTest, DetectsAndReadsOverTheUsbAdapter)
{
    sim.port.setMissing(1); // no dongle on the serial side
    const auto result = run({ "--usb", "socket:/run/zv.sock", "detect" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Target ID:     1001\nTarget name:   ZK9460\nCells:         8\n"));
    EXPECT_EQ(usbSetting, "socket:/run/zv.sock");
    EXPECT_EQ(run({ "--usb", "sim", "sbread", "0x1A" }).out, "0031\n");
    EXPECT_EQ(run({ "--usb", "sim", "get", "Voltage", "--node", "1" }).status, 0);
    EXPECT_FALSE(sim.pack->commandSetOpen()) << "the exit order closes the command set on this link too";
}

TEST_F(CliTest, AMissingUsbAdapterEndsTheRun)
{
    usbScript.present = false;
    const auto result = run({ "--usb", "i2c:CP2112", "detect" });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Device Not Found"));
    EXPECT_THAT(result.err, HasSubstr("Communication error to hardware. Connection failed"));
}

} // namespace
} // namespace zv::test
