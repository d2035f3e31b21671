// Target detection against the in-process pack: every result and the splash screen it leaves.

#include "access/frm_login.h"
#include "access/login.h"
#include "startup_fixture.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

zvsim::PackOptions pack(
    std::uint16_t id, bool sealed = false, zvsim::PackState state = zvsim::PackState::Application)
{
    zvsim::PackOptions options;
    options.targetId = id;
    options.sealed = sealed;
    options.state = state;
    return options;
}

class DetectionTest : public ::testing::Test, public test::StartupFixture {
protected:
    explicit DetectionTest(zvsim::PackOptions options = {})
        : StartupFixture(options)
    {
    }

    int detect(bool targetChosen = false)
    {
        EXPECT_EQ(sim.driver().SMBus_Init(), 0);
        return detection().DetectTarget(targetChosen);
    }

    [[nodiscard]] bool faultButtonsShown() const
    {
        return splash.btnScan.visible() && splash.btnRestart.visible() && splash.btnExit.visible();
    }
};

// The detection against a pack made with these options.
template <std::uint16_t Id, bool Sealed = false, zvsim::PackState State = zvsim::PackState::Application>
class PackDetection : public DetectionTest {
protected:
    PackDetection()
        : DetectionTest(pack(Id, Sealed, State))
    {
    }
};

using SealedZK9470 = PackDetection<0x1003, true>;
using SealedZK9460 = PackDetection<0x1001, true>;
using UnknownTarget = PackDetection<0x2001>;
using ApplicationLoader = PackDetection<0x1001, false, zvsim::PackState::AppLoader>;
using SystemLoader = PackDetection<0x1001, false, zvsim::PackState::SystemLoader>;

TEST_F(DetectionTest, LoadsAKnownTargetAndLeavesTheSplashToItsTimer)
{
    EXPECT_EQ(detect(), detect::kLoaded);
    const auto& g = sim.globals;
    EXPECT_EQ(g.gTargetID, "1001");
    EXPECT_EQ(g.gTargetSection, "T1");
    EXPECT_EQ(g.gTargetName, "ZK9460");
    EXPECT_EQ(g.gTargetKey, "Software\\Norvale Systems\\Zentavia 3\\Settings\\Targets\\ZK9460");
    EXPECT_EQ(g.gTargetFS, 4097);
    EXPECT_TRUE(g.gCellsMatch);
    EXPECT_EQ(g.gNodeCount, 8);
    EXPECT_NE(g.gFirmwareVersion, 0);
    EXPECT_EQ(detection().StaticDefinitionFile,
        test::programFolder() + "/Data Logging Files/characterize_12cell.slog");

    auto& d = sim.driver();
    EXPECT_EQ(d.nodes.Count(), 8);
    EXPECT_GT(d.nodes.Item(8)->NodeParameters.Count(), 0) << "the cell configuration filled every node";
    EXPECT_EQ(sim.main().UserAccessLevel(), 3);
    EXPECT_EQ(d.Status(), 0);
    EXPECT_EQ(splash.lblStatus.caption(), "8 cells found.  Starting Zentavia.");
    EXPECT_TRUE(called("showMainForm"));
    EXPECT_FALSE(faultButtonsShown());

    ASSERT_TRUE(splash.tmrSplash->enabled());
    EXPECT_EQ(splash.tmrSplash->interval(), kSplashIntervalMs);
    sim.loop.wait(kSplashIntervalMs);
    EXPECT_FALSE(splash.loaded()) << "the splash goes away by itself";
}

TEST_F(DetectionTest, MigrateStoredKeyMovesAStoredKeyAndClearsItButLeavesAnUnwrittenRecord)
{
    ASSERT_EQ(detect(), detect::kLoaded);
    auto& d = sim.driver();
    const FileReply before = d.FileAccessRequest({ .file = 3 });
    detection().MigrateStoredKey();
    EXPECT_EQ(d.FileAccessRequest({ .file = 16, .offset = 2 }).text, kRecordNeverWritten);
    EXPECT_EQ(d.FileAccessRequest({ .file = 3 }).text, before.text);

    const std::vector<std::uint8_t> key { 'e', 'n', 'g', 'i', 'n', 'e', 'e', 'r' };
    ASSERT_TRUE(d.FileAccessRequest({ .access = 1, .file = 16, .offset = 2, .data = key }).ok);
    ASSERT_FALSE(sim.globals.gAlgEnableBit3);
    const int algorithm
        = static_cast<int>(d.GatewayParameters.FindByName("Algorithm Enable")->value.number());
    sim.readWriteLines.clear();

    detection().MigrateStoredKey();

    EXPECT_EQ(d.FileAccessRequest({ .file = 16, .offset = 2 }).text, kRecordNeverWritten);
    const std::string write = "Write Word: Algorithm Enable 0x900 ";
    EXPECT_EQ(sim.readWriteLines,
        (std::vector<std::string> {
            write + std::to_string(algorithm | 8), write + std::to_string(algorithm) }))
        << "bit 3 is set for the move and toggled back after the commit";
}

