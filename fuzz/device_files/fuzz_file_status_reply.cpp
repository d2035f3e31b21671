// Any dongle reply to a status read or a data read of the device file protocol: a data read
// gives exactly the count it announces, and a status is a byte.

#include "device_files/file_status.h"
#include "fuzz_text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string reply = zv::fuzz::text(data, size);
    if (const auto status = zv::parseStatusReply(reply)) {
        if (status->status < 0 || status->status > 255 || status->extra < 0 || status->extra > 255)
            std::abort();
        (void)zv::CheckFileStatus(status->status);
    }
    if (const auto bytes = zv::parseDataReply(reply); bytes && bytes->size() > 255)
        std::abort();
    return 0;
}
