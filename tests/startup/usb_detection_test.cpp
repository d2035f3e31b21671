// Target detection on the USB adapter against the simulated pack, and the bus scan of the splash.

#include "core/ini_values.h"
#include "core/temp_folder.h"
#include "startup_fixture.h"
#include "usb/sim_usb_adapter.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

class UsbDetection : public ::testing::Test, public test::StartupFixture {
protected:
    explicit UsbDetection(zvsim::PackOptions options = {})
        : StartupFixture(options)
        , adapter(*sim.pack)
    {
        sim.globals.gTransport = kTransportUsbAdapter;
        sim.globals.gINIFile = test::programFolder() + "/Zentavia.ini";
        sim.adjustServices = [this](CellWeftServices& services) {
            services.usbAdapter
                = [this] { return std::make_unique<test::SimUsbAdapter>(adapter, sim.loop, script); };
        };
    }

    zvsim::UsbAdapter adapter;
    test::SimUsbScript script;
};

TEST_F(UsbDetection, ReopensTheAdapterAndLoadsTheTarget)
{
    (void)sim.driver().Usb.usbOpen();
    const auto start = sim.loop.milliseconds();
    EXPECT_EQ(detection().DetectTarget(false), detect::kLoaded);
    EXPECT_GE(sim.loop.milliseconds() - start, 1000) << "a second between closing and opening the adapter";
    EXPECT_EQ(sim.globals.gTargetName, "ZK9460");
    EXPECT_EQ(sim.driver().nodes.Count(), 8);
    EXPECT_TRUE(sim.port.written().empty()) << "the dongle is never touched";
}

TEST_F(UsbDetection, ATargetThatDoesNotUnlockGivesTheAdaptersCode)
{
    script.answer = [](const std::string& request) -> std::optional<std::string> {
        if (request.starts_with("WRITE"))
            return "3";
        return std::nullopt;
    };
    EXPECT_EQ(detection().DetectTarget(false), detect::kUsbUnlockFailed);
    EXPECT_TRUE(splash.btnScan.visible());
}

TEST_F(UsbDetection, TheScanFindsThePackAndStoresItsAddress)
{
    (void)sim.driver().Usb.usbOpen();
    zv::testing::TempFolder folder;
    sim.globals.gINIFile = folder.write("Zentavia.ini", "[Setup]\nCommunications=1\nAddress=0\n");
    DetectionHooks h = hooks();
    h.usbProbeAddress = [this](int address8) {
        std::uint8_t high = 0;
        std::uint8_t low = 0;
        return sim.driver().Usb.usbReadWord(static_cast<std::uint8_t>(address8 >> 1), 0, high, low) == 0;
    };
    h.connectStep = [this] { calls.push_back("connectStep"); };
    TargetDetection scan(services(), h);
    scan.setMain(&sim.main());

    scan.btnScan_Click();

    EXPECT_EQ(splash.lblStatus.caption(), "Found target device at address 0x16!");
    EXPECT_EQ(GetINIValue("Setup", "Address", sim.globals.gINIFile), "11");
    EXPECT_EQ(sim.globals.SMBusWriteAddress, 0x16);
    EXPECT_EQ(calls, std::vector<std::string> { "connectStep" });
    EXPECT_TRUE(splash.btnRestart.visible());
}

} // namespace
