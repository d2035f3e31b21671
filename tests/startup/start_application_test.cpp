// The start sequence: the switches, the dongle search over the ports and the exit order.

#include "access/login.h"
#include "core/registry.h"
#include "core/temp_folder.h"
#include "startup/program_entry.h"
#include "startup/program_exit.h"
#include "startup_fixture.h"

#include <gtest/gtest.h>

using namespace zv;
using platform::Answer;

namespace {

TEST(ProgramEntry, SwitchesSetTheirFlagsWhateverTheirCase)
{
    test::SimHarness sim;
    const ProgramEntry entry { { "/PP /Cal470\t/al", "/unknown /BootLoader /breakonerror" }, false, ',',
        "/nowhere" };
    ASSERT_TRUE(Main(entry, sim.globals, sim.dialogs));
    const auto& g = sim.globals;
    EXPECT_TRUE(g.gShowLog && g.gAltConfigPrompt) << "/pp also opens the log";
    EXPECT_TRUE(g.gCal470Enabled);
    EXPECT_TRUE(g.gAccessMenuEnabled);
    EXPECT_TRUE(g.gLoaderOnly);
    EXPECT_FALSE(g.gBreakOnError) << "only the first five arguments count";
    EXPECT_EQ(g.gDemoFile, "/nowhere/demo.ini");
    EXPECT_EQ(g.gListSep, ";") << "a decimal comma makes the semicolon the list separator";
}

TEST(ProgramEntry, DemoWithoutItsFileSaysSoAndStartsNormally)
{
    test::SimHarness sim;
    sim.dialogs.answerMessage(Answer::OK);
    ASSERT_TRUE(Main({ { "/demo" }, false, '.', "/nowhere" }, sim.globals, sim.dialogs));
    EXPECT_FALSE(sim.globals.gDemo);
    EXPECT_EQ(sim.dialogs.lastShown().title, "File Not Found");
    EXPECT_EQ(sim.dialogs.lastShown().text, "The demonstration file is missing. Aborting demo mode startup.");

    zv::testing::TempFolder folder;
    folder.write("demo.ini", "[Target]\n");
    ASSERT_TRUE(Main({ { "/DEMO" }, false, '.', folder.path().string() }, sim.globals, sim.dialogs));
    EXPECT_TRUE(sim.globals.gDemo);
}

TEST(ProgramEntry, ASecondInstanceEndsAfterItsBox)
{
    test::SimHarness sim;
    sim.dialogs.answerMessage(Answer::OK);
    EXPECT_FALSE(Main({ { "/demo" }, true, '.', "/nowhere" }, sim.globals, sim.dialogs));
    EXPECT_EQ(sim.dialogs.shown().size(), 1u);
    EXPECT_EQ(sim.dialogs.lastShown().text, "Only one instance of Zentavia can be invoked simultaneously.");
    EXPECT_EQ(sim.dialogs.lastShown().icon, platform::Icon::Critical);
}

// Ports 1 to 4: what the test makes of each, and the choices given in frmCommPortError.
class DongleSearch : public ::testing::Test, public test::StartupFixture {
protected:
    DongleSearch()
    {
        sim.globals.gTransport = 0;
        auto toDongle = sim.port.onOutput;
        sim.port.onOutput = [this, toDongle](const std::string& bytes) {
            if (sim.port.commPort() == donglePort)
                toDongle(bytes);
        };
        StartupParts parts;
        parts.createMain = [this]() -> clsMain& { return sim.main(); };
        parts.availablePorts = [this] { return ports; };
        parts.commPortError = [this](int code) {
            errorCodes.push_back(code);
            const CommPortChoice choice
                = choices.empty() ? CommPortChoice::ContinueDisconnected : choices.front();
            if (!choices.empty())
                choices.erase(choices.begin());
            return choice;
        };
        parts.endProgram = [this] { calls.push_back("endProgram"); };
        parts.otherWindowUp = [this] { return otherWindowUp; };
        startup = std::make_unique<Startup>(services(), sim.settings, std::move(parts), hooks());
    }

