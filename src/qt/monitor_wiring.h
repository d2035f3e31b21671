#pragma once
// The parts of the main window that work on the live monitor: the parameter editor, the device
// commands and the output commands, made together with the Monitor and wired to its hooks and to
// frmMain's entries. The application makes them anew with each gMain, right after it, so the
// window's handlers always point at the live set.

#include "calibration/calibration_commands.h"
#include "commands/device_commands.h"
#include "editor/parameter_editor.h"
#include "logging/logging_commands.h"
#include "monitor/app_settings_files.h"
#include "monitor/monitor.h"
#include "outputs/output_commands.h"
#include "pack_configuration/pack_flows.h"

#include <functional>
#include <string>

namespace zv {
}

namespace zv::qt {

class Binder;

// What the wiring takes from the application.
struct MonitorWiringServices {
    MonitorContext context;
    Binder& binder;
    std::function<platform::ui::ScreenSize()> screen;
    std::function<void(int)> setMousePointer; // 11 hourglass, 0 default
    std::function<void(const std::string&)> showSplash;
    std::function<void()> closeSplash;
    std::function<void()> bringToFront;
    // Binds a window made on first use to its Qt form.
    std::function<void(platform::ui::Window&)> bindWindow;
    // The associated program of an exported log.
    platform::Desktop* desktop = nullptr;
};

class MonitorWiring {
public:
    explicit MonitorWiring(MonitorWiringServices services);
    ~MonitorWiring();
    MonitorWiring(const MonitorWiring&) = delete;
    MonitorWiring& operator=(const MonitorWiring&) = delete;

    // "Yes, commit" of the exit and the monitor's commit.
    void commitChanges();
    [[nodiscard]] Monitor& monitor() { return monitor_; }
    [[nodiscard]] DeviceCommands& commands() { return commands_; }
    [[nodiscard]] OutputCommands& outputs() { return outputs_; }

private:
    [[nodiscard]] EditParameterContext editorContext();
    [[nodiscard]] CommandHooks commandHooks();
    [[nodiscard]] OutputServices outputServices();
    [[nodiscard]] CalibrationCommandHooks calibrationHooks();
    [[nodiscard]] LoggingCommandServices loggingServices();
    void wireMonitor();
    [[nodiscard]] PackFlowHooks packHooks();

    MonitorWiringServices s_;
    Monitor monitor_;
    ParameterEditor editor_;
    DeviceCommands commands_;
    OutputCommands outputs_;
    CalibrationCommands calibration_;
    LoggingCommands logging_;
    AppSettingsFiles settingsFiles_;
    PackConfigurationFlows packs_;
};

} // namespace zv::qt
