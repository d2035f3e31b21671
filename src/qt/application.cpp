#include "qt/application.h"

#include "access/frm_login.h"
#include "connection/frm_comm_port.h"
#include "connection/frm_smbus_address.h"
#include "core/error_log.h"
#include "core/paths.h"
#include "driver/target_operations.h"
#include "firmware_loader/firmware_check.h"
#include "firmware_loader/frm_boot_strap_loader.h"
#include "platform/desktop.h"
#include "platform/ui/show_modal.h"
#include "platform/ui/twips.h"
#include "qt/connection_forms.h"
#include "qt/loader_form.h"
#include "qt/log_forms.h"
#include "qt/main_form.h"
#include "qt/splash_form.h"
#include "startup/demo_capture.h"
#include "startup/program_entry.h"
#include "startup/program_exit.h"

#include <QApplication>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTimer>

#include <clocale>

namespace zv::qt {

namespace {

platform::ui::ScreenSize screenSize()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return {};
    const QRect area = screen->geometry();
    return { platform::ui::pixelsToTwips(area.width()), platform::ui::pixelsToTwips(area.height()) };
}

char localeDecimalSeparator()
{
    const std::lconv* conventions = std::localeconv();
    return conventions && conventions->decimal_point && *conventions->decimal_point
        ? *conventions->decimal_point
        : '.';
}

// The command lock of the transport in use.
CommandLock commandLock(clsCellWeft& driver)
{
    auto target = std::make_shared<TargetOperations>(driver);
    return { [target] { return target->UnlockDevice(); },
        [target] { return target->EnableUlmarCommandSet(); },
        [target] { return target->DisableUlmarCommandSet(); }, [target] { return target->LockDevice(); },
        [target] { return target->GetAccessLevel(); } };
}

std::string versionText()
{
    return "Version " + QCoreApplication::applicationVersion().toStdString();
}

} // namespace

Application::Application(std::vector<std::string> arguments)
    : arguments_(std::move(arguments))
    , programFolder_(platform::programFolder())
    , settings_(platform::IniSettingsStore::defaultPath())
    , instance_(settings_.path())
    , logs_(globals_, LogWindowContext { settings_, screenSize, programFolder_ }, loop_, activeForm_)
    , errors_(dialogs_, loop_, joinPath(programFolder_, kErrorLogName),
          AbortSequence { [this] { releaseAll(); }, [] { QCoreApplication::exit(1); } })
    , splash_(loop_, versionText())
    , startup_(
          DetectionServices { globals_, loop_, dialogs_, settings_, programFolder_, activeForm_, splash_ },
          settings_, startupParts(), detectionHooks())
{
    logs_.onWindowCreated = [this](platform::ui::Window& window) { bindWindow(window); };
    dialogs_.fallbackNotify = [this](const std::string& title, const std::string& text) {
        if (mainForm_)
            mainForm_->NotifyInStatusBar(title, text);
        else
            logs_.LogEvent(title.empty() ? text : title + ": " + text);
    };
    (void)binder_.bind(splash_, makeSplashForm());
    if (!settings_.loadProblem().empty())
        logs_.LogEvent(settings_.loadProblem());
}

Application::~Application()
{
    releaseAll();
}

void Application::bindWindow(platform::ui::Window& window)
{
    auto form = makeFormFor(window.name());
    if (!form)
        form = makeConnectionForm(window.name());
    if (!form)
        form = makeLoaderFormFor(window.name());
    if (form)
        (void)binder_.bind(window, std::move(form));
}

bool Application::start()
{
    const ProgramEntry entry { arguments_, instance_.otherInstanceRuns(), localeDecimalSeparator(),
        programFolder_ };
    if (!Main(entry, globals_, dialogs_))
        return false;
    startup_.StartApplication();
    // An exit chosen during the start (the connection dialog's Exit) came before the loop runs.
    return !ended_;
}

