// sbread: an SMBus word or block read by command number, with the command set closed as the
// SBData read/write utility has it.

#include "cli/cli_error.h"
#include "cli/cli_session.h"
#include "cli/commands.h"
#include "cli/sbd_notation.h"

#include <ostream>

namespace zv::cli {

void runSbRead(CliSession& session, int command, bool block, SbdFormat format, std::ostream& out)
{
    if (session.demo())
        throw CliError("sbread needs an attached pack; demo mode has none.");
    session.connect();
    auto& bus = session.driver().Bus;
    (void)bus.DisableUlmarCommandSet();
    const auto byte = static_cast<std::uint8_t>(command);
    if (block) {
        const auto data = bus.SMBus_ReadBlock(byte);
        if (!data)
            throw CliError("Error: Please verify SMB Data Type");
        out << blockText(*data, format) << '\n';
    } else {
        const auto word = bus.SMBus_ReadWord(byte);
        if (!word)
            throw CliError("Error");
        out << wordText(*word, format) << '\n';
    }
}

} // namespace zv::cli
