// Any directory record from the device: a short record is refused, a whole one gives a name of
// printable characters only.

#include "device_files/directory_element.h"

#include <cstdlib>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto element = zv::parseDirectoryRecord(std::span(data, size));
    if (!element)
        return 0;
    if (size < zv::kDirectoryRecordBytes)
        std::abort();
    for (const char c : element->FileName)
        if (c < 32 || c > 126)
            std::abort();
    (void)element->FileLength();
    return 0;
}
