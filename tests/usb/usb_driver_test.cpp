// The driver on the USB transport against the simulated pack: the device file protocol, the
// target's start-up steps, link recovery and the firmware download through the adapter.

#include "sim_usb_adapter.h"

#include "support/firmware_request.h"
#include "support/sim_harness.h"

#include <algorithm>

#include <gtest/gtest.h>

using namespace zv;

namespace {

class UsbHarness : public test::SimHarness {
public:
    explicit UsbHarness(zvsim::PackOptions options = {})
        : SimHarness(options)
        , adapter(*pack)
    {
        globals.gTransport = kTransportUsbAdapter;
        adjustServices = [this](CellWeftServices& services) {
            services.usbAdapter
                = [this] { return std::make_unique<test::SimUsbAdapter>(adapter, loop, script); };
            services.infoStatus = [this](const std::string& text) { info.push_back(text); };
            services.mainWindowActive = [] { return true; };
        };
    }

    // usbOpen, unlock and the command set, as start-up does on this transport.
    [[nodiscard]] bool open()
    {
        auto& usb = driver().Usb;
        return usb.usbOpen() != "-1" && usb.usbUnlockDevice() == 0 && usb.usbEnableUlmarCommandSet();
    }

    [[nodiscard]] std::size_t countRequests(const std::string& prefix) const
    {
        return static_cast<std::size_t>(std::ranges::count_if(
            script.requests, [&](const std::string& request) { return request.starts_with(prefix); }));
    }

    zvsim::UsbAdapter adapter;
    test::SimUsbScript script;
    std::vector<std::string> info;
};

FileRequest directorySize()
{
    FileRequest request;
    request.file = 0;
    request.offset = 0;
    request.count = 1;
    return request;
}

TEST(UsbDriverTest, TheDirectoryReadsAsOverTheDongle)
{
    UsbHarness usb;
    ASSERT_TRUE(usb.open());
    const auto overUsb = usb.driver().FileAccessRequest(directorySize());
    ASSERT_TRUE(overUsb.ok);
    EXPECT_EQ(usb.countRequests("WRITEBLOCK 0B 3C 06 00 00 00 00 01 00"), 1u);
    EXPECT_EQ(usb.countRequests("READBLOCK 0B 3F"), 1u);
    EXPECT_TRUE(usb.port.written().empty()) << "nothing goes to the dongle's port";

    test::SimHarness dongle;
    ASSERT_TRUE(dongle.connect());
    const auto overDongle = dongle.driver().FileAccessRequest(directorySize());
    ASSERT_TRUE(overDongle.ok);
    EXPECT_EQ(overUsb.text, overDongle.text);
}

TEST(UsbDriverTest, ATargetLoadsAndAParameterRoundTrips)
{
    UsbHarness sim;
    ASSERT_TRUE(sim.open());
    ASSERT_TRUE(sim.loadTarget());
    auto& d = sim.driver();
    EXPECT_EQ(d.Usb.usbGetTargetID(), 0x1001);
    d.Parameters.UserAccessLevel = d.Usb.usbGetAccessLevel();
    EXPECT_EQ(d.Parameters.UserAccessLevel, 3);
    auto* limit = d.GatewayParameters.FindByName("Over Temperature Limit");
    limit->NewValue = DynamicValue(60.0);
    ASSERT_TRUE(d.WriteParameter("Over Temperature Limit", 0));
    ASSERT_TRUE(d.ReadParameter("Over Temperature Limit", 0));
    EXPECT_DOUBLE_EQ(limit->value.number(), 333.0);
}

TEST(UsbDriverTest, AWriteWaitIsSleptInWholeSecondsWithoutPolling)
{
    UsbHarness sim;
    ASSERT_TRUE(sim.open());
    sim.script.requests.clear();
    const auto start = sim.loop.milliseconds();
    ASSERT_TRUE(sim.driver().WriteCommandFile("0E000000", 2500));
    EXPECT_GE(sim.loop.milliseconds() - start, 2000);
    EXPECT_LT(sim.loop.milliseconds() - start, 2500);
    ASSERT_FALSE(sim.script.requests.empty());
    EXPECT_EQ(sim.script.requests.back(), "WRITEBLOCK 0B 3E 04 0E 00 00 00")
        << "no status read after the data";
}

TEST(UsbDriverTest, ABusyDeviceEndsTheRequest)
{
    UsbHarness sim;
    ASSERT_TRUE(sim.open());
    std::vector<std::string> messages;
    sim.main().hooks.fileAccessStatus = [&](const std::string& m, int) { messages.push_back(m); };
    sim.pack->faults().busyPolls = 1000000;
    const auto start = sim.loop.milliseconds();
    EXPECT_FALSE(sim.driver().FileAccessRequest(directorySize()).ok);
    EXPECT_LT(sim.loop.milliseconds() - start, 30000);
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages.back(), kBusyTooLongMessage);
}

