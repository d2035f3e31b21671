#include "cli/command_line.h"

#include "cli/cli_error.h"
#include "cli/directory_cache.h"

#include <QCommandLineParser>
#include <QStringList>

#include <array>
#include <charconv>
#include <cstdlib>

namespace zv::cli {

namespace {

struct CommandSpec {
    const char* name;
    std::size_t fewest;
    std::size_t most;
    const char* synopsis;
};

constexpr std::array kCommands {
    CommandSpec { "detect", 0, 0, "detect" },
    CommandSpec { "dir", 0, 0, "dir" },
    CommandSpec { "read-file", 1, 1, "read-file N" },
    CommandSpec { "get", 1, 1, "get NAME [--node N] [--raw]" },
    CommandSpec { "sbread", 1, 1, "sbread CMD [--block] [--format F] [--extended]" },
    CommandSpec { "capture-demo", 0, 1, "capture-demo [FILE]" },
    CommandSpec { "save-cal", 1, 1, "save-cal FILE.cal" },
    CommandSpec { "restore-cal", 1, 1, "restore-cal FILE.cal [--yes]" },
    CommandSpec { "calibrate", 1, 4,
        "calibrate current-offset | current-gain MILLIAMPS | temperature VALUE{C|K} | cell N LOW_MV "
        "HIGH_MV" },
    CommandSpec { "poll", 0, 0,
        "poll [--count N] [--rate S] [--log FILE] [--comment TEXT] [--dlog FILE] [--slog FILE]" },
    CommandSpec { "save-config", 1, 1, "save-config FILE.dat" },
    CommandSpec { "load-config", 1, 1, "load-config FILE [--relearn]" },
    CommandSpec { "export-xml", 1, 1, "export-xml FILE.dat" },
    CommandSpec { "save-dataset", 1, 1, "save-dataset FILE.ppcsv" },
    CommandSpec { "load-dataset", 1, 1, "load-dataset FILE.ppcsv" },
    CommandSpec { "set", 2, 2, "set NAME VALUE [--node N]" },
    CommandSpec { "commit", 0, 0, "commit" },
    CommandSpec { "firmware", 1, 1, "firmware FILE.enc [--preserve-cal FILE.cal] [--yes]" },
    CommandSpec { "sysinfo", 0, 0, "sysinfo" },
};

constexpr const char* kDescription
    = R"(zentavia-cli: the headless Zentavia on the same core as the desktop program.

Commands:
  detect               Open the link, identify the target, read the directory and the
                       configuration; print target id, name, cells, access level and
                       firmware, then the directory table.
  dir                  Print the directory table.
  read-file N          Print device file N as upper-case hex, one record a line.
  get NAME             Read parameter NAME from the device and print its value and unit.
                       --node N reads it for cell N (0, the default, is the gateway).
                       The value is shown as the main window shows it (bit-encoded words
                       in hex, the manufacture date as MM/DD/YYYY); --raw prints the
                       number as read.
  sbread CMD           SMBus read of command CMD (decimal, or hex with 0x) as a word, or
                       with --block as a block; --format HEX|UINT|SINT|STR (default HEX).
                       The read goes with the extended command set closed, as the smart-
                       battery data answer; --extended keeps it open (blocks 0x80, 0xEE).
  capture-demo [FILE]  Capture the attached device for demo mode: the target id, every
                       directory record and every readable file. FILE defaults to demo.ini
                       in the program folder.
  save-cal FILE.cal    Save the device's calibration data (files 24 and 31) to FILE.cal.
  restore-cal FILE.cal Write FILE.cal to the device and commit it. When its sizes do not match
                       the device the restore is refused unless --yes answers the question.
  calibrate STEP       One calibration step in calibration mode, then what the device reports:
                       current-offset (no current flowing), current-gain MILLIAMPS (the
                       applied current, negative when discharging), temperature VALUE{C|K}
                       (the ambient temperature, e.g. 25C or 298K), cell N LOW_MV HIGH_MV
                       (two-point voltage calibration of cell N where the target offers it).
                       A negative value follows "--": calibrate current-gain -- -1000.
  poll                 Poll the pack as the main window does and print one line a sample:
                       time, pack voltage, current, RSOC, temperature, then the cell
                       voltages. --count N samples (default: until Ctrl-C), --rate S
                       seconds apart (default 1). --log FILE writes the CSV log: a session
                       with --comment TEXT, the static blocks of --slog FILE at both ends and
                       a row a sample by the dynamic definition --dlog FILE (both default to
                       the settings; --slog "" leaves the static blocks out). Ctrl-C and
                       SIGTERM close the log with its closing static block.
  save-config FILE.dat Read the pack configuration from the device into FILE.dat.
  load-config FILE     Write FILE (.dat, .tmap, .aux or .sbd) to the device, log in with
                       the pack's password, commit, initialize (--relearn: with relearn)
                       and detect the target again.
  export-xml FILE.dat  Write FILE.xml beside FILE.dat and verify it by reading it back.
  save-dataset FILE.ppcsv  Write the writable parameters' values to FILE.ppcsv.
  load-dataset FILE.ppcsv  Write the values of FILE.ppcsv to the device and commit.
  set NAME VALUE       Write parameter NAME (--node N: of cell N), read it back, print it.
                       The value waits in RAM until commit.
  commit               Commit the device's RAM to flash.

