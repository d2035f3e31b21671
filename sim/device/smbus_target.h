#pragma once
// The simulated pack as an SMBus slave. The front ends (HLK dongle on a pseudo-terminal, USB
// adapter socket, in-process endpoint) turn their traffic into these bus transactions.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zvsim {

class SmbusTarget {
public:
    virtual ~SmbusTarget() = default;

    // The 7-bit address the pack answers at (0x0B unless configured).
    [[nodiscard]] virtual std::uint8_t address7() const = 0;

    // Master write with stop: the bytes after the address byte (command, data, and the PEC
    // byte when the host sends one). false: the pack gave no acknowledge.
    [[nodiscard]] virtual bool masterWrite(std::span<const std::uint8_t> bytes) = 0;

    // Master write of the command byte without stop, opening a read. false: no acknowledge.
    [[nodiscard]] virtual bool masterWriteCommand(std::uint8_t command) = 0;

    // Master read after the repeated start: count bytes, or with count 0 a block whose length
    // is the first byte. The result holds the data the pack drives onto the bus, with the PEC
    // byte last where the pack gives one. nullopt: no acknowledge.
    [[nodiscard]] virtual std::optional<std::vector<std::uint8_t>> masterRead(int count) = 0;

    // An alarm broadcast the pack wants to send to the host (the four bytes after the host
    // address: command, low, high, PEC), taken once; nullopt when none is waiting.
    [[nodiscard]] virtual std::optional<std::vector<std::uint8_t>> takeAlarmBroadcast() = 0;

    // Advances the pack's own clock (physics, busy periods, restarts) to ms milliseconds.
    virtual void advanceTo(std::int64_t ms) = 0;
};

// Faults the pack itself can be told to show; the front ends add the link faults.
struct DeviceFaults {
    int busyPolls = 0; // the file status reads 255 for this many status reads per request
    int forcedStatus = -1; // >= 0: the next file request ends with this status code
    double restartRate = 0.0; // share of file transfers during which the pack restarts
    double noAckRate = 0.0; // share of transactions the pack does not acknowledge
};

} // namespace zvsim