TEST_F(SealedZK9470, StopsAtTheSealBeforeAnyConfiguration)
{
    EXPECT_EQ(detect(), detect::kSealed);
    EXPECT_EQ(splash.lblStatus.caption(), "The target device is sealed!");
    EXPECT_TRUE(called("openLogin"));
    EXPECT_FALSE(called("showMainForm"));
    EXPECT_EQ(sim.driver().Directory.DirectoryElements.Count(), 0) << "no directory read";
    EXPECT_EQ(sim.driver().GatewayParameters.Count(), 0) << "readConfig never ran";
    EXPECT_EQ(sim.driver().Status(), 1);
    EXPECT_EQ(activeForm.get(), &splash);
    EXPECT_TRUE(splash.tmrSplash->enabled()) << "the splash leaves for the login";
}

TEST_F(SealedZK9470, TheRightPasswordInTheLoginLoadsTheTarget)
{
    int result = detect();
    ASSERT_EQ(result, detect::kSealed);
    MainWindowAccess mainWindow;
    mainWindow.mnuConnect_Click = [&] { result = detection().DetectTarget(false); };
    UserAccess access({ sim.main(), sim.globals, sim.dialogs, busCommandLock(sim.driver().Bus) }, mainWindow);
    access.OpenLogin();
    access.login().txtPassword.userEdit("engineer");
    access.login().cmdLogon.click();

    EXPECT_EQ(result, detect::kLoaded);
    EXPECT_EQ(sim.main().UserAccessLevel(), 2);
    EXPECT_EQ(sim.driver().nodes.Count(), 16);
    EXPECT_TRUE(called("showMainForm"));
}

TEST_F(SealedZK9460, ReadsItsFilesThenOpensTheLoginAndHidesTheMainWindow)
{
    mainShown = true; // a reconnection from the main window
    EXPECT_EQ(detect(), detect::kSealed);
    EXPECT_GT(sim.driver().GatewayParameters.Count(), 0) << "the configuration was read";
    EXPECT_EQ(sim.main().UserAccessLevel(), 0);
    EXPECT_EQ(sim.driver().nodes.Count(), 0) << "no cells are built";
    EXPECT_EQ(calls, (std::vector<std::string> { "hideMainForm", "openLogin" }));
    EXPECT_EQ(splash.lblStatus.caption(), "The target device is sealed!");
}

TEST_F(UnknownTarget, OffersTheChoiceAndLoadsTheTargetChosenByHand)
{
    EXPECT_EQ(detect(), detect::kUnknownTarget);
    EXPECT_EQ(sim.globals.gTargetID, "2001");
    EXPECT_TRUE(splash.lblStatus.caption().starts_with(
        "The attached device is reporting an unsupported target application.\r\nTargetID = 2001\r\n"));
    EXPECT_NE(splash.lblStatus.caption().find("click 'Bootloader' to install now."), std::string::npos);
    EXPECT_EQ(splash.cmbTarget.items(), (std::vector<std::string> { "ZK9460", "ZK9460S12", "ZK9470" }));
    for (const auto* control : { &splash.cmdLoad, &splash.CmdBootloader, &splash.cmdExit })
        EXPECT_TRUE(control->visible());
    EXPECT_FALSE(called("showMainForm"));

    splash.cmbTarget.userSelect(1);
    detection().cmdLoad_Click();

    EXPECT_EQ(sim.globals.gTargetID, "1002");
    EXPECT_EQ(sim.globals.gTargetName, "ZK9460S12");
    EXPECT_TRUE(sim.globals.gAverageVoltages);
    EXPECT_FALSE(splash.cmdLoad.visible());
    EXPECT_TRUE(called("showMainForm"));
    EXPECT_TRUE(called("loadMainForm"));
    EXPECT_GT(sim.driver().nodes.Count(), 0);
}

TEST_F(ApplicationLoader, ShowsScreenFourAndLeavesForTheLoaderIfThereIsOne)
{
    EXPECT_EQ(detect(), detect::kApplicationLoader);
    EXPECT_EQ(
        splash.lblStatus.caption(), "The hardware needs to be (re)programmed.\r\nLoading Bootloader...");
    EXPECT_TRUE(splash.tmrSplash->enabled());
    EXPECT_FALSE(faultButtonsShown());

    TargetDetection bare(services(), {});
    bare.setMain(&sim.main());
    EXPECT_FALSE(bare.OpenBootStrapLoader());
    EXPECT_FALSE(splash.tmrSplash->enabled());
    EXPECT_TRUE(faultButtonsShown());
}

TEST_F(SystemLoader, ShowsScreenThree)
{
    EXPECT_EQ(detect(), detect::kSystemLoader);
    EXPECT_EQ(splash.lblStatus.caption(),
        "The hardware needs to be (re)programmed.\r\nLoading System Bootloader...");
    EXPECT_EQ(sim.driver().GatewayParameters.Count(), 0);
}

