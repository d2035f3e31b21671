// Any .enc file: the reader ends with a fault or with sections whose data are whole bytes of
// upper-case hexadecimal digits, and each section's blocks hold all of its bytes.

#include "firmware_loader/enc_file.h"
#include "firmware_loader/image_download.h"

#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const zv::EncImage image = zv::parseEncText(text);
    if (image.fault != zv::EncFault::None) {
        if (!image.sections.empty())
            std::abort();
        return 0;
    }
    if (image.sections.empty())
        std::abort();
    for (const zv::BootSection& section : image.sections) {
        if (section.data.empty() || section.data.size() % 2 != 0)
            std::abort();
        for (char c : section.data)
            if (!((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F')))
                std::abort();
        const zv::FileRequest request = zv::sectionRequest(section, 128);
        if (request.data.size() < section.bytes() || request.data.size() % 128 != 0
            || request.data.size() - section.bytes() >= 128)
            std::abort();
    }
    return 0;
}
