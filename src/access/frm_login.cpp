#include "access/frm_login.h"

#include "access/login.h"
#include "core/globals.h"
#include "driver/cls_main.h"

namespace zv {

namespace {

constexpr const char* kLoginTitle = "Password Protected Device";

bool sealDetectingTarget(const std::string& target)
{
    return target == "1001" || target == "1002" || target == "1003";
}

} // namespace

void limitToPasswordLength(platform::ui::TextBox& box)
{
    box.onChange = [&box] {
        if (box.text().size() > kPasswordLength)
            box.setText(box.text().substr(0, kPasswordLength));
    };
}

frmLogin::frmLogin(UserAccess& access)
    : Window("frmLogin")
    , access_(access)
{
    setCaption("Zentavia");
    lblPassword.setCaption("Password:");
    cmdLogon.setCaption("Logon");
    btnCancel.setCaption("Cancel");
    limitToPasswordLength(txtPassword);
    cmdLogon.onClick = [this] { cmdLogon_Click(); };
    btnCancel.onClick = [this] { btnCancel_Click(); };
    addControls({ &lblPassword, &txtPassword, &Label2, &cmdLogon, &btnCancel });
}

void frmLogin::handleLoad()
{
    if (!sealDetectingTarget(access_.services().globals.gTargetID))
        return;
    setCaption("Zentavia - Device Sealed");
    Label2.setCaption("This device is password protected. Please enter the password to unseal the device "
                      "before using this application.");
}

void frmLogin::cmdLogon_Click()
{
    AccessServices& services = access_.services();
    AppGlobals& globals = services.globals;
    globals.gPasswordBytes = passwordBytes(txtPassword.text());
    if (!LoginWithPassword(services, globals.gPasswordBytes)) {
        services.dialogs.messageBox("Error communicating to the device.", platform::Buttons::OK,
            platform::Icon::Critical, kLoginTitle);
        return;
    }
    globals.gPasswordText = txtPassword.text();
    const std::string& target = globals.gTargetID;
    const int level = sealDetectingTarget(target) ? ReadUserLevel(services) : 0;
    if (target == "1001" || target == "1002")
        services.main.UserAccessLevel() = level;
    if (level != 2 && level != 3) {
        refuseLogin();
        return;
    }
    hide();
    if (access_.mainWindow().mnuConnect_Click)
        access_.mainWindow().mnuConnect_Click();
    unload();
}

void frmLogin::refuseLogin()
{
    show();
    txtPassword.setText({});
    access_.services().globals.gPasswordText.clear();
    access_.services().dialogs.messageBox(
        "Invalid Password!", platform::Buttons::OK, platform::Icon::Critical, kLoginTitle);
}

// 1001 and 1002 leave the login, 1003 leaves the program (its sealed main window has nothing to
// offer). With no main window on the screen, leaving the login leaves the program as well: the
// process never stays without a window.
void frmLogin::btnCancel_Click()
{
    const AppGlobals& globals = access_.services().globals;
    MainWindowAccess& mainWindow = access_.mainWindow();
    if (globals.gLoaderOnly) {
        hide();
        if (mainWindow.showBootStrapLoader)
            mainWindow.showBootStrapLoader();
        return;
    }
    const bool mainWindowShown = mainWindow.window && mainWindow.window->visible();
    if (globals.gTargetID == "1001" || globals.gTargetID == "1002")
        unload();
    else if (globals.gTargetID != "1003" && mainWindowShown)
        return;
    if (globals.gTargetID == "1003" || !mainWindowShown) {
        unload();
        if (mainWindow.endSession)
            mainWindow.endSession();
    }
}

bool frmLogin::handleCloseRequest()
{
    btnCancel_Click();
    return !loaded() || !visible();
}

} // namespace zv
