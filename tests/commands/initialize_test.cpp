// Initialize restarts the target from flash and waits for it by target; relearn with "Preserve
// User Cal" writes the calibration file back after the restart.

#include "commands_fixture.h"

#include "driver/cls_main.h"

namespace zv::test {
namespace {

class InitializeTest : public CommandsTest {
protected:
    // Virtual milliseconds that an initialize takes for the target.
    std::int64_t initializeTime(const std::string& target)
    {
        h.globals.gTargetID = target;
        const auto start = h.loop.milliseconds();
        EXPECT_TRUE(commands->CommandInitialize(false));
        return h.loop.milliseconds() - start;
    }
    // "Current Offset" of file 24 changed in RAM only.
    std::int16_t changeCalibrationInRam()
    {
        auto& files = h.pack->model().files;
        const auto changed = static_cast<std::int16_t>(files.getSigned("Current Offset") + 7);
        files.setSigned("Current Offset", changed);
        return changed;
    }
};

TEST_F(InitializeTest, SmallTargetsWaitFiveSecondsOthersTen)
{
    const auto small = initializeTime("1001");
    EXPECT_GE(small, 5000);
    EXPECT_LT(small, 10000);
    EXPECT_GE(initializeTime("1002"), 5000);
    EXPECT_LT(initializeTime("1002"), 10000);
    EXPECT_GE(initializeTime("1003"), 10000);
    EXPECT_GE(initializeTime("ABCD"), 10000);
}

TEST_F(InitializeTest, TheSplashIsPaintedBeforeTheFirstByteGoesOut)
{
    bool painted = false;
    bool paintedAtFirstByte = false;
    bool sent = false;
    auto toDongle = h.port.onOutput;
    h.port.onOutput = [&](const std::string& bytes) {
        if (!sent)
            paintedAtFirstByte = painted;
        sent = true;
        toDongle(bytes);
    };
    // Showing a window asks for its paint through the event loop, as the toolkit does.
    commands->hooks().showSplash = [&](const std::string&) { h.loop.post(0, [&] { painted = true; }); };
    made->mnuInitialize.onClick();
    EXPECT_TRUE(sent);
    EXPECT_TRUE(paintedAtFirstByte);
}

TEST_F(InitializeTest, InitializeComesBackWithTheLinkUpAndReadsEverything)
{
    std::vector<std::string> splash;
    commands->hooks().showSplash = [&](const std::string& text) { splash.push_back(text); };
    made->mnuInitialize.onClick();

    EXPECT_EQ(splash, std::vector<std::string> { "Initializing... Please Wait!" });
    EXPECT_TRUE(h.pack->commandSetOpen());
    EXPECT_TRUE(called("Parameters_ReadAll"));
    expectOnlyNotification(
        "Zentavia Flash Initialized!", "Flash has been initialized to its last saved state.");
    std::string text;
    EXPECT_TRUE(h.driver().GetFile(1, text));
}

TEST_F(InitializeTest, RelearnLosesUncommittedCalibrationPreserveKeepsIt)
{
    setDeviceWired(true);
    const auto flashValue = h.pack->model().files.getSigned("Current Offset");
    (void)changeCalibrationInRam();
    made->mnuRelearn.onClick();
    EXPECT_EQ(h.pack->model().files.getSigned("Current Offset"), flashValue);

    const auto changed = changeCalibrationInRam();
    made->mnuRelearnPreserve.onClick();
    EXPECT_EQ(h.pack->model().files.getSigned("Current Offset"), changed);
    EXPECT_FALSE(commands->UserCalibrationImage.empty());
    EXPECT_TRUE(made->mnuInitialize.enabled());
}

} // namespace
} // namespace zv::test
