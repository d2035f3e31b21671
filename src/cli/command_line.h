#pragma once
// The command line of zentavia-cli: the link options, one command and its arguments.

#include "cli/cli_session.h"
#include "cli/commands.h"
#include "cli/sbd_notation.h"

#include <string>
#include <vector>

namespace zv::cli {

struct CommandLine {
    LinkOptions link;
    std::string home; // --home: the program folder
    std::string command; // empty with --help
    std::vector<std::string> arguments;
    int node = 0; // get, set --node
    bool relearn = false; // load-config --relearn
    bool raw = false; // get --raw
    bool block = false; // sbread --block
    bool extended = false; // sbread --extended
    SbdFormat format = SbdFormat::HEX; // sbread --format
    PollRequest poll; // poll's options
    bool help = false;
    bool yes = false; // restore-cal --yes, firmware --yes
    std::string preserveCal; // firmware --preserve-cal
};

// The arguments with the program name first. Throws CliError with kExitUsage on a command line
// that cannot be run, with a text that says why.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& arguments);

// What --help prints.
[[nodiscard]] std::string helpText();

// A number in decimal or, with "0x", in hex, within [lowest, highest]; CliError with kExitUsage
// naming `what` otherwise.
[[nodiscard]] int parseNumber(const std::string& text, const std::string& what, int lowest, int highest);

} // namespace zv::cli
