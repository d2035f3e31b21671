#include "qt/application.h"

#include "core/error_log.h"
#include "core/paths.h"
#include "platform/desktop.h"
#include "platform/ui/twips.h"
#include "qt/connection_forms.h"
#include "qt/log_forms.h"
#include "qt/splash_form.h"
#include "startup/demo_capture.h"
#include "startup/program_entry.h"
#include "startup/program_exit.h"

#include <QApplication>
#include <QScreen>

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
        logs_.LogEvent(title.empty() ? text : title + ": " + text);
    };
    (void)binder_.bind(splash_, makeSplashForm());
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
    return true;
}

StartupParts Application::startupParts()
{
    StartupParts parts;
    parts.createMain = [this]() -> clsMain& { return createMain(); };
    parts.showModemLog = [this] {
        auto& log = logs_.modemLog();
        log.setAlwaysOnTop(true);
        log.show();
    };
    parts.availablePorts = [this] { return availablePorts(); };
    parts.commPortError = [this](int code) { return commPortError(code); };
    parts.endProgram = [this] { endProgram(); };
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
        if (mainShell_)
            mainShell_->hide();
    };
    hooks.loadMainForm = [] {};
    hooks.openLogin = [this] { access_->OpenLogin(); };
    return hooks;
}

clsMain& Application::createMain()
{
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
    services.activeWindow = [] { return UnsolicitedTarget::Other; };
    if (globals_.gDemo)
        services.demo = demoFileSource(globals_.gDemoFile);
    main_ = std::make_unique<clsMain>(std::move(services), dialogs_);
    main_->hooks.readDirectoryStatus
        = [this](int percent) { splash_.setStatus("Loading... " + std::to_string(percent) + "%"); };
    access_ = std::make_unique<UserAccess>(
        AccessServices { *main_, globals_, dialogs_, busCommandLock(main_->CellWeft().Bus) },
        mainWindowAccess());
    access_->onWindowCreated = [this](platform::ui::Window& window) { bindWindow(window); };
    return *main_;
}

bool Application::mainFormLoaded() const
{
    return mainShell_ && mainShell_->loaded();
}

void Application::showMainForm()
{
    if (!mainShell_) {
        mainShell_ = std::make_unique<MainShell>();
        mainShell_->mnuEventLog.onClick = [this] { logs_.eventLog().show(); };
        mainShell_->mnuCommunicationsLog.onClick = [this] { logs_.modemLog().show(); };
        mainShell_->mnuExit.onClick = [this] {
            if (closeMainWindow())
                mainShell_->unload();
        };
        mainShell_->onExit = [this] { endProgram(); };
        auto form = makeMainShellForm();
        dialogs_.setParent(form.get());
        (void)binder_.bind(*mainShell_, std::move(form));
    }
    activeForm_.setMainForm(mainShell_.get());
    activeForm_.set(mainShell_.get());
    mainShell_->show();
    if (access_) {
        access_->mainWindow().window = mainShell_.get();
        access_->GetUserLevelFromHardware();
    }
    startup_.detection.lanNotice.mainActivated(dialogs_);
}

bool Application::closeMainWindow()
{
    ExitServices exit { globals_, loop_, dialogs_, main_ ? &main_->CellWeft() : nullptr };
    if (access_)
        exit.closeCommandLock = [this] { access_->LockDevice(); };
    return CloseMainWindow(exit);
}

PortDialogServices Application::portDialogServices()
{
    PortDialogServices services { main_->CellWeft(), globals_, settings_, dialogs_, programFolder_,
        systemPortProber(settings_) };
    services.busyPointer = [](bool busy) {
        if (busy)
            QApplication::setOverrideCursor(Qt::WaitCursor);
        else
            QApplication::restoreOverrideCursor();
    };
    services.errors = &errors_;
    return services;
}

std::vector<int> Application::availablePorts()
{
    return portUtilities(portDialogServices()).GetAvailableCOMPorts();
}

CommPortChoice Application::commPortError(int code)
{
    frmCommPortError dialog(portDialogServices(), eventLoopModal(loop_));
    bindWindow(dialog);
    return dialog.CommPortError(code);
}

MainWindowAccess Application::mainWindowAccess()
{
    MainWindowAccess access;
    access.window = mainShell_.get();
    access.mnuConnect_Click = [this] { reconnect(); };
    access.showModal = modalOn(loop_);
    return access;
}

void Application::reconnect()
{
    splash_.show();
    activeForm_.set(&splash_);
    splash_.setStatus("Initializing communications...");
    loop_.processEvents();
    auto& detection = startup_.detection;
    startup_.actOnDetection(
        globals_.gDemo ? detection.DetectDemoTarget(false) : detection.DetectTarget(false));
}

void Application::endProgram()
{
    EndProgram(globals_.usbTransport(),
        { {}, [this] { releaseAll(); }, [this] { main_.reset(); }, [] { QCoreApplication::quit(); } });
}

void Application::releaseAll()
{
    activeForm_.clear();
    if (logs_.hasModemLog())
        logs_.modemLog().unload();
    if (logs_.hasEventLog())
        logs_.eventLog().unload();
    splash_.unload();
    dialogs_.setParent(nullptr);
    if (mainShell_) {
        mainShell_->onExit = nullptr;
        mainShell_->unload();
    }
}

} // namespace zv::qt