StartupParts Application::startupParts()
{
    StartupParts parts;
    parts.BuildMenuPolicy = [this] { menuPolicy_ = BuildMenuPolicy(); };
    parts.createMain = [this]() -> clsMain& { return createMain(); };
    parts.showModemLog = [this] {
        auto& log = logs_.modemLog();
        log.setAlwaysOnTop(true);
        log.show();
    };
    parts.availablePorts = [this] { return availablePorts(); };
    parts.openUsbAdapter = [this] {
        auto& usb = main_->CellWeft().Usb;
        (void)usb.usbOpen();
        return usb.opened();
    };
    parts.commPortError = [this](int code) { return commPortError(code); };
    parts.endProgram = [this] { endSession(); };
    parts.otherWindowUp
        = [this] { return (mainForm_ && mainForm_->visible()) || (access_ && access_->login().visible()); };
    parts.reportError = [this](const std::string& description) {
        (void)errors_.ReportError(AppError { 1, description, "Zentavia" }, "modMain", "Main");
    };
    return parts;
}

DetectionHooks Application::detectionHooks()
{
    DetectionHooks hooks;
    hooks.mainFormLoaded = [this] { return mainFormLoaded(); };
    hooks.showMainForm = [this] { showMainForm(); };
    hooks.hideMainForm = [this] {
        if (mainForm_)
            mainForm_->hide();
    };
    hooks.loadMainForm = [this] {
        if (!mainForm_ || !main_)
            return;
        attachMonitor();
        mainForm_->LoadMainForm(*main_);
    };
    hooks.openLogin = [this] { access_->OpenLogin(); };
    hooks.usbProbeAddress = [this](int address8) {
        std::uint8_t high = 0;
        std::uint8_t low = 0;
        return main_->CellWeft().Usb.usbReadWord(static_cast<std::uint8_t>(address8 >> 1), 0, high, low) == 0;
    };
    hooks.connectStep = [this] { reconnect(); };
    hooks.openBootStrapLoader = [this] { openBootStrapLoader(); };
    return hooks;
}

clsMain& Application::createMain()
{
    monitor_.reset();
    access_.reset();
    main_.reset();
    port_ = std::make_unique<platform::QtSerialPort>(settings_);
    CellWeftServices services { *port_, loop_, dialogs_, settings_, globals_, programFolder_ };
    services.modemLog
        = [this](const std::string& text, bool transmitted) { logs_.log_ModemEvent(text, transmitted); };
    services.logEvent = [this](const std::string& text) { logs_.LogEvent(text); };
    services.readWriteLog = [this](std::string_view kind, std::string_view name, std::string_view number,
                                std::string_view value) { logs_.ReadWriteLog(kind, name, number, value); };
    services.infoStatus = [this](const std::string& text) { activeForm_.showInfo(text); };
    services.splashStatus = [this](const std::string& text) { splash_.setStatus(text); };
    services.mainWindowActive
        = [this] { return activeForm_.get() != nullptr && activeForm_.get() == activeForm_.mainForm(); };
    services.activeWindow = [this] {
        return loader_ && activeForm_.get() == loader_.get() ? UnsolicitedTarget::BootStrapLoader
                                                             : UnsolicitedTarget::Other;
    };
    services.linkRecovered = [this] {
        if (access_)
            access_->GetUserLevelFromHardware();
    };
    services.endProgram = [this] { endSession(); };
    if (globals_.gDemo)
        services.demo = demoFileSource(globals_.gDemoFile);
    main_ = std::make_unique<clsMain>(std::move(services), dialogs_);
    main_->hooks.readDirectoryStatus
        = [this](int percent) { splash_.setStatus("Loading... " + std::to_string(percent) + "%"); };
    access_ = std::make_unique<UserAccess>(
        AccessServices { *main_, globals_, dialogs_, commandLock(main_->CellWeft()) }, mainWindowAccess());
    access_->onWindowCreated = [this](platform::ui::Window& window) { bindWindow(window); };
    // A restart while the main window is up: its handlers move to the new monitor at once.
    if (mainForm_)
        attachMonitor();
    return *main_;
}

bool Application::mainFormLoaded() const
{
    return mainForm_ && mainForm_->loaded();
}

