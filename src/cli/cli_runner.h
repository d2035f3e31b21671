#pragma once
// One run of zentavia-cli over the seams it is given: the command line in, the result on `out`,
// failures on `err`, the exit status back.

#include "cli/cli_session.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace zv::cli {

struct CommandLine;

struct RunServices {
    platform::SerialPort& port;
    platform::EventLoop& loop;
    // Written only for this run (see CliSettingsStore).
    platform::SettingsStore& settings;
    std::string programFolder; // when the command line names none
    std::ostream& out;
    std::ostream& err;
    UsbAdapterFactory usbAdapters = {}; // empty: makeUsbAdapter
};

// Runs the parsed command; 0, or the exit code of the failure after its text went to err.
[[nodiscard]] int runCommand(const CommandLine& line, const RunServices& services);

// Parses and runs; --help prints the help to out.
[[nodiscard]] int runCli(const std::vector<std::string>& arguments, const RunServices& services);

} // namespace zv::cli
