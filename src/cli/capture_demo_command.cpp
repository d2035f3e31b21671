// capture-demo: the capture of the attached device from which demo mode runs: the target's id,
// enciphered with the pack key, every raw directory record and every file the user may read.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "startup/demo_capture.h"

#include <ostream>

namespace zv::cli {

void runCaptureDemo(CliSession& session, const std::string& file, std::ostream& out)
{
    if (session.demo())
        throw CliError("capture-demo needs an attached pack; demo mode has none.");
    session.detect();
    const DemoCaptureResult result = captureDemo(session.driver(), session.globals().gTargetID, file);
    if (!result.directoryRead)
        throw CliError("Reading the directory failed; nothing was captured.");
    if (!result.filesRead)
        throw CliError("Reading the device files failed; nothing was captured.");
    if (!result.saved)
        throw CliError("The capture cannot be written to " + file + ".");
    out << "Captured target " << session.globals().gTargetID << ": " << result.records
        << " directory records and " << result.files << " files in " << file << '\n';
}

} // namespace zv::cli
