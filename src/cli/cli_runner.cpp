#include "cli/cli_runner.h"

#include "cli/cli_dialogs.h"
#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/command_line.h"
#include "cli/commands.h"

#include <ostream>

namespace zv::cli {

namespace {

void dispatch(const CommandLine& line, CliSession& session, std::ostream& out)
{
    const auto argument
        = [&](std::size_t i) { return i < line.arguments.size() ? line.arguments[i] : std::string(); };
    if (line.command == "detect")
        runDetect(session, out);
    else if (line.command == "dir")
        runDir(session, out);
    else if (line.command == "read-file")
        runReadFile(session, parseNumber(argument(0), "The file number", 0, 255), out);
    else if (line.command == "get")
        runGet(session, argument(0), line.node, line.raw, out);
    else if (line.command == "sbread")
        runSbRead(session,
            { parseNumber(argument(0), "The SMBus command", 0, 255), line.block, line.format, line.extended },
            out);
    else if (line.command == "capture-demo")
        runCaptureDemo(session, line.arguments.empty() ? session.globals().gDemoFile : argument(0), out);
    else if (line.command == "save-cal")
        runSaveCal(session, argument(0), out);
    else if (line.command == "restore-cal")
        runRestoreCal(session, argument(0), line.yes, out);
    else if (line.command == "calibrate")
        runCalibrate(session, line.arguments, out);
    else if (line.command == "poll")
        runPoll(session, line.poll, out);
    else if (line.command == "save-config")
        runSaveConfig(session, argument(0), out);
    else if (line.command == "load-config")
        runLoadConfig(session, argument(0), line.relearn, out);
    else if (line.command == "export-xml")
        runExportXml(session, argument(0), out);
    else if (line.command == "save-dataset")
        runSaveDataSet(session, argument(0), out);
    else if (line.command == "load-dataset")
        runLoadDataSet(session, argument(0), out);
    else if (line.command == "set")
        runSet(session, argument(0), argument(1), line.node, out);
    else if (line.command == "commit")
        runCommit(session, out);
    else if (line.command == "firmware")
        runFirmware(session, { argument(0), line.preserveCal, line.yes }, out, session.diagnostics());
    else if (line.command == "sysinfo")
        runSysinfo(session, out);
}

int failed(const CliError& error, const RunServices& services)
{
    services.out.flush();
    services.err << "zentavia-cli: " << error.what() << '\n';
    return error.exitCode();
}

} // namespace

int runCommand(const CommandLine& line, const RunServices& services)
{
    const std::string programFolder = line.home.empty() ? services.programFolder : line.home;
    CliDialogs dialogs(services.err);
    try {
        CliSession session(SessionServices { services.port, services.loop, dialogs, services.settings,
                               programFolder, services.err, services.usbAdapters },
            line.link);
        dispatch(line, session, services.out);
        services.out.flush();
        return 0;
    } catch (const CliError& error) {
        return failed(error, services);
    }
}

int runCli(const std::vector<std::string>& arguments, const RunServices& services)
{
    try {
        const CommandLine line = parseCommandLine(arguments);
        if (line.help) {
            services.out << helpText();
            return 0;
        }
        return runCommand(line, services);
    } catch (const CliError& error) {
        return failed(error, services);
    }
}

} // namespace zv::cli
