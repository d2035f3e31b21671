// Any text as a data-set: parsed into entries with line numbers in order, then checked against a
// small model.

#include "pack_configuration/ppcsv_file.h"

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto entries = zv::parsePpcsv(text);
    int last = 0;
    for (const auto& entry : entries) {
        if (entry.line <= last)
            std::abort();
        last = entry.line;
    }
    (void)zv::checkDataSet(entries, [](const std::string& name) -> std::optional<int> {
        if (name.empty())
            return std::nullopt;
        return name.size() % 8;
    });
    return 0;
}
