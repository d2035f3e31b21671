// zentavia-cli firmware and sysinfo against the in-process pack: the exit codes of a good image,
// a refused one, a damaged one and a failed verification, and the calibration carried across.

#include "cli_fixture.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

const std::string kImage6000
    = programFolder() + "/Configuration Files/ZK9470/Firmware/FW_0002_0000_6000_0719.enc";
const std::string kImage5000
    = programFolder() + "/Configuration Files/ZK9460S12/Firmware/FW_0001_0000_5000_0012.enc";

zvsim::PackOptions pack(std::uint16_t target, zvsim::PackState state)
{
    zvsim::PackOptions options;
    options.targetId = target;
    options.state = state;
    return options;
}

TEST(CliFirmware, ExitCodesTellWhatBecameOfTheImage)
{
    const auto loader = zvsim::PackState::AppLoader;
    const auto application = zvsim::PackState::Application;
    struct Case {
        const char* name;
        zvsim::PackOptions pack;
        std::vector<std::string> arguments;
        int status;
        const char* out; // a part of stdout, or nothing
        const char* err; // a part of stderr, or nothing
        zvsim::PackState after;
    } cases[] = {
        { "good image from the loader", pack(0x1003, loader), { "firmware", kImage6000 }, 0,
            "After: ZK9470 Information (target 1003)\n  Hardware state:               0x0000\n",
            "Downloading block 3 of 3", application },
        { "good image over the USB adapter", pack(0x1003, loader),
            { "--usb", "socket:sim", "firmware", kImage6000 }, 0,
            "  Verification:                 Verification completed OK (0)\n", "Complete", application },
        { "another target's image", pack(0x1002, application), { "firmware", kImage6000 }, 3, nullptr,
            "Invalid File Version: Error: File FW_0002_0000_6000_0719.enc is not compatible with this "
            "device.",
            application },
        { "not a firmware file", pack(0x1003, loader), { "firmware", programFolder() + "/Zentavia.ini" }, 3,
            nullptr, "Invalid File Format: The file Zentavia.ini is not a valid firmware file.", loader },
        { "no such file", pack(0x1003, loader), { "firmware", "/nonexistent/x.enc" }, 3, nullptr,
            "cannot be read", loader },
        { "damaged image", pack(0x1003, loader),
            { "firmware",
                std::string(ZENTAVIA_SOURCE_DIR)
                    + "/tests/firmware_loader/images/FW_0002_0000_6000_0719_damaged.enc" },
            4, nullptr, "CRC error", loader },
        { "preserve without --yes", pack(0x1001, application),
            { "firmware", kImage5000, "--preserve-cal", "x.cal" }, 2, nullptr, "--preserve-cal needs --yes",
            application },
        { "preserve on 1003", pack(0x1003, application),
            { "firmware", kImage6000, "--preserve-cal", "x.cal", "--yes" }, 2, nullptr,
            "for target 1001 only", application },
        { "sysinfo in the loader", pack(0x1003, loader), { "sysinfo" }, 5,
            "  Verification:                 Application memory failed to verify (1)\n", nullptr, loader },
        { "sysinfo in the application", pack(0x1001, application), { "sysinfo" }, 0,
            "ZK9460 Information (target 1001)\n  Hardware state:               0x0000\n", nullptr,
            application },
    };
    for (const auto& c : cases) {
        CliRig rig(c.pack);
        const auto result = rig.run(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.name << "\n" << result.err;
        if (c.out) {
            EXPECT_THAT(result.out, HasSubstr(c.out)) << c.name;
        }
        if (c.err) {
            EXPECT_THAT(result.err, HasSubstr(c.err)) << c.name;
        }
        rig.sim.loop.advance(20000);
        EXPECT_EQ(rig.sim.pack->model().state, c.after) << c.name;
    }
}

TEST(CliFirmware, TheCalibrationIsSavedAndCarriedIntoTheNewFirmware)
{
    CliRig rig(pack(0x1001, zvsim::PackState::Application));
    auto& calibration = rig.sim.pack->model().files.bytes(24);
    for (std::size_t i = 36; i < calibration.size(); ++i)
        calibration[i] = static_cast<std::uint8_t>(i);
    const auto old = calibration;
    const fs::path file = fs::temp_directory_path() / "zv_cli_preserve.cal";
    fs::remove(file);

    const auto result = rig.run({ "firmware", kImage5000, "--preserve-cal", file.string(), "--yes" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("Confirm Selection: Warning! This option should only be selected"));
    EXPECT_THAT(result.err, HasSubstr("Preserve Calibration: Calibration has been preserved."));
    EXPECT_TRUE(fs::exists(file));
    const auto& now = rig.sim.pack->model().files.bytes(24);
    EXPECT_EQ(std::vector(now.begin() + 36, now.end()), std::vector(old.begin() + 36, old.end()));
    fs::remove(file);
}

} // namespace
} // namespace zv::test
