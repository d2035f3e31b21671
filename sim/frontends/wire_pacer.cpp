#include "frontends/wire_pacer.h"

#include <algorithm>
#include <cctype>

namespace zvsim {

namespace {

constexpr std::int64_t kSmbusBitUs = 10; // 100 kHz

// The words of a line: the verb, then the bytes.
std::size_t words(std::string_view line)
{
    std::size_t count = 0;
    bool inWord = false;
    for (const char c : line) {
        const bool space = std::isspace(static_cast<unsigned char>(c)) != 0;
        if (!space && !inWord)
            ++count;
        inWord = !space;
    }
    return count;
}

} // namespace

std::int64_t WirePacer::smbusTimeUs(std::size_t bytes, bool read)
{
    const auto bits = static_cast<std::int64_t>(bytes) * 9 + 2 + (read ? 1 : 0);
    return bits * kSmbusBitUs;
}

std::int64_t WirePacer::smbusTimeUs(std::string_view request, std::string_view answer)
{
    const bool read = request.starts_with("READ");
    if (!read && !request.starts_with("WRITE"))
        return 0;
    // Request: verb and bytes; answer: status, then the bytes read. Add the PEC, and the
    // address once more for the read.
    const std::size_t requestBytes = words(request) - 1;
    const std::size_t answerBytes = words(answer) > 0 ? words(answer) - 1 : 0;
    return smbusTimeUs(requestBytes + answerBytes + 1 + (read ? 1 : 0), read);
}

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