TEST(UsbDriverTest, ReInitUnlocksAndOpensTheCommandSetThroughTheAdapter)
{
    UsbHarness sim;
    ASSERT_TRUE(sim.open());
    sim.script.requests.clear();
    const auto start = sim.loop.milliseconds();
    EXPECT_TRUE(sim.driver().SMBus_ReInit());
    EXPECT_GE(sim.loop.milliseconds() - start, 1000);
    EXPECT_EQ(
        sim.script.requests, (std::vector<std::string> { "WRITEWORD 0B 00 21 6E", "WRITEWORD 0B 00 3C 7A" }));
    EXPECT_TRUE(sim.info.empty());

    sim.script.answer = [](const std::string& request) -> std::optional<std::string> {
        if (request.starts_with("WRITEWORD"))
            return "1";
        return std::nullopt;
    };
    EXPECT_TRUE(sim.driver().SMBus_ReInit());
    EXPECT_EQ(sim.info,
        (std::vector<std::string> {
            "Error: Unlocking the target failed.", "Error: Enabling command set failed." }));
    sim.info.clear();
    EXPECT_TRUE(sim.driver().SMBus_ReInit2());
    EXPECT_TRUE(sim.info.empty()) << "SMBus_ReInit2 leaves the report to its caller";
    EXPECT_TRUE(sim.port.written().empty());
}

TEST(UsbDriverTest, FirmwareBlocksGoOutOnceEachAndTheLastStatusDecides)
{
    zvsim::PackOptions loader;
    loader.targetId = 0x1002;
    loader.state = zvsim::PackState::AppLoader;
    UsbHarness sim(loader);
    std::vector<bool> completions;
    sim.main().hooks.firmwareDownloadComplete = [&](bool success) { completions.push_back(success); };
    ASSERT_TRUE(sim.open());

    auto& d = sim.driver();
    const FileRequest request = test::firmwareRequest(d);
    const auto blocks = static_cast<std::size_t>(request.count);

    sim.script.requests.clear();
    const auto reply = d.FileAccessRequest(request);
    EXPECT_TRUE(reply.ok);
    EXPECT_EQ(reply.status, 8);
    EXPECT_EQ(completions, std::vector<bool> { true });
    EXPECT_EQ(sim.countRequests("WRITEBLOCK 0B 3E"), blocks);
    const auto firstBlock = std::ranges::find_if(
        sim.script.requests, [](const std::string& r) { return r.starts_with("WRITEBLOCK 0B 3E"); });
    const auto lastStatus = std::find(firstBlock, sim.script.requests.end(), "READWORD 0B 3D");
    EXPECT_EQ(static_cast<std::size_t>(lastStatus - firstBlock), blocks)
        << "no status read between the blocks";
    EXPECT_FALSE(d.Usb.UsbNoBlockRetry) << "retries come back after the download";
}

} // namespace
