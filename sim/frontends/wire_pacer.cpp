#include "frontends/wire_pacer.h"

#include <algorithm>

namespace zvsim {

std::int64_t WirePacer::wireTimeUs(std::size_t count, int baud)
{
    if (baud <= 0)
        return 0;
    return static_cast<std::int64_t>(count) * 10 * 1'000'000 / baud;
}

std::int64_t WirePacer::replyDueUs(std::int64_t nowUs, std::size_t inChars, std::size_t outChars, int baud)
{
    if (!enabled_)
        return nowUs;
    // The host's characters were handed over at nowUs and cross the line first; the answer
    // starts once the command is complete and the line is free.
    const std::int64_t startUs = std::max(nowUs + wireTimeUs(inChars, baud), lineFreeUs_);
    lineFreeUs_ = startUs + wireTimeUs(outChars, baud);
    return lineFreeUs_;
}

std::int64_t WirePacer::replyDueMs(std::int64_t nowMs, std::size_t inChars, std::size_t outChars, int baud)
{
    return (replyDueUs(nowMs * 1000, inChars, outChars, baud) + 999) / 1000;
}

} // namespace zvsim
