#pragma once
// The application object: it owns the globals, the settings store, the event loop, the dialogs,
// the application logs and the windows, and hands them down.

#include "core/active_form.h"
#include "core/app_logs.h"
#include "core/error_handler.h"
#include "core/globals.h"
#include "monitor/frm_main.h"
#include "platform/ini_settings_store.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_event_loop.h"
#include "qt/binder.h"
#include "qt/qt_dialogs.h"

#include <memory>
#include <string>

namespace zv::qt {

class Application {
public:
    Application();
    ~Application();

    // Shows the main window; the caller runs the Qt event loop.
    void start();

    [[nodiscard]] AppGlobals& globals() { return globals_; }
    [[nodiscard]] AppLogs& logs() { return logs_; }
    [[nodiscard]] ErrorHandler& errors() { return errors_; }

private:
    void bindWindow(platform::ui::Window& window);
    void releaseAll();

    std::string programFolder_;
    AppGlobals globals_;
    platform::IniSettingsStore settings_;
    platform::QtEventLoop loop_;
    QtDialogs dialogs_;
    platform::QtDesktop desktop_;
    ActiveForm activeForm_;
    Binder binder_;
    AppLogs logs_;
    ErrorHandler errors_;
    std::unique_ptr<frmMain> mainForm_;
};

} // namespace zv::qt
