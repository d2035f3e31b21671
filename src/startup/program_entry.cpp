#include "startup/program_entry.h"

#include "core/globals.h"
#include "core/paths.h"
#include "platform/dialogs.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace zv {

namespace {

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

void applySwitch(const std::string& argument, AppGlobals& g, platform::Dialogs& dialogs)
{
    const std::string name = lowerCase(argument);
    if (name == "/pp") {
        g.gShowLog = true;
        g.gAltConfigPrompt = true;
    } else if (name == "/demo") {
        std::error_code error;
        if (std::filesystem::exists(g.gDemoFile, error))
            g.gDemo = true;
        else
            dialogs.messageBox("The demonstration file is missing. Aborting demo mode startup.",
                platform::Buttons::OK, platform::Icon::Exclamation, "File Not Found");
    } else if (name == "/cal470") {
        g.gCal470Enabled = true;
    } else if (name == "/showlog") {
        g.gShowLog = true;
    } else if (name == "/breakonerror") {
        g.gBreakOnError = true;
    } else if (name == "/al" || name == "/just_for_tam") {
        g.gAccessMenuEnabled = true;
    } else if (name == "/bootloader") {
        g.gLoaderOnly = true;
    }
    // /advanced, /nowarning and /script are accepted and do nothing, as does anything else.
}

} // namespace

std::vector<std::string> commandLineArguments(const std::vector<std::string>& argv)
{
    std::vector<std::string> arguments;
    for (const std::string& text : argv) {
        std::string word;
        for (const char c : text + ' ') {
            if (c != ' ' && c != '\t') {
                word += c;
                continue;
            }
            if (!word.empty() && arguments.size() < kMaxArguments)
                arguments.push_back(word);
            word.clear();
        }
    }
    return arguments;
}

void ParseCommandLine(
    const std::vector<std::string>& arguments, AppGlobals& globals, platform::Dialogs& dialogs)
{
    for (const std::string& argument : arguments)
        applySwitch(argument, globals, dialogs);
}

bool Main(const ProgramEntry& entry, AppGlobals& globals, platform::Dialogs& dialogs)
{
    if (entry.otherInstanceRuns) {
        dialogs.messageBox("Only one instance of Zentavia can be invoked simultaneously.",
            platform::Buttons::OK, platform::Icon::Critical, "Zentavia");
        return false;
    }
    for (bool* flag : { &globals.gDemo, &globals.gBreakOnError, &globals.gShowLog, &globals.gAltConfigPrompt,
             &globals.gCal470Enabled, &globals.gAccessMenuEnabled, &globals.gLoaderOnly })
        *flag = false;
    globals.setDecimalSeparator(entry.decimalSeparator);
    globals.gDemoFile = joinPath(entry.programFolder, "demo.ini");
    globals.gINIFile = joinPath(entry.programFolder, "Zentavia.ini");
    ParseCommandLine(commandLineArguments(entry.argv), globals, dialogs);
    return true;
}

} // namespace zv
