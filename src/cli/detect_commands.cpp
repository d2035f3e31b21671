// detect, dir and read-file: what the target is and which files it holds.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "cli/directory_table.h"

#include <ostream>

namespace zv::cli {

namespace {

void printTarget(CliSession& session, std::ostream& out)
{
    const auto& g = session.globals();
    out << "Target ID:     " << g.gTargetID << '\n';
    out << "Target name:   " << g.gTargetName << '\n';
    out << "Cells:         " << static_cast<int>(g.gNodeCount)
        << (g.gCellsMatch ? "" : " (LAN is not built!)") << '\n';
    out << "Access level:  " << session.userAccessLevel() << '\n';
    out << "Firmware:      " << g.gFirmwareVersion << ", build " << g.gFirmwareBuild << '\n';
}

} // namespace

void runDetect(CliSession& session, std::ostream& out)
{
    session.detect();
    printTarget(session, out);
    out << '\n';
    printDirectoryTable(session.driver().Directory.RecordsRead, out);
}

void runDir(CliSession& session, std::ostream& out)
{
    session.readDirectory();
    printDirectoryTable(session.driver().Directory.RecordsRead, out);
}

void runReadFile(CliSession& session, int file, std::ostream& out)
{
    session.readDirectory();
    auto& driver = session.driver();
    const auto* entry = driver.Directory.DirectoryElements.fileEntry(file);
    if (!entry)
        throw CliError("File " + std::to_string(file) + " is not in the directory.");
    const auto text = driver.Transfer.readFile(file);
    if (!text)
        throw CliError("Reading file " + std::to_string(file) + " failed.");
    const std::size_t digitsPerRecord = entry->FileChunk > 0 ? entry->FileChunk * 2 : text->size();
    for (std::size_t at = 0; at < text->size(); at += digitsPerRecord)
        out << text->substr(at, digitsPerRecord) << '\n';
}

} // namespace zv::cli