  firmware FILE.enc    Load a firmware image: the system information, the image checked
                       against the target, the download (progress on stderr), the reset
                       wait, the verification and the system information again. Works on a
                       target in its loader too. --preserve-cal FILE.cal (target 1001) saves
                       the calibration to FILE.cal and carries it into the new firmware; it
                       needs --yes, which answers the loader's questions with yes.
  sysinfo              Print what the device reports about its images and the verification.

Progress of the long commands goes to stderr when stderr is a terminal.

The link: the HLK dongle on the port of the CommPort setting unless --port names another,
or the USB adapter when --usb names one (or Zentavia.ini has Communications=1 and UsbAdapter):
socket:PATH (the simulator's adapter socket), i2c:NAME (the i2c-dev bus of the adapter whose
name holds NAME, such as CP2112) or /dev/i2c-N. --demo runs from demo.ini without hardware.
A sealed pack is opened with --password TEXT (or the ZENTAVIA_PASSWORD environment variable),
as the login window does. The program
folder (Zentavia.ini, configuration files) is --home, else ZENTAVIA_HOME, else the folder
of the executable. Settings are read from ZENTAVIA_SETTINGS or the user's Zentavia.conf and
never written. The directory of a pack seen before comes from $XDG_CACHE_HOME/zentavia (else
~/.cache/zentavia), checked against the directory's own record on every run; --no-cache reads
it afresh.

Exit status: 0 done, 1 the command failed (the reason is on stderr), 2 a usage error;
firmware and sysinfo also: 3 the image was refused (not a firmware file, invalid, or not
for this target), 4 the download failed, 5 the verification failed.)";

const CommandSpec* findCommand(const std::string& name)
{
    for (const auto& spec : kCommands)
        if (name == spec.name)
            return &spec;
    return nullptr;
}

CliError usage(const std::string& text)
{
    return CliError(text + "\nTry zentavia-cli --help.", kExitUsage);
}

struct Options {
    QCommandLineOption help { { "h", "help" }, "Show this help." };
    QCommandLineOption port { "port", "HLK dongle on port number N or on the serial device PATH.", "PATH|N" };
    QCommandLineOption usb { "usb", "USB adapter: socket:PATH, i2c:NAME or /dev/i2c-N.", "DEVICE" };
    QCommandLineOption demo { "demo", "Run from demo.ini in the program folder, without hardware." };
    QCommandLineOption home { "home", "Program folder.", "DIR" };
    QCommandLineOption address { "address", "7-bit SMBus address of the target (default: Zentavia.ini).",
        "N" };
    QCommandLineOption node { "node", "get, set: cell N; 0 is the gateway.", "N" };
    QCommandLineOption relearn { "relearn", "load-config: initialize with relearn." };
    QCommandLineOption raw { "raw", "get: the number as read, not the display text." };
    QCommandLineOption password { "password", "Log in to a sealed pack with this password.", "TEXT" };
    QCommandLineOption block { "block", "sbread: read a block instead of a word." };
    QCommandLineOption format { "format", "sbread: HEX, UINT, SINT or STR.", "F" };
    QCommandLineOption extended { "extended", "sbread: keep the extended command set open." };
    QCommandLineOption yes { "yes", "restore-cal: go on when the file's sizes do not match the device." };
    QCommandLineOption noCache { "no-cache", "Read the directory afresh instead of from the cache." };
    QCommandLineOption preserveCal { "preserve-cal",
        "firmware: save the calibration to FILE.cal and restore it.", "FILE.cal" };
    QCommandLineOption count { "count", "poll: number of samples.", "N" };
    QCommandLineOption rate { "rate", "poll: seconds between samples.", "S" };
    QCommandLineOption log { "log", "poll: write the CSV log to FILE.", "FILE" };
    QCommandLineOption comment { "comment", "poll: the log session's comment.", "TEXT" };
    QCommandLineOption dlog { "dlog", "poll: dynamic log definition file.", "FILE" };
    QCommandLineOption slog { "slog", "poll: static log definition file.", "FILE" };

