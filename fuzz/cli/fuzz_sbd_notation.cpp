// Any notation name, word and block: the name is one of the four or refused; a word and a block
// are written out in each notation without fault.

#include "cli/sbd_notation.h"
#include "fuzz_text.h"

#include <cstdlib>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    (void)zv::cli::parseSbdFormat(zv::fuzz::text(data, size));
    const int word = size >= 2 ? data[0] + 256 * data[1] : 0;
    for (const auto format : { zv::cli::SbdFormat::HEX, zv::cli::SbdFormat::UINT, zv::cli::SbdFormat::SINT,
             zv::cli::SbdFormat::STR }) {
        (void)zv::cli::wordText(word, format);
        const auto text = zv::cli::blockText(std::span(data, size), format);
        if (format == zv::cli::SbdFormat::HEX && text.size() != 2 * size)
            std::abort();
    }
    return 0;
}
