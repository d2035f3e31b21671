#include "cli/command_line.h"

#include "cli/cli_error.h"

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

The link: the HLK dongle on the port of the CommPort setting unless --port names another,
or the USB adapter when --usb names one (or Zentavia.ini has Communications=1 and UsbAdapter):
socket:PATH (the simulator's adapter socket), i2c:NAME (the i2c-dev bus of the adapter whose
name holds NAME, such as CP2112) or /dev/i2c-N. --demo runs from demo.ini without hardware.
A sealed pack is opened with --password TEXT (or the ZENTAVIA_PASSWORD environment variable),
as the login window does. The program
folder (Zentavia.ini, configuration files) is --home, else ZENTAVIA_HOME, else the folder
of the executable. Settings are read from ZENTAVIA_SETTINGS or the user's Zentavia.conf and
never written.

Exit status: 0 done, 1 the command failed (the reason is on stderr), 2 a usage error.)";

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
    QCommandLineOption node { "node", "get: cell N; 0 is the gateway.", "N" };
    QCommandLineOption raw { "raw", "get: the number as read, not the display text." };
    QCommandLineOption password { "password", "Log in to a sealed pack with this password.", "TEXT" };
    QCommandLineOption block { "block", "sbread: read a block instead of a word." };
    QCommandLineOption format { "format", "sbread: HEX, UINT, SINT or STR.", "F" };
    QCommandLineOption extended { "extended", "sbread: keep the extended command set open." };

    void addTo(QCommandLineParser& parser) const
    {
        parser.addOptions(
            { help, port, usb, demo, home, address, node, raw, password, block, format, extended });
    }
};

void configure(QCommandLineParser& parser, const Options& options)
{
    parser.setApplicationDescription(kDescription);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    options.addTo(parser);
    parser.addPositionalArgument("command", "detect, dir, read-file, get, sbread or capture-demo.");
    parser.addPositionalArgument("arguments", "The command's arguments.", "[arguments...]");
}

void checkCommandOptions(const QCommandLineParser& parser, const Options& options, const std::string& command)
{
    const auto onlyFor = [&](const QCommandLineOption& option, const char* owner) {
        if (parser.isSet(option) && command != owner)
            throw usage("--" + option.names().constLast().toStdString() + " belongs to " + owner + ".");
    };
    onlyFor(options.node, "get");
    onlyFor(options.raw, "get");
    onlyFor(options.block, "sbread");
    onlyFor(options.format, "sbread");
    onlyFor(options.extended, "sbread");
    if (parser.isSet(options.port) && parser.isSet(options.usb))
        throw usage("--port and --usb name two links; give one.");
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
        if (argument.size() < 2 || argument[0] != '-' || argument.find('=') != std::string::npos)
            return false;
        const QString name = QString::fromStdString(argument.substr(argument.find_first_not_of('-')));
        for (const auto* option : { &options.port, &options.usb, &options.home, &options.address,
                 &options.node, &options.password, &options.format })
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
    line.extended = parser.isSet(options.extended);
    if (parser.isSet(options.format)) {
        const auto format = parseSbdFormat(parser.value(options.format).toStdString());
        if (!format)
            throw usage("--format is HEX, UINT, SINT or STR.");
        line.format = *format;
    }
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
