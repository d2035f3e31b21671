// poll: the samples of the main window's poll (the safety file, then files 1 and 4, then the log
// row and the device bits' files 9 and 5), one line each, and the CSV log of the same log writer.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "core/local_time.h"
#include "logging/log_writer.h"
#include "platform/event_loop.h"

#include <clocale>
#include <csignal>
#include <ostream>

namespace zv::cli {

namespace {

constexpr int kSafetyFile = 5;
constexpr int kDynamicFile = 1;
constexpr int kCellFile = 4;
constexpr int kConfigurationFile = 9;
// A stop request is looked at this often while the poll waits for the next sample.
constexpr int kStopCheckMs = 100;
constexpr const char* kDefaultComment = "zentavia-cli poll";

volatile std::sig_atomic_t stopRequested = 0;

extern "C" void onStopSignal(int)
{
    stopRequested = 1;
}

// SIGINT and SIGTERM end the poll for the length of one run; the old handlers come back after.
class StopSignals {
public:
    StopSignals()
    {
        stopRequested = 0;
        struct sigaction action { };
        action.sa_handler = onStopSignal;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &oldInt_);
        sigaction(SIGTERM, &action, &oldTerm_);
    }
    ~StopSignals()
    {
        sigaction(SIGINT, &oldInt_, nullptr);
        sigaction(SIGTERM, &oldTerm_, nullptr);
    }
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

private:
    struct sigaction oldInt_ { };
    struct sigaction oldTerm_ { };
};

std::string shown(const clsSMBusParameter* parameter, int mode, const DisplaySettings& display)
{
    if (!parameter)
        return "-";
    std::string text = parameter->ToString(mode, display);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string sampleLine(clsCellWeft& driver, std::chrono::system_clock::time_point when)
{
    const DisplaySettings& display = driver.Parameters.display;
    std::string line = timeOfDay(when);
    for (const char* name : { "Pack Voltage", "Current", "Relative State of Charge", "Temperature" })
        line += "  " + shown(driver.GatewayParameters.FindByName(name), 0, display);
    line += " |";
    for (const auto& node : driver.nodes)
        line += " " + shown(node.NodeParameters.FindByName("Voltage"), 2, display);
    return line;
}

// The reads of one sample in the order of the main window's poll; false when the sample failed.
bool readSample(clsCellWeft& driver)
{
    std::string text;
    return driver.GetFile(kSafetyFile, text) && driver.GetFile(kDynamicFile, text)
        && driver.GetFile(kCellFile, text);
}

void readDeviceBits(clsCellWeft& driver)
{
    std::string text;
    if (driver.GetFile(kConfigurationFile, text))
        (void)driver.GetFile(kSafetyFile, text);
}

} // namespace

void runPoll(CliSession& session, const PollRequest& request, std::ostream& out)
{
    session.detect();
    clsCellWeft& driver = session.driver();
    platform::EventLoop& loop = session.loop();
    AppGlobals globals = session.globals();
    // The log's delimiter and the capture's decimal separator follow the user's locale, as in the
    // desktop program.
    if (const std::lconv* conventions = std::localeconv();
        conventions && conventions->decimal_point && *conventions->decimal_point)
        globals.setDecimalSeparator(*conventions->decimal_point);
    StopSignals signals;

    std::unique_ptr<LogWriter> log;
    if (!request.logFile.empty()) {
        LogWriterHooks hooks;
        const std::string comment = request.comment.empty() ? kDefaultComment : request.comment;
        hooks.askComment = [comment] { return std::optional<std::string>(comment); };
        hooks.configure = [] { return false; };
        log = std::make_unique<LogWriter>(LogWriterServices { driver, globals, session.settings(),
                                              session.dialogs(), loop, session.programFolder() },
            std::move(hooks));
        log->settings.LogFilePath = request.logFile;
        if (request.dynamicDefinition)
            log->settings.DynamicDefinitionFile = *request.dynamicDefinition;
        if (request.staticDefinition)
            log->settings.StaticDefinitionFile = *request.staticDefinition;
        if (!log->StartLogging())
            throw CliError("Logging failed to start.");
    }
    globals.PollingActive = true;
    int failures = 0;
    for (int taken = 0; !request.count || taken < *request.count; ++taken) {
        if (taken > 0) {
            for (int waited = 0; waited < request.rateSeconds * 1000 && !stopRequested;
                 waited += kStopCheckMs)
                loop.wait(kStopCheckMs);
        }
        if (stopRequested)
            break;
        if (readSample(driver)) {
            out << sampleLine(driver, loop.now()) << '\n' << std::flush;
            if (log)
                log->UpdateLogFile();
            readDeviceBits(driver);
        } else {
            ++failures;
            out << timeOfDay(loop.now()) << "  sample failed\n" << std::flush;
        }
    }
    globals.PollingActive = false;
    if (log)
        log->CloseLog();
    if (failures > 0 && request.count && failures == *request.count)
        throw CliError("Every sample failed.");
}

} // namespace zv::cli
