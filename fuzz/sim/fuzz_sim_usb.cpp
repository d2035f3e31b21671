// Any request lines to the simulated USB adapter (one a line): each gets one answer line that
// starts with a status.

#include "device/pack.h"
#include "frontends/usb_adapter.h"
#include "fuzz_text.h"

#include <cctype>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static auto pack = zvsim::makePack({});
    zvsim::UsbAdapter adapter(*pack);
    std::int64_t now = 0;
    for (const auto& line : zv::fuzz::pieces(zv::fuzz::text(data, size), '\n')) {
        const std::string answer = adapter.handle(line, now += 3);
        if (answer.empty() || !std::isdigit(static_cast<unsigned char>(answer.front())))
            std::abort();
    }
    return 0;
}
