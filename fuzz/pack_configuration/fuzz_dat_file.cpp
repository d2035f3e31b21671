// Any bytes as a .dat: refused with PackFormatError or read; what was read writes back to the
// same records.

#include "pack_configuration/dat_file.h"
#include "pack_configuration/pack_format_error.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zv::DatContent content;
    try {
        content = zv::readDat({ data, size });
    } catch (const zv::PackFormatError&) {
        return 0;
    }
    zv::PackConfigurationFile list;
    for (auto file : content.files) {
        file.Cloned = true;
        list.Append(std::move(file));
    }
    const auto again = zv::readDat(zv::writeDat(content.header, list));
    if (again.files.size() != content.files.size() || again.header.title != content.header.title)
        std::abort();
    for (std::size_t i = 0; i < again.files.size(); ++i)
        if (again.files[i].FileData != content.files[i].FileData
            || again.files[i].FileName != content.files[i].FileName)
            std::abort();
    return 0;
}