    void addTo(QCommandLineParser& parser) const
    {
        parser.addOptions({ help, port, usb, demo, home, address, node, block, format, extended });
        parser.addOptions({ yes });
        parser.addOptions({ count, rate, log, comment, dlog, slog });
        parser.addOptions({ relearn });
        parser.addOptions({ preserveCal });
        parser.addOptions({ raw, password, noCache });
    }
};

void configure(QCommandLineParser& parser, const Options& options)
{
    parser.setApplicationDescription(kDescription);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    options.addTo(parser);
    parser.addPositionalArgument("command", "One of the commands above.");
    parser.addPositionalArgument("arguments", "The command's arguments.", "[arguments...]");
}

void checkCommandOptions(const QCommandLineParser& parser, const Options& options, const std::string& command)
{
    const auto onlyFor = [&](const QCommandLineOption& option, const char* owner) {
        if (parser.isSet(option) && command != owner)
            throw usage("--" + option.names().constLast().toStdString() + " belongs to " + owner + ".");
    };
    if (parser.isSet(options.node) && command != "get" && command != "set")
        throw usage("--node belongs to get and set.");
    onlyFor(options.relearn, "load-config");
    onlyFor(options.raw, "get");
    onlyFor(options.block, "sbread");
    onlyFor(options.format, "sbread");
    onlyFor(options.extended, "sbread");
    for (const auto* option :
        { &options.count, &options.rate, &options.log, &options.comment, &options.dlog, &options.slog })
        onlyFor(*option, "poll");
    if (command != "firmware")
        onlyFor(options.yes, "restore-cal");
    onlyFor(options.preserveCal, "firmware");
    if (parser.isSet(options.port) && parser.isSet(options.usb))
        throw usage("--port and --usb name two links; give one.");
}

void readPollOptions(const QCommandLineParser& parser, const Options& options, PollRequest& poll)
{
    if (parser.isSet(options.count))
        poll.count = parseNumber(parser.value(options.count).toStdString(), "--count", 1, 1000000000);
    if (parser.isSet(options.rate))
        poll.rateSeconds = parseNumber(parser.value(options.rate).toStdString(), "--rate", 1, 86400);
    poll.logFile = parser.value(options.log).toStdString();
    poll.comment = parser.value(options.comment).toStdString();
    if (parser.isSet(options.dlog))
        poll.dynamicDefinition = parser.value(options.dlog).toStdString();
    if (parser.isSet(options.slog))
        poll.staticDefinition = parser.value(options.slog).toStdString();
    if (parser.isSet(options.log) && poll.logFile.empty())
        throw usage("--log needs a file.");
}

} // namespace

int parseNumber(const std::string& text, const std::string& what, int lowest, int highest)
{
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* first = text.data() + (hex ? 2 : 0);
    const char* last = text.data() + text.size();
    int value = 0;
    const auto [end, error] = std::from_chars(first, last, value, hex ? 16 : 10);
    if (text.empty() || error != std::errc() || end != last || value < lowest || value > highest)
        throw usage(what + " must be a number from " + std::to_string(lowest) + " to "
            + std::to_string(highest) + ", not \"" + text + "\".");
    return value;
}

