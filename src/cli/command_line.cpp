#include "cli/command_line.h"

#include "cli/cli_error.h"
#include "cli/directory_cache.h"

#include <QCommandLineParser>
#include <QStringList>

#include <array>
#include <charconv>

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
    CommandSpec { "get", 1, 1, "get NAME [--node N]" },
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
name holds NAME, such as CP2112) or /dev/i2c-N. --demo runs from demo.ini without hardware. The program
folder (Zentavia.ini, configuration files) is --home, else ZENTAVIA_HOME, else the folder
of the executable. Settings are read from ZENTAVIA_SETTINGS or the user's Zentavia.conf and
never written. The directory of a pack seen before comes from $XDG_CACHE_HOME/zentavia (else
~/.cache/zentavia), checked against the directory's own record on every run; --no-cache reads
it afresh.

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
    QCommandLineOption block { "block", "sbread: read a block instead of a word." };
    QCommandLineOption format { "format", "sbread: HEX, UINT, SINT or STR.", "F" };
    QCommandLineOption extended { "extended", "sbread: keep the extended command set open." };
    QCommandLineOption noCache { "no-cache", "Read the directory afresh instead of from the cache." };

    void addTo(QCommandLineParser& parser) const
    {
        parser.addOptions({ help, port, usb, demo, home, address, node, block, format, extended, noCache });
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

CommandLine parseCommandLine(const std::vector<std::string>& arguments)
{
    QStringList list;
    for (const auto& argument : arguments)
        list << QString::fromStdString(argument);
    const Options options;
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
