// The USB adapter link against the simulated pack behind the simulator's adapter, on the virtual
// clock: opening, the retry rule and its log, the idle wait and the target operations.

#include "sim_usb_adapter.h"

#include "core/globals.h"
#include "device/pack.h"
#include "platform/testing/scripted_dialogs.h"
#include "platform/testing/virtual_event_loop.h"
#include "usb/usb_link.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

struct LogLine {
    std::string text;
    bool transmitted;
    bool operator==(const LogLine&) const = default;
};

class UsbLinkTest : public ::testing::Test {
protected:
    UsbLink& link()
    {
        if (!link_)
            link_ = std::make_unique<UsbLink>(UsbLinkServices { loop, dialogs, globals,
                [this] { return std::make_unique<test::SimUsbAdapter>(sim, loop, script); },
                [this](const std::string& text, bool transmitted) {
                    log.push_back({ text, transmitted });
                },
                [this] { ended = true; }, [this] { ++cleared; } });
        return *link_;
    }
    UsbLink& opened()
    {
        EXPECT_EQ(link().usbOpen(), zvsim::UsbAdapter::kVersion);
        script.requests.clear();
        log.clear();
        return link();
    }
    // Answers every request that starts with prefix with answer.
    void answer(const std::string& prefix, const std::string& text)
    {
        script.answer = [=](const std::string& request) -> std::optional<std::string> {
            if (request.starts_with(prefix))
                return text;
            return std::nullopt;
        };
    }

    platform::VirtualEventLoop loop;
    platform::ScriptedDialogs dialogs;
    AppGlobals globals;
    std::unique_ptr<zvsim::Pack> pack = zvsim::makePack({});
    zvsim::UsbAdapter sim { *pack };
    test::SimUsbScript script;
    std::vector<LogLine> log;
    bool ended = false;
    int cleared = 0;

private:
    std::unique_ptr<UsbLink> link_;
};

