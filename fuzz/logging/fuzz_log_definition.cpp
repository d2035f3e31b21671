// Any .dlog, .slog or .map text: the reader never fails on its own, a refused file says why, and
// the download image always holds the count word and two bytes an entry.

#include "logging/log_definition.h"

#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto parsed = zv::parseLogDefinition(text);
    if ((parsed.outcome == zv::LogDefinitionOutcome::BadNumber) == parsed.error.empty())
        std::abort();
    for (const auto& entry : parsed.entries)
        if (entry.label.find('\t') != std::string::npos || entry.dataType.find('\t') != std::string::npos)
            std::abort();
    const auto image = zv::logDefinitionImage(parsed.entries);
    if (image.size() != 2 + 2 * parsed.entries.size()
        || (image[0] | (image[1] << 8)) != static_cast<int>(parsed.entries.size() & 0xFFFF))
        std::abort();
    return 0;
}