TEST_F(DetectionTest, ASilentTargetGivesNoAnswerAndTheRetryButtons)
{
    ASSERT_EQ(sim.driver().SMBus_Init(), 0);
    sim.pack->faults().noAckRate = 1.0;
    EXPECT_EQ(detection().DetectTarget(false), detect::kNoAnswer);
    EXPECT_EQ(splash.lblStatus.caption(),
        "Unable to connect to device\r\nPlease check power and the connections to the hardware.");
    EXPECT_TRUE(faultButtonsShown());
    EXPECT_FALSE(splash.tmrSplash->enabled());
    EXPECT_EQ(sim.driver().Status(), 1);
}

TEST_F(DetectionTest, AMissingConfigurationFileGivesScreenTwo)
{
    ASSERT_EQ(sim.driver().SMBus_Init(), 0);
    ASSERT_EQ(detection().DetectTarget(false), detect::kLoaded);
    sim.driver().Config.GatewayConfigFileName = test::programFolder() + "/missing.cfg";
    sim.dialogs.answerMessage(platform::Answer::OK); // the reader's own box
    EXPECT_EQ(detection().DetectTarget(true), detect::kCommunicationError);
    EXPECT_EQ(splash.lblStatus.caption(),
        "An error has occurred while reading the configuration files.\r\nPlease check power and the "
        "connections "
        "to the hardware.");
    EXPECT_TRUE(faultButtonsShown());
}

TEST_F(DetectionTest, AlternateConfigurationDeclinedKeepsTheTargetsFiles)
{
    sim.globals.gAltConfigPrompt = true;
    sim.dialogs.answerMessage(platform::Answer::No);
    EXPECT_EQ(detect(), detect::kLoaded);
    EXPECT_EQ(sim.dialogs.shown().front().title, "Load Alternate Configuration");
    EXPECT_EQ(sim.dialogs.shown().front().text, "Would you like to load alternate configuration files?");
}

TEST_F(DetectionTest, AlternateConfigurationAsksUntilAFileReads)
{
    sim.globals.gAltConfigPrompt = true;
    const std::string folder = test::programFolder() + "/Configuration Files/ZK9460/";
    sim.dialogs.answerMessage(platform::Answer::Yes);
    sim.dialogs.answerOpenFiles({ folder + "nothing.cfg" });
    sim.dialogs.answerMessage(platform::Answer::OK); // the reader's box about that file
    sim.dialogs.answerOpenFiles({ folder + "ZK9460_Master.cfg" });
    sim.dialogs.answerOpenFiles({ folder + "ZK9460_Cell.cfg" });
    EXPECT_EQ(detect(), detect::kLoaded);
    EXPECT_EQ(sim.dialogs.pendingAnswers(), 0u);
    const auto& cellDialog = sim.dialogs.lastShown();
    EXPECT_EQ(cellDialog.file.title, "Please select the Cell Configuration File");
    EXPECT_EQ(cellDialog.file.filter, "Zentavia Cell Config (*.cfg)|*.cfg|");
}

TEST_F(DetectionTest, BuildsTheReportedCellsAndTellsOnceThatTheLanIsNotBuilt)
{
    ASSERT_EQ(detect(), detect::kLoaded);
    auto& d = sim.driver();
    d.GatewayParameters.FindByName("Expected Number Of Cells")->NewValue = 9;
    ASSERT_TRUE(d.WriteParameter("Expected Number Of Cells", 0));
    ASSERT_EQ(detection().DetectTarget(false), detect::kLoaded);
    EXPECT_FALSE(sim.globals.gCellsMatch);
    EXPECT_EQ(d.nodes.Count(), 8) << "the cells the hardware reports";

    sim.dialogs.answerMessage(platform::Answer::OK);
    detection().lanNotice.mainActivated(sim.dialogs);
    detection().lanNotice.mainActivated(sim.dialogs);
    ASSERT_EQ(sim.dialogs.shown().size(), 1u);
    EXPECT_EQ(sim.dialogs.lastShown().title, "LAN is not built!");
}

} // namespace

namespace {

// Connect to Pack after the dongle was unplugged and plugged back: the port is opened and the
// dongle configured again before the unlock, so the first try finds the pack; with the dongle
// still away it fails on the first screen at once.
TEST_F(DetectionTest, ReconnectOpensTheDonglesPortAgainFirst)
{
    ASSERT_EQ(detect(), detect::kLoaded);
    sim.port.pull();
    EXPECT_EQ(detection().ReconnectTarget(), detect::kNoAnswer);
    EXPECT_EQ(splash.lblStatus.caption(),
        "Unable to connect to device\r\nPlease check power and the connections to the hardware.");

    sim.replaceEndpoint({});
    sim.port.plugIn();
    EXPECT_EQ(detection().ReconnectTarget(), detect::kLoaded);
    EXPECT_TRUE(sim.pack->commandSetOpen());
}

} // namespace
