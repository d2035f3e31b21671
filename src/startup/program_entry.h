#pragma once
// Program entry (Main): the single-instance rule, the locale's separators and the switches of the
// command line.

#include <string>
#include <vector>

namespace zv::platform {
class Dialogs;
}

namespace zv {

struct AppGlobals;

inline constexpr int kMaxArguments = 5;

// The arguments as the program takes them: split at blanks and tabs, at most kMaxArguments.
[[nodiscard]] std::vector<std::string> commandLineArguments(const std::vector<std::string>& argv);

// Sets the flags of the switches. /demo sets gDemo only when gDemoFile exists; otherwise it shows
// the "File Not Found" box and the program starts without demo mode. Unknown arguments are ignored.
void ParseCommandLine(
    const std::vector<std::string>& arguments, AppGlobals& globals, platform::Dialogs& dialogs);

struct ProgramEntry {
    std::vector<std::string> argv; // without the program's own name
    bool otherInstanceRuns = false;
    char decimalSeparator = '.';
    std::string programFolder;
};

// Steps 2 to 5 of Main. False: another instance runs (after its box); the program ends.
[[nodiscard]] bool Main(const ProgramEntry& entry, AppGlobals& globals, platform::Dialogs& dialogs);

} // namespace zv
