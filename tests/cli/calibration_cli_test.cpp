// save-cal, restore-cal and calibrate against the in-process pack.

#include "calibration/cal_file.h"
#include "cli_fixture.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

class CalibrationCliTest : public CliTest {
protected:
    void SetUp() override
    {
        folder = fs::temp_directory_path()
            / ("zv_calcli_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }
    [[nodiscard]] zvsim::FileStore& files() { return sim.pack->model().files; }
    [[nodiscard]] std::string path(const char* name) const { return (folder / name).string(); }

    fs::path folder;
};

TEST_F(CalibrationCliTest, SaveThenRestoreAnotherSizeOnlyWithYes)
{
    auto result = run({ "save-cal", path("pack.cal") });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Save Calibration Data: Calibration data has been saved.\n");
    const auto saved = files().bytes(24);

    // Another size: refused without --yes, written with it.
    auto longer = saved;
    longer.push_back(0);
    ASSERT_EQ(writeFileAtomically(
                  path("other.cal"), calLineText(longer) + "\r\n" + calLineText(files().bytes(31)) + "\r\n"),
        "");
    files().set("Current Gain", 31000);
    result = run({ "restore-cal", path("other.cal") });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("does not match the device"));
    EXPECT_THAT(result.err, HasSubstr("Operation has been aborted."));
    EXPECT_EQ(files().get("Current Gain"), 31000u);
    result = run({ "restore-cal", path("other.cal"), "--yes" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Calibration data has been restored."));
    files().restart(); // committed: flash holds it
    EXPECT_EQ(files().bytes(24), saved);
    EXPECT_EQ(run({ "save-cal", path("pack.cal"), "--yes" }).status, 2) << "--yes belongs to restore-cal";
}

TEST_F(CalibrationCliTest, StepsLeaveCalibrationModeAsFound)
{
    const auto before = files().get("Algorithm Enable");
    auto result = run({ "calibrate", "current-offset" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Sending zero offset calibration data... success\n"));
    EXPECT_THAT(result.out, HasSubstr("Committed to flash.\n"));
    const auto wired = before | 0x08u; // set on the way, as the desktop program offers
    EXPECT_EQ(files().get("Algorithm Enable"), wired);

    result = run({ "calibrate", "current-gain", "--", "-1000" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Sending current gain calibration data [-1000 mA]... success\n"));
    EXPECT_THAT(result.out, HasSubstr("Current:         -1000 mA"));
    EXPECT_EQ(files().get("Algorithm Enable"), wired);

    result = run({ "calibrate", "temperature", "25C" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("T1:             25.2 °C"));

    result = run({ "calibrate", "cell", "3", "2800", "4200" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(
        result.out, HasSubstr("Sending upper voltage calibration data [4200 mV] for cell 3... success\n"));
    EXPECT_NE(files().get("Cell 3 Voltage Gain"), 32768u);
    EXPECT_EQ(files().get("Algorithm Enable"), wired);
}

TEST_F(CalibrationCliTest, BadValuesSendNothing)
{
    const char* const cases[][4] = {
        { "current-gain", "32001", nullptr },
        { "current-gain", "ten", nullptr },
        { "temperature", "31C", nullptr },
        { "temperature", "290K", nullptr },
        { "temperature", "25", nullptr },
        { "cell", "3", "2699", "4200" },
        { "cell", "9", "2800", "4200" },
        { "offset", nullptr },
    };
    const auto flash = files().flashText();
    const auto algorithm = files().get("Algorithm Enable");
    for (const auto& c : cases) {
        std::vector<std::string> line { "calibrate" };
        for (const char* word : c)
            if (word)
                line.emplace_back(word);
        const auto result = run(line);
        EXPECT_EQ(result.status, 2) << line[1] << " " << result.err;
    }
    EXPECT_EQ(files().get("Algorithm Enable"), algorithm) << "not even the wired bit";
    EXPECT_EQ(files().flashText(), flash);
}

TEST(CalibrationCliTarget, VoltageStepsOnlyWhereOffered)
{
    zvsim::PackOptions options;
    options.targetId = 0x1003;
    CliRig rig(options);
    auto result = rig.run({ "calibrate", "cell", "1", "2800", "4200" });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Target 1003 offers no voltage calibration steps"));
    result = rig.run({ "calibrate", "temperature", "298K" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_NEAR(rig.sim.pack->model().files.word(21, 0), 2980, 1);
}

} // namespace
} // namespace zv::test