// Loads and shows frmMain and makes it the active form; its first load runs LoadMainForm (a
// window that is up already is loaded again by the flow that connected).
void Application::showMainForm()
{
    if (!mainForm_)
        createMainForm();
    const bool wasLoaded = mainForm_->loaded();
    activeForm_.setMainForm(mainForm_.get());
    activeForm_.set(mainForm_.get());
    if (access_)
        access_->mainWindow().window = mainForm_.get();
    attachMonitor();
    mainForm_->show();
    if (!wasLoaded)
        mainForm_->LoadMainForm(*main_);
    mainForm_->AddTrayIcon();
    startup_.detection.lanNotice.mainActivated(dialogs_);
}

void Application::attachMonitor()
{
    if (monitor_ && &monitor_->monitor().context.main == main_.get())
        return;
    monitor_.reset();
    MonitorContext context { *mainForm_, *main_, globals_, settings_, dialogs_, loop_, programFolder_,
        [this] { return activeForm_.get() == mainForm_.get(); }, &errors_ };
    MonitorWiringServices services { std::move(context), binder_, screenSize };
    services.setMousePointer = [this](int pointer) { setMousePointer(pointer); };
    services.showSplash = [this](const std::string& text) {
        splash_.show();
        splash_.setStatus(text);
    };
    services.closeSplash = [this] { splash_.unload(); };
    services.bringToFront = [this] { mainForm_->show(); };
    services.bindWindow = [this](platform::ui::Window& window) { bindWindow(window); };
    services.desktop = &desktop_;
    monitor_ = std::make_unique<MonitorWiring>(std::move(services));
    monitor_->monitor().edits.hooks.reload = [this] { reconnect(); };
    // Connect to Pack is the device commands' flow over the start-up's target detection.
    CommandHooks& commands = monitor_->commands().hooks();
    commands.DetectTarget = [this] {
        const int result = startup_.detection.DetectTarget(false);
        startup_.actOnDetection(result);
        return result == detect::kLoaded;
    };
    commands.DetectDemoTarget = [this] {
        if (startup_.detection.DetectDemoTarget(false) == detect::kLoaded)
            showMainForm();
    };
    commands.LoadMainForm = [this] {
        activeForm_.set(mainForm_.get());
        mainForm_->LoadMainForm(*main_);
    };
    commands.showMaximized = [this] {
        if (QWidget* window = binder_.widgetOf(*mainForm_))
            window->showMaximized();
    };
    if (access_) {
        MainWindowAccess& window = access_->mainWindow();
        window.IsTheDeviceWired = [this] { return monitor_ && monitor_->commands().IsTheDeviceWired(); };
        window.LoadTabs = [this] {
            if (!monitor_)
                return;
            monitor_->monitor().tabs.LoadTabs();
            monitor_->monitor().panes.buildRows();
        };
        window.rebuildSelectedCellRows = [this] {
            if (monitor_ && globals_.CurrentNode > 0)
                monitor_->monitor().tabs.NodeGrid_Load(globals_.CurrentNode);
        };
    }
}

void Application::createMainForm()
{
    mainForm_ = std::make_unique<frmMain>(
        MainFormContext { globals_, settings_, dialogs_, logs_, programFolder_, &desktop_, &errors_ });
    mainForm_->menuPolicy = [this](frmMain& window) {
        ApplyMenuPolicy(
            window, menuPolicy_, menuPolicyContext(globals_, [this] { return main_->UserAccessLevel(); }));
    };
    mainForm_->userLevelReader = [this](frmMain&) { access_->GetUserLevelFromHardware(); };
    // From inside an exchange with the device the close waits for the loop's top (the exchange
    // gives up at once), so that nothing on the stack uses the driver while it is released.
    mainForm_->closeRequested = [this] {
        return sessionEnd_.atTop([this] {
            if (mainForm_)
                mainForm_->requestClose();
        }) && closeMainWindow();
    };
    mainForm_->onExit = [this] { endProgram(); };
    mainForm_->firmwareCheck = [this] {
        (void)CheckFirmwareAtStartup(
            { globals_, dialogs_, loop_, programFolder_, [this]() -> frmBootStrapLoader& {
                 openBootStrapLoader();
                 return *loader_;
             } });
    };
    wireMainMenus();
    auto form = makeMainForm(*mainForm_);
    dialogs_.setParent(form.get());
    dialogs_.setTrayIcon(form->findChild<QSystemTrayIcon*>("trayIcon"));
    (void)binder_.bind(*mainForm_, std::move(form));
}

