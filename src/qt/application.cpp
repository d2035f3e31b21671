#include "qt/application.h"

#include "core/error_log.h"
#include "core/paths.h"
#include "platform/desktop.h"
#include "platform/ui/twips.h"
#include "qt/log_forms.h"

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
    mainShell_ = std::make_unique<MainShell>();
    mainShell_->mnuEventLog.onClick = [this] { logs_.eventLog().show(); };
    mainShell_->mnuCommunicationsLog.onClick = [this] { logs_.modemLog().show(); };
    mainShell_->onExit = [] { QCoreApplication::quit(); };
    auto form = makeMainShellForm();
    dialogs_.setParent(form.get());
    (void)binder_.bind(*mainShell_, std::move(form));
    activeForm_.setMainForm(mainShell_.get());
    activeForm_.set(mainShell_.get());
    mainShell_->show();
}

void Application::releaseAll()
{
    activeForm_.clear();
    if (logs_.hasModemLog())
        logs_.modemLog().unload();
    if (logs_.hasEventLog())
        logs_.eventLog().unload();
    dialogs_.setParent(nullptr);
    if (mainShell_) {
        mainShell_->onExit = nullptr;
        mainShell_->unload();
    }
}

} // namespace zv::qt
