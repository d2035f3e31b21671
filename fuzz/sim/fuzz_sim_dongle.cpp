// Any bytes a host sends to the simulated dongle, a few milliseconds apart: it answers or keeps
// silent, and the pack behind it stays whole.

#include "device/pack.h"
#include "frontends/hlk_dongle.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static auto pack = zvsim::makePack({});
    zvsim::HlkDongle dongle(*pack);
    std::int64_t now = 0;
    for (std::size_t at = 0; at < size; at += 16) {
        const std::size_t n = std::min<std::size_t>(16, size - at);
        (void)dongle.receive(std::string_view(reinterpret_cast<const char*>(data + at), n), now);
        (void)dongle.poll(now);
        now += 5;
    }
    return 0;
}
