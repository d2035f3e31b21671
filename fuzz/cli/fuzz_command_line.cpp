// Any command line of zentavia-cli (words split at NUL): it is taken, or refused with a usage
// error that says why; nothing else escapes.

#include "cli/cli_error.h"
#include "cli/command_line.h"
#include "fuzz_text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    auto words = zv::fuzz::pieces(zv::fuzz::text(data, size));
    words.insert(words.begin(), "zentavia-cli");
    try {
        const auto line = zv::cli::parseCommandLine(words);
        if (line.command.empty() && !line.help)
            std::abort();
    } catch (const zv::cli::CliError& error) {
        if (std::string(error.what()).empty())
            std::abort();
    }
    return 0;
}
