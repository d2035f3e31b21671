// The communications error dialog of the start-up: its texts for each error, the port list, and
// the connection attempts against the simulated dongle.

#include "connection/frm_comm_port_error.h"
#include "connection_fixture.h"
#include "core/error_handler.h"
#include "core/registry.h"
#include "core/temp_folder.h"
#include "platform/ui/show_modal.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

constexpr const char* kUnknownPrefix
    = "An unknown error occured while attempting to connect with the hardware.  "
      "The error code returned was: ";

} // namespace

TEST(CommPortErrorTexts, EachErrorNumberHasItsTitleAndDescription)
{
    const auto missing = frmCommPortError::errorTexts(8002);
    EXPECT_EQ(missing.title, "Communications with the hardware failed.");
    EXPECT_EQ(missing.description,
        "The serial port used for communicating with the hardware cannot be opened.  Please choose from the "
        "list "
        "of available ports below to attempt to connect using that port.  If you wish to use the application "
        "without connecting to the hardware, please choose 'Continue Disconnected.'");

    const auto inUse = frmCommPortError::errorTexts(8005);
    EXPECT_EQ(inUse.title, missing.title);
    EXPECT_EQ(inUse.description,
        "The serial port used for communicating with the hardware is already open. Please choose from the "
        "list of "
        "available ports below to attempt to connect using that port.  If you wish to use the application "
        "without "
        "connecting to the hardware, please choose 'Continue Anyway.'");

    const auto silent = frmCommPortError::errorTexts(10001);
    EXPECT_EQ(silent.title, missing.title);
    EXPECT_EQ(silent.description,
        "The serial port was opened successifully, but the HLK dongle was not detected.\r\n\r\n"
        "Possible causes:\r\n"
        "The HLK dongle is not installed.\r\n"
        "Power is not connected to the HLK dongle.\r\n"
        "The wrong COM Port is selected.\r\n"
        "The HLK dongle is installed on a COM port higher then COM16.");

    const auto search = frmCommPortError::errorTexts(kNoDongleFound);
    EXPECT_EQ(search.title, "Unknown Error");
    EXPECT_EQ(search.description, "65529");
    const auto denied = frmCommPortError::errorTexts(70);
    EXPECT_EQ(denied.title, missing.title);
    for (const char* hint : { "error 70", "'dialout' group", "udev rule", "'Continue Disconnected.'" })
        EXPECT_NE(denied.description.find(hint), std::string::npos) << hint;
}

TEST(CommPortError, OpensWithTheTextsAndTheStoredPortSelected)
{
    test::ConnectionFixture f(1);
    f.present = { 2, 3 };
    f.sim.settings.setValue(std::string(kMainKey), "CommPort", "3");
    frmCommPortError form(f.services(), f.whileShown([&] {
        EXPECT_EQ(form.caption(), "Zentavia - Communications Error");
        EXPECT_EQ(form.lblTitle.caption(), "Unknown Error");
        EXPECT_EQ(form.lblErrorDescription.caption(), "65529");
        EXPECT_EQ(form.cmbCommPort.items(), (std::vector<std::string> { "COM1 (Default)", "COM2", "COM3" }));
        EXPECT_EQ(form.cmbCommPort.selectedPort(), 3);

        f.present = { 5 };
        form.cmdRefresh.click();
        EXPECT_EQ(form.cmbCommPort.items(), (std::vector<std::string> { "COM1 (Default)", "COM5" }));
        form.cmdContinueDisconnected.click();
    }));
    EXPECT_EQ(form.CommPortError(kNoDongleFound), CommPortChoice::ContinueDisconnected);
    EXPECT_FALSE(form.loaded());
}

TEST(CommPortError, ConnectOnTheDonglePortEndsTheDialogConnected)
{
    test::ConnectionFixture f(1, 4);
    f.present = { 4 };
    frmCommPortError form(f.services(), f.whileShown([&] {
        form.cmbCommPort.userSelect(1);
        form.cmdConnect.click();
    }));
    EXPECT_EQ(form.CommPortError(10001), CommPortChoice::Connected);
    EXPECT_EQ(f.sim.driver().Link.SMBusCommPort, 4);
    EXPECT_EQ(f.sim.globals.settings.CommPort, 4);
    EXPECT_EQ(f.sim.settings.value(std::string(kMainKey), "CommPort"), "")
        << "the start stores it afterwards";
    EXPECT_EQ(f.busyPointer, (std::vector<bool> { true, false }));
    EXPECT_TRUE(f.sim.port.portOpen());
}

TEST(CommPortError, FailedAttemptsKeepTheDialogAndTellWhy)
{
    test::ConnectionFixture f(1, 6);
    f.present = { 2, 3, 6 };
    f.sim.port.setMissing(2);
    f.sim.port.setBusy(3);
    std::vector<std::pair<std::string, std::string>> shown;
    frmCommPortError form(f.services(), f.whileShown([&] {
        for (const int row : { 1, 2, 0 }) {
            form.cmbCommPort.userSelect(row);
            form.cmdConnect.click();
            shown.emplace_back(form.lblTitle.caption(), form.lblErrorDescription.caption());
            EXPECT_TRUE(form.visible());
        }
        form.cmdExitApplication.click();
    }));
    EXPECT_EQ(form.CommPortError(8005), CommPortChoice::ExitApplication);

    ASSERT_EQ(shown.size(), 3U);
    for (const auto& [title, description] : shown)
        EXPECT_EQ(title, "Communications with the hardware failed.");
    EXPECT_EQ(shown[0].second,
        "The serial port used for communicating with the hardware cannot be opened.  "
        "Please choose from the list of available ports above to attempt to connect using that port.");
    EXPECT_EQ(shown[1].second, kUnknownPrefix + std::string("8005")) << "a port held elsewhere is listed";
    EXPECT_EQ(shown[2].second, dongleNotDetectedText(false, true)) << "no line on power after a try";
}

TEST(CommPortError, TheEventLoopModalReturnsWhenAButtonHidesTheDialog)
{
    test::ConnectionFixture f(1, 1);
    frmCommPortError form(f.services(), platform::ui::eventLoopModal(f.sim.loop));
    form.setChangeListener([](const platform::ui::ChangeEvent&) {}); // its form
    f.sim.loop.post(5000, [&] { form.cmdConnect.click(); });
    EXPECT_EQ(form.CommPortError(8002), CommPortChoice::Connected);
    EXPECT_GE(f.sim.loop.milliseconds(), 5000);
}

TEST(CommPortError, AFailureWhileLoadingGoesToTheErrorLog)
{
    zv::testing::TempFolder folder;
    test::ConnectionFixture f;
    ErrorHandler handler(f.sim.dialogs, f.sim.loop, folder.file("error.log"), {});
    f.errors = &handler;
    auto services = f.services();
    services.portPresent = [](int) -> bool { throw std::runtime_error("device list unreadable"); };
    f.sim.dialogs.answerMessage(platform::Answer::Ignore);
    frmCommPortError form(std::move(services), f.whileShown([&] { form.cmdContinueDisconnected.click(); }));
    EXPECT_EQ(form.CommPortError(8002), CommPortChoice::ContinueDisconnected);
    const auto log = folder.read("error.log");
    EXPECT_NE(log.find("\tCommPortError\tLoad\t"), std::string::npos) << log;
    EXPECT_NE(log.find("device list unreadable"), std::string::npos);
}
