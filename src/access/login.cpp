#include "access/login.h"

#include "access/frm_login.h"
#include "access/frm_user_access_level.h"
#include "access/menu_policy.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "platform/event_loop.h"
#include "platform/ui/status_bar.h"

#include <algorithm>

namespace zv {

namespace {

constexpr int kLoginFile = 3;
constexpr int kStatusFile = 5;

void call(const std::function<void()>& hook)
{
    if (hook)
        hook();
}

} // namespace

CommandLock busCommandLock(SmbusTransactions& bus)
{
    return { [&bus] { return bus.UnlockDevice(); }, [&bus] { return bus.EnableUlmarCommandSet(); },
        [&bus] { return bus.DisableUlmarCommandSet(); }, [&bus] { return bus.LockDevice(); },
        [&bus] { return bus.GetAccessLevel(); } };
}

PasswordBytes passwordBytes(std::string_view text)
{
    PasswordBytes bytes {};
    const std::size_t count = std::min(text.size(), bytes.size());
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(text[i]);
    return bytes;
}

bool IsPasswordSet(const AppGlobals& globals, const PasswordBytes& bytPassword)
{
    return bytPassword != globals.gNoPassword;
}

bool LoginWithPassword(AccessServices& services, const PasswordBytes& bytPassword)
{
    (void)services.lock.UnlockDevice();
    (void)services.lock.EnableUlmarCommandSet();
    FileRequest request;
    request.access = 1;
    request.file = kLoginFile;
    request.offset = 0;
    request.count = 1;
    request.data.assign(bytPassword.begin(), bytPassword.end());
    request.usePec = true;
    return services.main.CellWeft().FileAccessRequest(request).ok;
}

int ReadUserLevel(AccessServices& services)
{
    if (services.globals.gTargetID == "1003")
        return services.lock.GetAccessLevel();
    auto& driver = services.main.CellWeft();
    std::string text;
    if (!driver.GetFile(kStatusFile, text))
        return 0;
    const ParameterPlace place = driver.FindParameter("Access Level", 0);
    if (!place.parameter)
        return 0;
    const auto level = place.parameter->value.asNumber(driver.Conversion.locale());
    return level ? static_cast<int>(*level) : 0;
}

void CloseCommandLock(AccessServices& services)
{
    if (services.globals.gDemo)
        return;
    (void)services.lock.DisableUlmarCommandSet();
    (void)services.lock.LockDevice();
}

UserAccess::UserAccess(AccessServices services, MainWindowAccess mainWindow)
    : services_(std::move(services))
    , mainWindow_(std::move(mainWindow))
{
}

UserAccess::~UserAccess() = default;

frmLogin& UserAccess::login()
{
    if (!login_) {
        login_ = std::make_unique<frmLogin>(*this);
        if (onWindowCreated)
            onWindowCreated(*login_);
    }
    return *login_;
}

frmUserAccessLevel& UserAccess::userAccessLevel()
{
    if (!userAccessLevel_) {
        userAccessLevel_ = std::make_unique<frmUserAccessLevel>(*this);
        if (onWindowCreated)
            onWindowCreated(*userAccessLevel_);
    }
    return *userAccessLevel_;
}

void UserAccess::GetUserLevelFromHardware()
{
    int& level = services_.main.UserAccessLevel();
    if (services_.globals.gDemo) {
        level = 2;
        call(mainWindow_.UpdateMenus);
        return;
    }
    // Started without a device ("Continue Disconnected"): nothing to read and nobody to log in to
    // until Connect to Pack finds one; the main window keeps its commands off meanwhile.
    if (services_.main.CellWeft().Status() == 1)
        return;
    if (services_.globals.gTargetID == "1003" && services_.globals.usbTransport() && mainWindow_.window)
        setControlVisible(*mainWindow_.window, "mnuConfigure", false);
    level = ReadUserLevel(services_);
    if (level >= 2 || level < 0) {
        call(mainWindow_.UpdateMenus);
        call(mainWindow_.LoadTabs);
        auto* statusBar = mainWindow_.window ? mainWindow_.window->statusBar() : nullptr;
        if (statusBar && statusBar->hasPanel("Access"))
            statusBar->setPanelText("Access", "Access Level " + std::to_string(level));
        return;
    }
    if (mainWindow_.window)
        mainWindow_.window->hide();
    login().load();
    call(mainWindow_.UpdateMenus);
    login().show();
}

void UserAccess::OpenLogin()
{
    login().show();
}

void UserAccess::mnuChangeUserAccessLevel_Click()
{
    if (mainWindow_.IsTheDeviceWired && !mainWindow_.IsTheDeviceWired())
        return;
    showModal(login());
    call(mainWindow_.rebuildSelectedCellRows);
}

void UserAccess::mnuAccessLevel_Click()
{
    if (mainWindow_.IsTheDeviceWired && !mainWindow_.IsTheDeviceWired())
        return;
    showModal(userAccessLevel());
}

void UserAccess::showModal(platform::ui::Window& window)
{
    if (mainWindow_.showModal)
        mainWindow_.showModal(window);
    else
        window.show();
}

} // namespace zv
