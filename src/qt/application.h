#pragma once
// The application object: it owns the globals, the settings store, the event loop, the dialogs,
// the application logs, gMain and the windows, and hands them down. It runs Main and
// StartApplication and answers their hooks with the real windows.

#include "access/login.h"
#include "access/menu_policy.h"
#include "core/active_form.h"
#include "core/app_logs.h"
#include "core/error_handler.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "platform/ini_settings_store.h"
#include "platform/qt/qt_desktop.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_serial_port.h"
#include "qt/binder.h"
#include "qt/monitor_wiring.h"
#include "qt/qt_dialogs.h"
#include "qt/single_instance.h"
#include "startup/frm_splash.h"
#include "startup/session_end.h"
#include "startup/start_application.h"

#include <memory>
#include <string>
#include <vector>

namespace zv {
class frmBootStrapLoader;
struct BootStrapLoaderServices;
} // namespace zv

namespace zv::qt {

class Application {
public:
    // The command line without the program's own name.
    explicit Application(std::vector<std::string> arguments);
    ~Application();

    // Main, then StartApplication. False: the program ends at once (another instance runs).
    [[nodiscard]] bool start();

    [[nodiscard]] AppGlobals& globals() { return globals_; }
    [[nodiscard]] AppLogs& logs() { return logs_; }
    [[nodiscard]] ErrorHandler& errors() { return errors_; }

private:
    void bindWindow(platform::ui::Window& window);
    [[nodiscard]] StartupParts startupParts();
    [[nodiscard]] DetectionHooks detectionHooks();
    clsMain& createMain();
    void showMainForm();
    void createMainForm();
    // The live monitor of the main window with its editor and commands, made anew for each gMain.
    void attachMonitor();
    void wireMainMenus();
    void setMousePointer(int pointer);
    [[nodiscard]] bool mainFormLoaded() const;
    [[nodiscard]] bool closeMainWindow();
    [[nodiscard]] std::vector<int> availablePorts();
    [[nodiscard]] CommPortChoice commPortError(int code);
    [[nodiscard]] PortDialogServices portDialogServices();
    [[nodiscard]] MainWindowAccess mainWindowAccess();
    // mnuConnect: the splash and the target detection again.
    void reconnect();
    // Every way out: the main window's close request when it is loaded, otherwise the start-up's
    // exit order (command set closed, dongle reset) and EndProgram.
    void endSession();
    void endProgram();
    void releaseAll();
    // frmBootStrapLoader: from the menu, the splash, a loader state at start-up and /bootloader.
    void openBootStrapLoader();
    [[nodiscard]] BootStrapLoaderServices loaderServices();

    std::vector<std::string> arguments_;
    std::string programFolder_;
    AppGlobals globals_;
    platform::IniSettingsStore settings_;
    SingleInstance instance_;
    platform::QtEventLoop loop_;
    SessionEnd sessionEnd_ { loop_ };
    bool ended_ = false; // EndProgram ran
    QtDialogs dialogs_;
    platform::QtDesktop desktop_;
    ActiveForm activeForm_;
    Binder binder_;
    AppLogs logs_;
    ErrorHandler errors_;
    std::unique_ptr<platform::QtSerialPort> port_;
    std::unique_ptr<clsMain> main_;
    std::unique_ptr<UserAccess> access_;
    clsMenuCol menuPolicy_;
    std::unique_ptr<frmMain> mainForm_;
    std::unique_ptr<MonitorWiring> monitor_; // the live monitor of mainForm_ over main_
    frmSplash splash_;
    Startup startup_;
    std::unique_ptr<frmBootStrapLoader> loader_; // made anew at each opening
    bool loaderClosing_ = false; // the loader's close runs the start-up again
};

} // namespace zv::qt
