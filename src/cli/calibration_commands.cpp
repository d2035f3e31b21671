// save-cal, restore-cal and calibrate: the calibration data files and the calibration steps.

#include "calibration/calibration_data.h"
#include "calibration/calibration_mode.h"
#include "calibration/calibration_steps.h"
#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "commands/command_words.h"
#include "params/smbus_parameter.h"

#include "cli/command_line.h"
#include "core/globals.h"
#include "driver/cellweft.h"

#include <cmath>
#include <ostream>

namespace zv::cli {

namespace {

constexpr int kConfigurationFile = 9;
constexpr int kWiredBit = 0x08;

// The wired bit of "Algorithm Enable": set here as the desktop program sets it when its question
// "Set Wired Bit?" is answered yes (the wired command, the bit, a commit).
void ensureWired(CliSession& session)
{
    auto& driver = session.driver();
    std::string text;
    auto* parameter = driver.GetFile(kConfigurationFile, text)
        ? driver.FindParameter("Algorithm Enable", 0).parameter
        : nullptr;
    if (!parameter)
        throw CliError("Reading \"Algorithm Enable\" failed.");
    const int value
        = static_cast<int>(parameter->value.asNumber(driver.Parameters.display.locale).value_or(0));
    if (value & kWiredBit)
        return;
    session.diagnostics() << "Setting the 'Wired' bit of \"Algorithm Enable\".\n";
    parameter->NewValue = value | kWiredBit;
    if (!driver.WriteCommandFile(command_words::kWired) || !driver.Parameters.WriteParameter(*parameter)
        || !driver.WriteCommandFile(command_words::kCommit))
        throw CliError("Setting the 'Wired' bit failed.");
}

CalibrationDataHooks dataHooks(CliSession& session, std::ostream& out)
{
    CalibrationDataHooks hooks;
    hooks.notify
        = [&out](const std::string& title, const std::string& text) { out << title << ": " << text << '\n'; };
    hooks.commitChanges = [&session, &out] {
        const bool ok = session.driver().WriteCommandFile(command_words::kCommit);
        if (ok)
            out << "Committed to flash.\n";
        return ok;
    };
    return hooks;
}

void check(CalibrationOutcome outcome, const CalibrationData& data)
{
    if (outcome != CalibrationOutcome::Done)
        throw CliError(data.lastError().empty() ? std::string("The command failed.") : data.lastError());
}

// One step: the command, its argument as it goes to the device, and how it is told.
struct Step {
    CalibrationCommand command;
    int argument;
    std::string announcement;
};

[[noreturn]] void usage(const std::string& text)
{
    throw CliError(text + "\nTry zentavia-cli --help.", kExitUsage);
}

std::vector<Step> parseSteps(const CliSession& session, const std::vector<std::string>& arguments)
{
    const std::string& step = arguments.at(0);
    const auto count = [&](std::size_t wanted) {
        if (arguments.size() != wanted)
            usage("Usage: zentavia-cli calibrate " + step
                + (step == "current-gain"       ? " MILLIAMPS"
                        : step == "temperature" ? " VALUE{C|K}"
                        : step == "cell"        ? " N LOW_MV HIGH_MV"
                                                : ""));
    };
    if (step == "current-offset") {
        count(1);
        return { { CalibrationCommand::CurrentOffset, 0, "Sending zero offset calibration data... " } };
    }
    if (step == "current-gain") {
        count(2);
        const int ma
            = parseNumber(arguments[1], "The applied current (mA)", -kCurrentLimitMa, kCurrentLimitMa);
        return { { CalibrationCommand::CurrentGain, currentGainArgument(ma),
            "Sending current gain calibration data [" + arguments[1] + " mA]... " } };
    }
    if (step == "temperature") {
        count(2);
        std::string text = arguments[1];
        const char unit
            = text.empty() ? '\0' : static_cast<char>(std::toupper(static_cast<unsigned char>(text.back())));
        if (unit != 'C' && unit != 'K')
            usage("The temperature ends in C or K (25C, 298K), not \"" + text + "\".");
        text.pop_back();
        const bool celsius = unit == 'C';
        const auto value = entryNumber(text);
        const int low = celsius ? kCelsiusLow : kKelvinLow;
        const int high = celsius ? kCelsiusHigh : kKelvinHigh;
        if (!value || *value < low || *value > high)
            usage(celsius ? "The temperature entered is out of the valid range of 18°C to 30°C"
                          : "The temperature entered is out of the valid range of 291 K to 303 K");
        return { { CalibrationCommand::Temperature, temperatureArgument(*value, celsius),
            "Sending temperature calibration data [" + text + (celsius ? " °C" : " K") + "]... " } };
    }
    if (step == "cell") {
        count(4);
        const auto& id = session.globals().gTargetID;
        if (id != "1001" && id != "1002")
            throw CliError(
                "Target " + id + " offers no voltage calibration steps; it offers temperature and current.");
        const int cells = static_cast<int>(session.globals().gNodeCount);
        const int cell = parseNumber(arguments[1], "The cell", 1, std::max(1, cells));
        const int low = parseNumber(arguments[2], "The lower voltage (mV)", kVoltageLowMv, kVoltageHighMv);
        const int high = parseNumber(arguments[3], "The upper voltage (mV)", kVoltageLowMv, kVoltageHighMv);
        const std::string n = std::to_string(cell);
        return { { CalibrationCommand::SelectCell, cell, "Setting up cell " + n + " calibration... " },
            { CalibrationCommand::LowerVoltage, low,
                "Sending lower voltage calibration data [" + arguments[2] + " mV] for cell " + n + "... " },
            { CalibrationCommand::UpperVoltage, high,
                "Sending upper voltage calibration data [" + arguments[3] + " mV] for cell " + n + "... " } };
    }
    usage("Unknown calibration step \"" + step + "\": current-offset, current-gain, temperature or cell.");
}

void printReadings(
    const CalibrationReadings& r, const AppGlobals& g, const DisplaySettings& display, std::ostream& out)
{
    const bool celsius = display.TemperatureUnits != 0;
    const auto& locale = display.locale;
    out << "The device reports:\n";
    if (r.current)
        out << "  Current:         " << *r.current << '\n';
    if (r.calibration) {
        const auto& a = *r.calibration;
        const auto word = [&a](std::size_t i) { return i < a.size() ? a[i] : std::uint16_t { 0 }; };
        out << "  Current offset:  " << signedWord(word(0)) << '\n';
        out << "  Current gain:    " << gainText(word(1), locale) << '\n';
        const int sensors = std::max(1, g.gTempSensorCount);
        for (int n = 1; n <= sensors && r.sensors && n <= static_cast<int>(r.sensors->size()); ++n)
            out << "  " << (n == 1 ? std::string("Board") : "T" + std::to_string(n - 1)) << ":"
                << std::string(n == 1 ? 12 : 13, ' ')
                << sensorTemperatureText((*r.sensors)[static_cast<std::size_t>(n - 1)], celsius, locale)
                << ", offset " << sensorOffsetText(word(4 + static_cast<std::size_t>(n)), celsius, locale)
                << '\n';
    }
    if (r.cellVoltages)
        for (std::size_t i = 0; i < r.cellVoltages->size(); ++i)
            out << "  Cell " << i + 1 << ":" << std::string(i + 1 < 10 ? 10 : 9, ' ') << (*r.cellVoltages)[i]
                << '\n';
}

} // namespace

void runCalibrate(CliSession& session, const std::vector<std::string>& arguments, std::ostream& out)
{
    session.loadConfiguration();
    // The arguments are checked before the device is touched: a bad value sends nothing.
    const std::vector<Step> steps = parseSteps(session, arguments);
    ensureWired(session);
    auto& driver = session.driver();
    CalibrationMode mode(driver, session.dialogs(),
        { nullptr, [&driver, &out] {
             const bool ok = driver.WriteCommandFile(command_words::kCommit);
             out << (ok ? "Committed to flash.\n" : "The commit to flash failed.\n");
             return ok;
         } });
    CalibrationSteps calibration(driver);
    bool stepsOk = true;
    const bool modeOk = mode.ShowInCalibrationMode([&] {
        out << "Calibration mode on.\n";
        for (const Step& step : steps) {
            out << step.announcement << std::flush;
            stepsOk = calibration.send(step.command, step.argument);
            mode.CalibrationPending = true;
            out << (stepsOk ? "success" : "failed") << '\n';
            if (!stepsOk)
                break;
        }
        printReadings(calibration.read(), session.globals(), driver.Parameters.display, out);
    });
    if (!modeOk)
        throw CliError("Calibration mode could not be entered or left; see the message above.");
    out << "Calibration mode off.\n";
    if (!stepsOk)
        throw CliError("The device refused the calibration step.");
}

void runSaveCal(CliSession& session, const std::string& file, std::ostream& out)
{
    session.loadConfiguration();
    CalibrationData data({ session.driver(), session.globals(), session.dialogs() }, dataHooks(session, out));
    check(data.saveTo(file), data);
}

void runRestoreCal(CliSession& session, const std::string& file, bool yes, std::ostream& out)
{
    session.loadConfiguration();
    ensureWired(session);
    auto hooks = dataHooks(session, out);
    hooks.confirmMismatch = [&session, yes] {
        session.diagnostics() << caltext::kMismatchTitle << ' ' << caltext::kMismatch << '\n'
                              << (yes ? "--yes: going on.\n" : "Refused: give --yes to go on.\n");
        return yes;
    };
    CalibrationData data({ session.driver(), session.globals(), session.dialogs() }, std::move(hooks));
    check(data.restoreFrom(file), data);
}

} // namespace zv::cli