    int donglePort = 4;
    std::vector<int> ports { 2, 3, 4 };
    std::vector<CommPortChoice> choices;
    std::vector<int> errorCodes;
    bool otherWindowUp = false;
    std::unique_ptr<Startup> startup;
};

TEST_F(DongleSearch, GoesOnPastAMissingABusyAndASilentPortToTheDongle)
{
    sim.port.setMissing(1);
    sim.port.setBusy(2);
    startup->StartApplication();

    EXPECT_EQ(errorCodes, std::vector<int> { 8005 })
        << "the busy port raised the dialog and the search went on";
    EXPECT_EQ(sim.driver().Link.SMBusCommPort, 4);
    EXPECT_EQ(sim.settings.value(std::string(kMainKey), "CommPort"), "4") << "the port that answered is kept";
    EXPECT_EQ(sim.globals.gTargetName, "ZK9460");
    EXPECT_TRUE(called("showMainForm"));
}

TEST_F(DongleSearch, NoDongleAnywhereGivesTheUnknownErrorAndTheProgramGoesOnOffline)
{
    donglePort = 0;
    startup->StartApplication();
    EXPECT_EQ(errorCodes, std::vector<int> { kNoDongleFound });
    EXPECT_FALSE(splash.loaded());
    EXPECT_EQ(sim.driver().Status(), 1);
    EXPECT_EQ(calls, std::vector<std::string> { "showMainForm" });
}

TEST_F(DongleSearch, APortInUseAtStartAsksAtOnceAndExitEndsTheProgram)
{
    sim.port.setBusy(1);
    choices = { CommPortChoice::ExitApplication };
    startup->StartApplication();
    EXPECT_EQ(errorCodes, std::vector<int> { 8005 });
    EXPECT_EQ(calls, std::vector<std::string> { "endProgram" });
    EXPECT_FALSE(splash.loaded());
}

TEST_F(DongleSearch, APortWithoutPermissionGoesToTheDialogWithItsNumberAndNothingIsStored)
{
    sim.port.setDenied(1);
    startup->StartApplication();
    EXPECT_EQ(errorCodes, std::vector<int> { platform::kPortErrorPermissionDenied });
    EXPECT_EQ(sim.settings.value(std::string(kMainKey), "CommPort"), "") << "not taken as a found dongle";
    EXPECT_TRUE(sim.port.written().empty()) << "no detection ran";
    EXPECT_EQ(sim.driver().Status(), 1) << "the user chose Continue Disconnected";
}

TEST_F(DongleSearch, TheSplashButtonsRestartAndExit)
{
    donglePort = 1;
    sim.pack->faults().noAckRate = 1.0;
    startup->StartApplication();
    EXPECT_TRUE(splash.btnRestart.visible());
    EXPECT_EQ(sim.settings.value(std::string(kMainKey), "CommPort"), "1");

    splash.btnExit.click();
    EXPECT_TRUE(called("endProgram"));

    sim.pack->faults().noAckRate = 0.0;
    splash.btnRestart.click();
    EXPECT_TRUE(called("showMainForm"));
    EXPECT_FALSE(splash.btnRestart.visible());
}

TEST_F(DongleSearch, TheSplashCloseBoxEndsTheProgramUnlessAnotherWindowIsUp)
{
    donglePort = 1;
    sim.pack->faults().noAckRate = 1.0;
    startup->StartApplication();
    otherWindowUp = true;
    splash.requestClose();
    EXPECT_FALSE(called("endProgram")) << "the main window or the login is still there";
    EXPECT_FALSE(splash.loaded());

    splash.show();
    otherWindowUp = false;
    splash.requestClose();
    EXPECT_TRUE(called("endProgram"));
}

class ExitOrder : public ::testing::Test, public test::StartupFixture {
protected:
    ExitOrder()
    {
        EXPECT_TRUE(sim.connect());
        sim.driver().Parameters.ParametersWritten = true;
        sim.port.clearWritten();
    }

    bool close(Answer answer)
    {
        sim.dialogs.answerMessage(answer);
        AccessServices access { sim.main(), sim.globals, sim.dialogs, busCommandLock(sim.driver().Bus) };
        return CloseMainWindow(
            { sim.globals, sim.loop, sim.dialogs, &sim.driver(), [this] { calls.push_back("commit"); }, {},
                {}, [&access] { CloseCommandLock(access); }, [this] { calls.push_back("removeTrayIcon"); } });
    }
};

TEST_F(ExitOrder, YesCommitsThenClosesTheCommandSetAndResetsTheDongle)
{
    EXPECT_TRUE(close(Answer::Yes));
    EXPECT_EQ(sim.dialogs.lastShown().title, "Save changes to Hardware");
    EXPECT_EQ(sim.dialogs.lastShown().buttons, platform::Buttons::YesNoCancel);
    EXPECT_EQ(calls, (std::vector<std::string> { "commit", "removeTrayIcon" }));
    const std::string& written = sim.port.written();
    const auto lock = written.find("~00~30~00"); // ManufacturerAccess 0x0030
    ASSERT_NE(lock, std::string::npos) << written;
    EXPECT_NE(written.find("\x12\x12\x12", lock), std::string::npos) << "the dongle was reset after the lock";
}

TEST_F(ExitOrder, NoDropsTheFlagWithoutCommitting)
{
    EXPECT_TRUE(close(Answer::No));
    EXPECT_FALSE(sim.driver().Parameters.ParametersWritten);
    EXPECT_EQ(calls, std::vector<std::string> { "removeTrayIcon" });
}

TEST_F(ExitOrder, CancelKeepsTheWindowAndTalksToNobody)
{
    EXPECT_FALSE(close(Answer::Cancel));
    EXPECT_TRUE(sim.driver().Parameters.ParametersWritten);
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(sim.port.written().empty());
}

TEST_F(DongleSearch, AnAdapterThatDoesNotOpenGivesScreenOneAndTheMainWindow)
{
    zv::testing::TempFolder folder;
    const std::string ini = folder.write("Zentavia.ini", "[Setup]\nCommunications=1\nAddress=0\n");
    sim.globals.gINIFile = ini;
    startup->StartApplication();
    EXPECT_TRUE(sim.globals.usbTransport());
    EXPECT_EQ(sim.globals.gAddress7, 11) << "no address on the USB transport means 0x0B";
    EXPECT_EQ(splash.lblStatus.caption(),
        "Communication error to hardware. Connection failed\r\nPlease check power and the connections to the "
        "hardware.");
    EXPECT_EQ(calls, std::vector<std::string> { "showMainForm" });
    EXPECT_TRUE(sim.port.written().empty()) << "the dongle is never touched";
}

} // namespace
