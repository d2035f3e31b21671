// sbread: an SMBus word or block read by command number. Like the SBData read/write utility it
// closes the extended command set first, unless asked to keep it open.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "cli/sbd_notation.h"
#include "driver/target_operations.h"

#include <ostream>

namespace zv::cli {

void runSbRead(CliSession& session, const SbReadRequest& request, std::ostream& out)
{
    if (session.demo())
        throw CliError("sbread needs an attached pack; demo mode has none.");
    session.connect();
    TargetOperations target(session.driver());
    if (!request.extended)
        (void)target.DisableUlmarCommandSet();
    const auto command = static_cast<std::uint8_t>(request.command);
    if (request.block) {
        const auto data = target.readBlock(command);
        if (!data)
            throw CliError("Error: Please verify SMB Data Type");
        out << blockText(*data, request.format) << '\n';
    } else {
        const auto word = target.readWord(command);
        if (!word)
            throw CliError("Error");
        out << wordText(*word, request.format) << '\n';
    }
}

} // namespace zv::cli
