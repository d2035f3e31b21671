#pragma once
// When characters have crossed a serial line: 10 bits a character (start, 8 data, stop) at the
// line's baud rate, one character after the other. Without pacing everything is due at once.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zvsim {

class WirePacer {
public:
    explicit WirePacer(bool enabled)
        : enabled_(enabled)
    {
    }

    // The time in microseconds that count characters need at baud.
    [[nodiscard]] static std::int64_t wireTimeUs(std::size_t count, int baud);

    // An SMBus transaction of `bytes` bytes (address, command, data, PEC; a read counts the
    // address twice) at 100 kHz: 9 bits a byte, start and stop, and a repeated start on a read.
    [[nodiscard]] static std::int64_t smbusTimeUs(std::size_t bytes, bool read);
    // The same for one request line of the USB adapter and its answer (usb_adapter.h); 0 for a
    // request that does not reach the bus.
    [[nodiscard]] static std::int64_t smbusTimeUs(std::string_view request, std::string_view answer);

    // The host handed inChars characters to the line at nowUs; the answer of outChars goes out
    // once the last of them has arrived and any earlier answer has left the line. Returns the
    // microsecond at which the answer's last character has arrived.
    [[nodiscard]] std::int64_t replyDueUs(
        std::int64_t nowUs, std::size_t inChars, std::size_t outChars, int baud);
    // The same on a millisecond clock, rounded up to the millisecond.
    [[nodiscard]] std::int64_t replyDueMs(
        std::int64_t nowMs, std::size_t inChars, std::size_t outChars, int baud);

private:
    bool enabled_;
    std::int64_t lineFreeUs_ = 0;
};

} // namespace zvsim
