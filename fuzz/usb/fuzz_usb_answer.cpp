// Any answer line from the adapter's socket: a status, the text after it and, only when that text
// is hex, its bytes.

#include "fuzz_text.h"
#include "usb/line_usb_adapter.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto answer = zv::parseUsbAnswer(zv::fuzz::text(data, size));
    if (answer.bytes.size() > answer.text.size())
        std::abort();
    return 0;
}
