#include "qt/application.h"

#include "core/error_log.h"
#include "core/paths.h"
#include "platform/desktop.h"
#include "platform/ui/twips.h"
#include "qt/log_forms.h"
#include "qt/main_form.h"

#include <QApplication>
#include <QScreen>
#include <QSystemTrayIcon>

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

} // namespace

Application::Application()
    : programFolder_(platform::programFolder())
    , settings_(platform::IniSettingsStore::defaultPath())
    , logs_(globals_, LogWindowContext { settings_, screenSize, programFolder_ }, loop_, activeForm_)
    , errors_(dialogs_, loop_, joinPath(programFolder_, kErrorLogName),
          AbortSequence { [this] { releaseAll(); }, [] { QCoreApplication::exit(1); } })
{
    globals_.gINIFile = joinPath(programFolder_, "Zentavia.ini");
    globals_.gDemoFile = joinPath(programFolder_, "demo.ini");
    globals_.setDecimalSeparator(localeDecimalSeparator());
    globals_.settings = readStartupSettings(settings_, programFolder_);

    logs_.onWindowCreated = [this](platform::ui::Window& window) { bindWindow(window); };
    dialogs_.fallbackNotify = [this](const std::string& title, const std::string& text) {
        if (mainForm_)
            mainForm_->NotifyInStatusBar(title, text);
        else
            logs_.LogEvent(title.empty() ? text : title + ": " + text);
    };
}

Application::~Application()
{
    releaseAll();
}

void Application::bindWindow(platform::ui::Window& window)
{
    if (auto form = makeFormFor(window.name()))
        (void)binder_.bind(window, std::move(form));
}

void Application::start()
{
    mainForm_ = std::make_unique<frmMain>(
        MainFormContext { globals_, settings_, dialogs_, logs_, programFolder_, &desktop_, &errors_ });
    mainForm_->onExit = [] { QCoreApplication::quit(); };
    auto form = makeMainForm(*mainForm_);
    dialogs_.setParent(form.get());
    dialogs_.setTrayIcon(form->findChild<QSystemTrayIcon*>("trayIcon"));
    (void)binder_.bind(*mainForm_, std::move(form));
    activeForm_.setMainForm(mainForm_.get());
    activeForm_.set(mainForm_.get());
    mainForm_->show();
    mainForm_->AddTrayIcon();
}

void Application::releaseAll()
{
    activeForm_.clear();
    if (logs_.hasModemLog())
        logs_.modemLog().unload();
    if (logs_.hasEventLog())
        logs_.eventLog().unload();
    dialogs_.setParent(nullptr);
    dialogs_.setTrayIcon(nullptr);
    if (mainForm_) {
        mainForm_->onExit = nullptr;
        mainForm_->unload();
    }
}

} // namespace zv::qt