// The commands of the start-up, the access and the connection subsystems.
void Application::wireMainMenus()
{
    frmMain& w = *mainForm_;
    w.mnuBootstrapLoader.onClick = [this] { openBootStrapLoader(); };
    w.mnuChangeUserAccessLevel.onClick = [this] { access_->mnuChangeUserAccessLevel_Click(); };
    w.mnuAccessLevel.onClick = [this] { access_->mnuAccessLevel_Click(); };
    w.mnuConfigCommPort.onClick = [this] {
        frmCommPort dialog(portDialogServices(), platform::ui::eventLoopModal(loop_),
            [this](const std::string& text) { mainForm_->sbStatusBar.setPanelText(kCommPanel, text); });
        bindWindow(dialog);
        dialog.Show();
    };
    w.mnuSmbusAddress.onClick = [this] {
        auto& usb = main_->CellWeft().Usb;
        SMBusAddressServices services { globals_, dialogs_,
            [&usb](int address7, int command, std::uint8_t& high, std::uint8_t& low) {
                return usb.usbReadWord(
                    static_cast<std::uint8_t>(address7), static_cast<std::uint8_t>(command), high, low);
            },
            [this](const std::string& text) { mainForm_->sbStatusBar.setPanelText(kAlarmsPanel, text); },
            platform::ui::eventLoopModal(loop_), &errors_ };
        frmSMBusAddress dialog(std::move(services));
        bindWindow(dialog);
        dialog.Show();
    };
    w.mnuGenerateDemoINI.onClick = [this] {
        (void)GenerateDemoINI(main_->CellWeft(), globals_,
            { {}, [this](bool all) { mainForm_->disableAllCommands(all); },
                [this](bool all) { mainForm_->enableAllCommands(all); },
                [this](int pointer) { setMousePointer(pointer); } });
    };
    w.refreshAvailability();
}

void Application::setMousePointer(int pointer)
{
    constexpr int kHourglass = 11;
    if (pointer == kHourglass)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

bool Application::closeMainWindow()
{
    ExitServices exit { globals_, loop_, dialogs_, main_ ? &main_->CellWeft() : nullptr };
    exit.session = &sessionEnd_;
    if (monitor_) {
        exit.stopPolling = [this] { monitor_->monitor().poll.stopForClose(); };
        exit.commitChanges = [this] { monitor_->commitChanges(); };
    }
    if (access_)
        exit.closeCommandLock = [this] { access_->LockDevice(); };
    return CloseMainWindow(exit);
}

PortDialogServices Application::portDialogServices()
{
    PortDialogServices services { main_->CellWeft(), globals_, settings_, dialogs_, programFolder_,
        systemPortProber(settings_) };
    services.busyPointer = [this](bool busy) { setMousePointer(busy ? 11 : 0); };
    services.errors = &errors_;
    return services;
}

std::vector<int> Application::availablePorts()
{
    return portUtilities(portDialogServices()).GetAvailableCOMPorts();
}

CommPortChoice Application::commPortError(int code)
{
    frmCommPortError dialog(portDialogServices(), platform::ui::eventLoopModal(loop_));
    bindWindow(dialog);
    return dialog.CommPortError(code);
}

MainWindowAccess Application::mainWindowAccess()
{
    MainWindowAccess access;
    access.window = mainForm_.get();
    access.UpdateMenus = [this] {
        if (mainForm_)
            mainForm_->UpdateMenus();
    };
    access.SetMousePointer = [this](int pointer) { setMousePointer(pointer); };
    access.mnuConnect_Click = [this] { reconnect(); };
    access.showBootStrapLoader = [this] { openBootStrapLoader(); };
    access.showModal = platform::ui::eventLoopModal(loop_);
    access.endSession = [this] { endSession(); };
    return access;
}

void Application::reconnect()
{
    if (monitor_ && mainFormLoaded()) {
        monitor_->commands().mnuConnect_Click();
        return;
    }
    splash_.show();
    activeForm_.set(&splash_);
    splash_.setStatus("Initializing communications...");
    loop_.processEvents();
    auto& detection = startup_.detection;
    startup_.actOnDetection(globals_.gDemo ? detection.DetectDemoTarget(false) : detection.ReconnectTarget());
}

void Application::endSession()
{
    if (mainFormLoaded()) {
        mainForm_->requestClose();
        return;
    }
    if (ended_ || !sessionEnd_.atTop([this] { endSession(); }))
        return;
    ExitServices exit { globals_, loop_, dialogs_, main_ ? &main_->CellWeft() : nullptr };
    if (access_)
        exit.closeCommandLock = [this] { access_->LockDevice(); };
    (void)sessionEnd_.withinBudget([&exit] {
        CloseLink(exit);
        return true;
    });
    endProgram();
}

// gMain itself goes with the application object, after the event loop has returned: a handler
// that is still on the stack below may use it until then. Its port is released here.
void Application::endProgram()
{
    ended_ = true;
    EndProgram(globals_.usbTransport(),
        { [this] {
             if (main_)
                 main_->CellWeft().Usb.usbRelease();
         },
            [this] { releaseAll(); },
            [this] {
                if (port_ && port_->portOpen())
                    (void)port_->setPortOpen(false);
            },
            [] { QCoreApplication::quit(); } });
}

void Application::releaseAll()
{
    activeForm_.clear();
    loader_.reset();
    if (logs_.hasModemLog())
        logs_.modemLog().unload();
    if (logs_.hasEventLog())
        logs_.eventLog().unload();
    splash_.unload();
    dialogs_.setParent(nullptr);
    dialogs_.setTrayIcon(nullptr);
    monitor_.reset();
    if (mainForm_) {
        mainForm_->onExit = nullptr;
        mainForm_->closeRequested = nullptr;
        mainForm_->unload();
    }
}

} // namespace zv::qt