// "-1" is a negative number, not option "1": such arguments go after "--", where the parser takes
// them as arguments, unless they are the value of the option before them.
QStringList argumentList(const std::vector<std::string>& arguments, const Options& options)
{
    const auto takesValue = [&](const std::string& argument) {
        const auto nameStart = argument.find_first_not_of('-');
        if (argument.empty() || argument[0] != '-' || nameStart == std::string::npos
            || argument.find('=') != std::string::npos)
            return false;
        const QString name = QString::fromStdString(argument.substr(nameStart));
        for (const auto* option : { &options.port, &options.usb, &options.home, &options.address,
                 &options.node, &options.password, &options.format, &options.count, &options.rate,
                 &options.log, &options.comment, &options.dlog, &options.slog, &options.preserveCal })
            if (option->names().contains(name))
                return true;
        return false;
    };
    const auto negativeNumber = [](const std::string& argument) {
        return argument.size() > 1 && argument[0] == '-'
            && argument.find_first_not_of("0123456789", 1) == std::string::npos;
    };
    QStringList list;
    QStringList numbers;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i > 0 && arguments[i] == "--") { // what follows is arguments already
            for (++i; i < arguments.size(); ++i)
                numbers << QString::fromStdString(arguments[i]);
            break;
        }
        const bool value = i > 1 && takesValue(arguments[i - 1]);
        (i > 0 && !value && negativeNumber(arguments[i]) ? numbers : list)
            << QString::fromStdString(arguments[i]);
    }
    if (!numbers.isEmpty())
        list << "--" << numbers;
    return list;
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments)
{
    const Options options;
    const QStringList list = argumentList(arguments, options);
    QCommandLineParser parser;
    configure(parser, options);
    if (!parser.parse(list))
        throw usage(parser.errorText().toStdString());

    CommandLine line;
    line.help = parser.isSet(options.help);
    const QStringList positional = parser.positionalArguments();
    if (line.help)
        return line;
    if (positional.isEmpty())
        throw usage("No command was given.");
    line.command = positional.first().toStdString();
    for (qsizetype i = 1; i < positional.size(); ++i)
        line.arguments.push_back(positional[i].toStdString());
    const CommandSpec* spec = findCommand(line.command);
    if (!spec)
        throw usage("Unknown command \"" + line.command + "\".");
    if (line.arguments.size() < spec->fewest || line.arguments.size() > spec->most)
        throw usage(std::string("Usage: zentavia-cli [options] ") + spec->synopsis);
    checkCommandOptions(parser, options, line.command);

    line.link.port = parser.value(options.port).toStdString();
    line.link.usbDevice = parser.value(options.usb).toStdString();
    line.link.demo = parser.isSet(options.demo);
    line.link.directoryCache = parser.isSet(options.noCache) ? std::string() : defaultCacheFolder();
    line.home = parser.value(options.home).toStdString();
    if (parser.isSet(options.usb) && line.link.usbDevice.empty())
        throw usage("--usb needs a device.");
    if (parser.isSet(options.address))
        line.link.address = parseNumber(parser.value(options.address).toStdString(), "--address", 1, 127);
    if (parser.isSet(options.node))
        line.node = parseNumber(parser.value(options.node).toStdString(), "--node", 0, 255);
    line.raw = parser.isSet(options.raw);
    if (parser.isSet(options.password))
        line.link.password = parser.value(options.password).toStdString();
    else if (const char* password = std::getenv("ZENTAVIA_PASSWORD"); password && *password)
        line.link.password = password;
    line.block = parser.isSet(options.block);
    line.relearn = parser.isSet(options.relearn);
    line.extended = parser.isSet(options.extended);
    line.yes = parser.isSet(options.yes);
    line.preserveCal = parser.value(options.preserveCal).toStdString();
    line.link.acceptLoader = line.command == "firmware" || line.command == "sysinfo";
    if (parser.isSet(options.format)) {
        const auto format = parseSbdFormat(parser.value(options.format).toStdString());
        if (!format)
            throw usage("--format is HEX, UINT, SINT or STR.");
        line.format = *format;
    }
    readPollOptions(parser, options, line.poll);
    return line;
}

std::string helpText()
{
    const Options options;
    QCommandLineParser parser;
    configure(parser, options);
    return parser.helpText().toStdString();
}

} // namespace zv::cli