TEST_F(UsbLinkTest, OpeningConnectsConfiguresAndTakesTheVersion)
{
    EXPECT_EQ(link().usbOpen(), "ZV-USB-BRIDGE simulator 1.0");
    EXPECT_EQ(link().UsbVersionText, "ZV-USB-BRIDGE simulator 1.0");
    EXPECT_EQ(globals.gAddress7, 11) << "address 0 becomes 0x0B";
    EXPECT_EQ(globals.SMBusWriteAddress, 0x16);
    EXPECT_EQ(
        script.requests, (std::vector<std::string> { "CONNECT", "CONFIGURE 1 1 1", "CONNECT", "VERSION" }));
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(UsbLinkTest, AnAddressThatIsSetIsKept)
{
    globals.setAddress(0x0C);
    (void)link().usbOpen();
    EXPECT_EQ(globals.gAddress7, 0x0C);
    EXPECT_EQ(link().usbGetTargetID(), -1000) << "nothing answers at 0x0C";
}

TEST_F(UsbLinkTest, AnAdapterWithoutVersionGivesError)
{
    answer("VERSION", "0");
    EXPECT_EQ(link().usbOpen(), "-1");
    EXPECT_EQ(link().UsbVersionText, "Error");
    EXPECT_TRUE(link().opened()) << "the adapter is still usable";
}

TEST_F(UsbLinkTest, AMissingAdapterSaysDeviceNotFoundAndEndsTheProgram)
{
    script.present = false;
    dialogs.answerMessage(platform::Answer::OK);
    EXPECT_EQ(link().usbOpen(), "-1");
    ASSERT_EQ(dialogs.shown().size(), 1u);
    const auto& box = dialogs.lastShown();
    EXPECT_EQ(box.title, "Device Not Found");
    EXPECT_EQ(box.icon, platform::Icon::Critical);
    EXPECT_EQ(box.text,
        "USB-BRIDGE interface adapter was not found.\n\nPlease check that the USB cable is connected to "
        "the adapter and the I/O cable is connected to the EVM.\nIf you are not using the USB-BRIDGE "
        "interface adapter then run 'USB Dongle Configuration.exe' to set the HLK adapter as the default "
        "dongle.\nGoto: Start >> All Programs >> Norvale Systems >> Zentavia >> USB Dongle Configuration");
    EXPECT_TRUE(ended);
    EXPECT_FALSE(link().opened());
}

TEST_F(UsbLinkTest, AReleasedAdapterAnswersZeroAndTouchesNothing)
{
    opened().usbRelease();
    std::uint8_t high = 0xAA;
    std::uint8_t low = 0x55;
    EXPECT_EQ(link().usbReadWord(0x0B, 0x00, high, low), 0);
    EXPECT_EQ(high, 0xAA);
    EXPECT_EQ(low, 0x55);
    std::vector<std::uint8_t> block { 1, 2 };
    EXPECT_EQ(link().usbBlockRead(0x0B, 0x3F, block), 0);
    EXPECT_EQ(block, (std::vector<std::uint8_t> { 1, 2 }));
    EXPECT_EQ(link().usbWriteWord(0x0B, 0x00, 0x30, 0x00), 0);
    EXPECT_TRUE(script.requests.empty());
    EXPECT_TRUE(log.empty());
}

TEST_F(UsbLinkTest, EachTryIsLoggedAndTriesAre25msApart)
{
    auto& usb = opened();
    script.failTransfers = 1;
    const auto start = loop.milliseconds();
    EXPECT_EQ(usb.usbWriteIntWord(0x0B, 0x00, 0x7A3C), 0);
    EXPECT_EQ(log, (std::vector<LogLine> { { "0B 00 3C 7A ", true }, { "0B 00 3C 7A ", true } }));
    EXPECT_EQ(loop.milliseconds() - start, 25);

    log.clear();
    script.failTransfers = 5;
    const auto failing = loop.milliseconds();
    EXPECT_EQ(usb.usbWriteWord(0x0B, 0x00, 0x30, 0x00), 3) << "the last status after three tries";
    EXPECT_EQ(log.size(), 3u);
    EXPECT_EQ(loop.milliseconds() - failing, 75);

    log.clear();
    int value = 0;
    EXPECT_EQ(usb.usbWriteIntWord(0x0B, 0x00, 0xC01B), 0);
    EXPECT_EQ(usb.usbReadIntWord(0x0B, 0x00, value), 0);
    EXPECT_EQ(value, 0x1001);
    EXPECT_EQ(log.back(), (LogLine { "0B 00 01 10 ", false })) << "reads are logged as received";
    std::vector<std::uint8_t> request { 0, 0, 0, 0, 1, 0 };
    EXPECT_EQ(usb.usbUnlockDevice(), 0);
    EXPECT_TRUE(usb.usbEnableUlmarCommandSet());
    EXPECT_EQ(usb.usbBlockWrite(0x0B, 0x3C, request), 0);
    EXPECT_EQ(log.back(), (LogLine { "0B 3C 06 00 00 00 00 01 00 ", true })) << "a block adds its count";
}

TEST_F(UsbLinkTest, ABlockWriteOfTheFirmwareLoaderIsNotTriedAgain)
{
    auto& usb = opened();
    const std::vector<std::uint8_t> block(16, 0xA5);
    usb.UsbNoBlockRetry = true;
    script.failTransfers = 3;
    EXPECT_EQ(usb.usbBlockWrite(0x0B, 0x3E, block), 3);
    EXPECT_EQ(script.requests.size(), 1u);

    usb.UsbNoBlockRetry = false;
    script.failTransfers = 3;
    script.requests.clear();
    EXPECT_EQ(usb.usbBlockWrite(0x0B, 0x3E, block), 3);
    EXPECT_EQ(script.requests.size(), 3u);
}

TEST_F(UsbLinkTest, TheIdleWaitEndsWhenTheTargetIsNotBusy)
{
    auto& usb = opened();
    int reads = 0;
    script.answer = [&](const std::string& request) -> std::optional<std::string> {
        if (request != "READWORD 0B 3D")
            return std::nullopt;
        return ++reads < 4 ? "0 00 FF" : "0 01 04"; // high byte first: extra 1, status 4
    };
    std::uint8_t status = 0;
    std::uint8_t extra = 0;
    EXPECT_EQ(usb.usbWaitIdleStatus(status, extra), 0);
    EXPECT_EQ(reads, 4);
    EXPECT_EQ(status, 4);
    EXPECT_EQ(extra, 1);
    EXPECT_EQ(cleared, 1) << "the status texts are emptied";
    EXPECT_EQ(log.back(), (LogLine { "0B 3D 04 01 ", false }));
}

TEST_F(UsbLinkTest, ATargetBusyForMoreThanTenSecondsGivesOne)
{
    auto& usb = opened();
    answer("READWORD 0B 3D", "0 00 FF");
    const auto start = loop.milliseconds();
    EXPECT_EQ(usb.usbWaitIdle(), 1);
    EXPECT_GE(loop.milliseconds() - start, 10000);
    EXPECT_LT(loop.milliseconds() - start, 10100);

    answer("READWORD 0B 3D", "3");
    EXPECT_EQ(usb.usbWaitIdle(), 1) << "a status that cannot be read ends the wait";
}

// Id, unlock, command set, level and scaling run in the USB detection tests.
TEST_F(UsbLinkTest, TargetOperationsReachThePack)
{
    auto& usb = opened();
    EXPECT_TRUE(usb.usbGetScaling());
    EXPECT_EQ(usb.scaling().VScale, 1);
    EXPECT_TRUE(usb.usbLockDevice());
    EXPECT_TRUE(usb.usbDisableUlmarCommandSet());
    const int state = usb.usbGetHardwareState();
    EXPECT_NE(state, -1);
    EXPECT_NE(state, kSystemLoaderState) << "the pack runs its application";
    EXPECT_GE(cleared, 4) << "each target operation empties the status texts";
}

TEST_F(UsbLinkTest, FailedTargetOperationsGiveTheirNumbers)
{
    auto& usb = opened();
    answer("WRITEWORD", "1");
    EXPECT_EQ(usb.usbGetTargetID(), -1000);
    EXPECT_EQ(usb.usbGetAccessLevel(), -1);
    EXPECT_EQ(usb.usbUnlockDevice(), -1);
    EXPECT_FALSE(usb.usbLockDevice());
    answer("READWORD", "2");
    EXPECT_EQ(usb.usbGetTargetID(), -1001);
    EXPECT_EQ(usb.usbGetAccessLevel(), -2);
    EXPECT_EQ(usb.usbGetHardwareState(), -1);
    EXPECT_FALSE(usb.usbGetScaling());
}

} // namespace
