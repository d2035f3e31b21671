// Any text as a .tmap, .aux or .sbd: refused with PackFormatError or read into one file whose
// data holds the hexadecimal text of its size; never a box.

#include "answering_dialogs.h"
#include "pack_configuration/editable_file.h"
#include "pack_configuration/pack_format_error.h"
#include "params/raw_conversion.h"

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zv::fuzz::AnsweringDialogs dialogs;
    const zv::ValueConversion conversion(dialogs, zv::NumberLocale {});
    zv::DirectoryElements directory;
    for (int file = 0; file < 40; ++file)
        directory.Add("F" + std::to_string(file)).FileMaxBytes = 128;
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        const auto read = zv::readEditablePCFile(text, conversion, directory);
        if (read.file.FileData.text().size() != (read.file.FileSize / 2) * 4u)
            std::abort();
    } catch (const zv::PackFormatError&) {
    }
    if (dialogs.boxes != 0)
        std::abort();
    return 0;
}
