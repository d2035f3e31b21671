// The seal and the login against the simulated pack: the level read by target, the login window,
// wrong and right passwords, communication failure, cancel, demo mode and the lock at exit.

#include "access_rig.h"
#include "platform/ui/show_modal.h"

#include <gtest/gtest.h>

using namespace zv;
using platform::Answer;
using platform::Icon;

namespace {

constexpr const char* kSealedText
    = "This device is password protected. Please enter the password to unseal the "
      "device before using this application.";

void expectBox(const platform::ShownDialog& box, const std::string& text)
{
    EXPECT_EQ(box.text, text);
    EXPECT_EQ(box.title, "Password Protected Device");
    EXPECT_EQ(box.icon, Icon::Critical);
}

} // namespace

TEST(Login, PasswordBytesAndTheUnsetPattern)
{
    EXPECT_EQ(passwordBytes(""), PasswordBytes {}) << "an empty password still sends eight zero bytes";
    EXPECT_EQ(passwordBytes("abcdefgh"), (PasswordBytes { 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h' }));
    EXPECT_EQ(passwordBytes("abcdefghij"), passwordBytes("abcdefgh"));

    AppGlobals globals;
    EXPECT_FALSE(IsPasswordSet(globals, globals.gNoPassword));
    EXPECT_TRUE(IsPasswordSet(globals, PasswordBytes {}));
    EXPECT_TRUE(IsPasswordSet(globals, { 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE }));

    test::AccessRig rig(test::packOptions(0x1001, false));
    rig.typePassword("123456789");
    EXPECT_EQ(rig.access.login().txtPassword.text(), "12345678") << "the field takes eight characters";
}

TEST(Login, SealedTargetOpensTheLoginWhichTakesAnyNumberOfWrongPasswords)
{
    test::AccessRig rig(test::packOptions(0x1001, true));
    rig.connect("ZK9460");
    rig.level() = 3;
    rig.access.GetUserLevelFromHardware();

    frmLogin& login = rig.access.login();
    EXPECT_EQ(rig.level(), 0) << "read from \"Access Level\" of file 5";
    EXPECT_FALSE(rig.window.visible());
    EXPECT_TRUE(login.visible());
    EXPECT_EQ(login.caption(), "Zentavia - Device Sealed");
    EXPECT_EQ(login.Label2.caption(), kSealedText);
    EXPECT_FALSE(rig.window.shown("mnuAccessLevel")) << "the menus follow the sealed level";
    EXPECT_TRUE(rig.window.shown("mnuConnect"));

    for (const char* wrong : { "wrong", "Engineer" }) {
        rig.sim.dialogs.answerMessage(Answer::OK);
        rig.logon(wrong);
        expectBox(rig.sim.dialogs.lastShown(), "Invalid Password!");
        EXPECT_TRUE(login.visible());
        EXPECT_EQ(login.txtPassword.text(), "");
        EXPECT_EQ(rig.sim.globals.gPasswordText, "");
        EXPECT_EQ(rig.sim.globals.gPasswordBytes, passwordBytes(wrong)) << "kept as typed";
    }
    EXPECT_EQ(rig.sim.dialogs.shown().size(), 2u);
    EXPECT_EQ(rig.connects, 0);

    rig.logon("engineer");
    EXPECT_EQ(rig.sim.dialogs.shown().size(), 2u) << "no box on success";
    EXPECT_EQ(rig.connects, 1);
    EXPECT_EQ(rig.levelAtConnect, 2) << "targets 1001 and 1002 store the level at the login";
    EXPECT_FALSE(login.loaded());
    EXPECT_EQ(rig.sim.globals.gPasswordText, "engineer");
    EXPECT_EQ(rig.sim.globals.gPasswordBytes, passwordBytes("engineer"));

    rig.window.show();
    rig.access.GetUserLevelFromHardware();
    EXPECT_EQ(rig.level(), 2);
    EXPECT_EQ(rig.tabLoads, 1);
    EXPECT_EQ(rig.window.sbStatusBar.panelText("Access"), "Access Level 2");
    EXPECT_TRUE(rig.window.shown("mnuAccessLevel"));
    EXPECT_FALSE(rig.window.shown("mnuView"));
}

TEST(Login, PasswordThatCannotBeSentKeepsTheText)
{
    test::AccessRig rig(test::packOptions(0x1002, true));
    rig.connect("ZK9460S12");
    rig.access.GetUserLevelFromHardware();
    rig.sim.pack->faults().forcedStatus = 3;
    rig.sim.dialogs.answerMessage(Answer::OK);
    rig.logon("engineer");
    expectBox(rig.sim.dialogs.lastShown(), "Error communicating to the device.");
    EXPECT_EQ(rig.access.login().txtPassword.text(), "engineer");
    EXPECT_EQ(rig.sim.globals.gPasswordText, "");
    EXPECT_EQ(rig.connects, 0);
    EXPECT_EQ(rig.packLevel(), 0);

    rig.access.login().cmdLogon.click();
    EXPECT_EQ(rig.connects, 1) << "the same text goes through once the link works";
}

TEST(Login, TargetThatChecksTheSealFirstReadsItsLevelByManufacturerAccess)
{
    test::AccessRig rig(test::packOptions(0x1003, true));
    rig.openLink();
    rig.sim.globals.gAccessMenuEnabled = true;
    rig.sim.globals.settings.AutoLogging = true;
    rig.access.GetUserLevelFromHardware();
    EXPECT_EQ(rig.level(), 0);
    ASSERT_TRUE(rig.access.login().visible());
    EXPECT_TRUE(rig.window.shown("mnuChangeUserAccessLevel")) << "/al on 1003, even when sealed";
    EXPECT_FALSE(rig.window.shown("mnuStartLogging")) << "hidden with automatic logging";
    EXPECT_EQ(rig.access.login().caption(), "Zentavia - Device Sealed");

    rig.logon("engineer");
    EXPECT_EQ(rig.connects, 1);
    EXPECT_EQ(rig.levelAtConnect, 0) << "the repeated detection sets the level on 1003, not the login";
    EXPECT_EQ(rig.level(), 2);

    rig.access.OpenLogin();
    rig.access.login().btnCancel.click();
    EXPECT_EQ(rig.sessionEnds, 1) << "leaving the login ends the session on 1003";
}

TEST(Login, CancelAndTheCloseBoxByTargetNeverLeaveTheProcessWithoutAWindow)
{
    struct Case {
        std::uint16_t target;
        bool mainShown;
        bool closeBox;
        bool loginStays;
        int sessionEnds;
    };
    const Case cases[] = {
        { 0x1001, false, false, false, 1 }, // the start-up's login: nothing else to go back to
        { 0x1001, true, false, false, 0 }, // login on demand: back to the main window
        { 0x1002, false, true, false, 1 },
        { 0x1002, true, true, false, 0 },
        { 0x1003, true, false, false, 1 }, // the sealed main window has nothing to offer
        { 0x1003, false, true, false, 1 },
        { 0x4711, true, false, true, 0 }, // an unknown target's Cancel does nothing
        { 0x4711, false, true, false, 1 },
    };
    for (const Case& c : cases) {
        test::AccessRig rig(test::packOptions(c.target, true));
        rig.window.setVisible(c.mainShown);
        rig.access.OpenLogin();
        if (c.closeBox)
            rig.access.login().requestClose();
        else
            rig.access.login().btnCancel.click();
        const std::string what = rig.sim.globals.gTargetID + (c.mainShown ? " shown" : " hidden");
        EXPECT_EQ(rig.access.login().visible(), c.loginStays) << what;
        EXPECT_EQ(rig.sessionEnds, c.sessionEnds) << what;
    }
}

TEST(Login, CancelAsAFirmwareLoaderShowsTheLoader)
{
    test::AccessRig rig(test::packOptions(0x1001, true));
    int loaderShown = 0;
    rig.access.mainWindow().showBootStrapLoader = [&] { ++loaderShown; };
    rig.sim.globals.gLoaderOnly = true;
    rig.access.OpenLogin();
    rig.access.login().btnCancel.click();
    EXPECT_EQ(loaderShown, 1);
    EXPECT_FALSE(rig.access.login().visible());
    EXPECT_EQ(rig.sessionEnds, 0);
}

TEST(Login, OpenOrUnreadableLevelsGoOnWithoutLogin)
{
    test::AccessRig rig(test::packOptions(0x1003, false, 3));
    rig.openLink();
    rig.access.GetUserLevelFromHardware();
    EXPECT_EQ(rig.level(), 3);
    EXPECT_FALSE(rig.access.login().visible());
    EXPECT_EQ(rig.window.sbStatusBar.panelText("Access"), "Access Level 3");
    EXPECT_TRUE(rig.window.shown("mnuView"));

    rig.sim.pack->faults().noAckRate = 1.0;
    rig.sim.dialogs.answerMessage(Answer::OK);
    rig.access.GetUserLevelFromHardware();
    EXPECT_LT(rig.level(), 0);
    EXPECT_FALSE(rig.access.login().visible()) << "a negative level opens no login";
    EXPECT_TRUE(rig.window.visible());
    EXPECT_FALSE(rig.window.shown("mnuConnect"));
}

TEST(Login, OfflineStartAsksNoLoginUntilAPackIsConnected)
{
    test::AccessRig rig(test::packOptions(0x1001, true));
    rig.sim.globals.gTargetID.clear();
    rig.sim.driver().Link.Status = 1; // "Continue Disconnected"
    rig.access.GetUserLevelFromHardware();
    EXPECT_FALSE(rig.access.login().visible());
    EXPECT_TRUE(rig.window.visible()) << "the main window stays up, offline";
    EXPECT_TRUE(rig.window.shown("mnuConnect")) << "Connect to Pack stays reachable";
    EXPECT_EQ(rig.sim.port.written(), "");

    rig.sim.driver().Link.Status = 0;
    rig.sim.globals.gTargetID = "1001";
    rig.connect("ZK9460");
    rig.access.GetUserLevelFromHardware();
    EXPECT_TRUE(rig.access.login().visible()) << "the connected pack is sealed";
}

TEST(Login, DemoModeIsLevelTwoWithoutTraffic)
{
    test::AccessRig rig(test::packOptions(0x1001, true));
    rig.sim.globals.gDemo = true;
    rig.access.GetUserLevelFromHardware();
    rig.access.LockDevice();
    EXPECT_EQ(rig.level(), 2);
    EXPECT_EQ(rig.sim.port.written(), "");
    EXPECT_TRUE(rig.window.shown("mnuAccessLevel"));
    EXPECT_FALSE(rig.window.shown("mnuView"));
}

TEST(Login, LoginWithPasswordAndTheLockAtExit)
{
    test::AccessRig rig(test::packOptions(0x1001, true));
    rig.connect("ZK9460");
    AccessServices& services = rig.access.services();
    EXPECT_TRUE(LoginWithPassword(services, passwordBytes("nope"))) << "the device takes any password";
    EXPECT_EQ(rig.packLevel(), 0);
    EXPECT_TRUE(LoginWithPassword(services, passwordBytes("engineer")));
    EXPECT_EQ(rig.packLevel(), 2);
    EXPECT_EQ(rig.sim.dialogs.shown().size(), 0u);

    rig.access.LockDevice();
    EXPECT_EQ(rig.packLevel(), 0) << "the seal closes again";
    EXPECT_FALSE(rig.sim.pack->commandSetOpen());
}

TEST(Login, LoginOnDemandWaitsForTheWindowThenRebuildsTheCellRows)
{
    test::AccessRig rig(test::packOptions(0x1003, false, 2));
    rig.openLink();
    auto& hooks = rig.access.mainWindow();
    bool wired = false;
    std::vector<std::string> steps;
    hooks.IsTheDeviceWired = [&] { return wired; };
    hooks.rebuildSelectedCellRows = [&] { steps.push_back("rows"); };
    hooks.showModal = [&](platform::ui::Window& window) {
        steps.push_back(window.name());
        window.show();
        rig.logon("user");
    };
    rig.access.mnuChangeUserAccessLevel_Click();
    EXPECT_TRUE(steps.empty()) << "nothing while the device is not wired";

    wired = true;
    rig.sim.dialogs.answerMessage(Answer::OK);
    rig.access.mnuChangeUserAccessLevel_Click();
    EXPECT_EQ(steps, (std::vector<std::string> { "frmLogin", "rows" }));
    expectBox(rig.sim.dialogs.lastShown(), "Invalid Password!");
    EXPECT_EQ(rig.packLevel(), 1) << "the level 1 password was taken, but only 2 and 3 pass";
}
