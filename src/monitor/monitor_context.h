#pragma once
// What the live monitor (the poll, the lists and tabs, the parameter edits) works with.

#include <functional>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
class SettingsStore;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class ErrorHandler;
class clsMain;
class frmMain;

struct MonitorContext {
    frmMain& form;
    clsMain& main;
    AppGlobals& globals;
    platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    platform::EventLoop& loop;
    std::string programFolder;
    // True while the main window is the active form: only then do tray notifications show.
    std::function<bool()> mainFormActive;
    // The common error handler for an unexpected failure of a sample; none: it is dropped.
    ErrorHandler* errors = nullptr;
};

} // namespace zv
