#pragma once
// StartApplication, the second stage of the start: settings, gMain, the splash, the transport,
// the dongle and its search over the ports, then the target detection. The splash's Restart
// button runs it again from the top.

#include "connection/frm_comm_port_error.h"
#include "startup/frm_splash.h"
#include "startup/target_detection.h"

#include <functional>
#include <string>
#include <vector>

namespace zv {

inline constexpr int kFoundPauseMs = 2000;
inline constexpr int kNextPortPauseMs = 1000;

struct StartupParts {
    std::function<void()> BuildMenuPolicy;
    // Creates gMain and its driver (reading the demo capture in demo mode); a restart replaces it.
    std::function<clsMain&()> createMain;
    std::function<void()> showModemLog; // frmModemLog, above other windows
    std::function<std::vector<int>()> availablePorts; // GetAvailableCOMPorts
    std::function<CommPortChoice(int code)> commPortError; // frmCommPortError.CommPortError
    std::function<bool()> openUsbAdapter; // empty: no adapter support, the open fails
    // Ends the program in the exit order.
    std::function<void()> endProgram;
    // Whether a window other than the splash is up (the main window, the login); when none is,
    // closing the splash ends the program.
    std::function<bool()> otherWindowUp;
    // The trap of StartApplication: the error handler with "modMain" and "Main".
    std::function<void(const std::string& description)> reportError;
};

class Startup {
public:
    Startup(DetectionServices detectionServices, platform::SettingsStore& settings, StartupParts parts,
        DetectionHooks hooks);

    void StartApplication();
    // Step 13: the port answered; store it and detect the target.
    void connectedToDongle();
    // What the caller of DetectTarget does with its result.
    void actOnDetection(int result);

    TargetDetection detection;

private:
    void startSequence();
    void readSetup();
    void startDongle();
    enum class SearchResult { Found, NotFound, Settled };
    [[nodiscard]] SearchResult searchForDongle();
    // frmCommPortError with the number, and what the user chose; true when the start went on.
    bool askCommPortError(int code);
    void showMainForm();

    AppGlobals& globals_;
    platform::EventLoop& loop_;
    platform::Dialogs& dialogs_;
    platform::SettingsStore& settings_;
    std::string programFolder_;
    ActiveForm& activeForm_;
    frmSplash& splash_;
    StartupParts parts_;
    DetectionHooks hooks_;
    clsMain* main_ = nullptr;
};

} // namespace zv