namespace zv::qt {

BootStrapLoaderServices Application::loaderServices()
{
    LoaderServices loader { *main_, globals_, loop_, dialogs_, programFolder_ };
    loader.logEvent = [this](const std::string& text) { logs_.LogEvent(text); };
    loader.reportLoadError = [this](const std::string& description) {
        (void)errors_.ReportError(
            AppError { 53, description, "Zentavia" }, "BootStrapLoader", "cmdLoadImage_Click");
    };
    BootStrapLoaderServices services { std::move(loader), settings_ };
    services.activeForm = &activeForm_;
    services.mainWindowOpen = [this] { return mainFormLoaded(); };
    services.enableMainWindow = [this](bool enabled) {
        if (mainForm_)
            mainForm_->setEnabled(enabled);
    };
    services.showMainWindow = [this] {
        if (mainFormLoaded())
            mainForm_->show();
    };
    services.restartApplication = [this] {
        loaderClosing_ = true;
        startup_.StartApplication();
        loaderClosing_ = false;
    };
    services.loadMainForm = [this] {
        if (!mainFormLoaded() || !main_)
            return;
        attachMonitor();
        mainForm_->LoadMainForm(*main_);
    };
    services.updateDeviceBits = [this] {
        if (monitor_)
            monitor_->monitor().poll.UpdateDeviceBits();
    };
    services.exitApplication = [this] { endProgram(); };
    services.setMousePointer = [this](int pointer) { setMousePointer(pointer); };
    services.beep = [] { QApplication::beep(); };
    return services;
}

void Application::openBootStrapLoader()
{
    if (!main_)
        return;
    if (loader_ && loader_->loaded()) {
        loader_->show();
        return;
    }
    if (loaderClosing_) {
        // The start-up runs from the closing loader: the new one opens once that has ended.
        QTimer::singleShot(0, QCoreApplication::instance(), [this] { openBootStrapLoader(); });
        return;
    }
    loader_ = std::make_unique<frmBootStrapLoader>(loaderServices());
    bindWindow(*loader_);
    if (mainFormLoaded())
        mainForm_->setEnabled(false);
    loader_->show();
}

} // namespace zv::qt
