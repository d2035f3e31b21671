#pragma once
// A bus master for the pack's tests: writes the bytes a host sends (with its own PEC) and checks
// the PEC of what the pack answers. Time moves only through advance().

#include "device/pack.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace simtest {

// CRC-8 of SMBus, written here again so that the tests do not trust the pack's own.
std::uint8_t pec(const std::vector<std::uint8_t>& bytes);

class Host {
public:
    explicit Host(zvsim::Pack& pack)
        : pack_(pack)
    {
    }

    static constexpr std::uint8_t W = 0x16; // address 0x0B, write
    static constexpr std::uint8_t R = 0x17;

    bool writeWord(std::uint8_t command, std::uint16_t value);
    // Sends the bytes as they stand, PEC included or not.
    bool send(const std::vector<std::uint8_t>& bytes);
    std::optional<std::uint16_t> readWord(std::uint8_t command);
    // The block's data without its count byte.
    std::optional<std::vector<std::uint8_t>> readBlock(std::uint8_t command);
    bool writeBlock(std::uint8_t command, const std::vector<std::uint8_t>& data);

    void open(); // unlock and enable the extended command set
    bool request(int access, int file, int offset, int count);
    std::array<std::uint8_t, 2> status();
    // Status reads until not busy, 5 ms apart (at most 1000).
    int settle();

    struct Read {
        int status = -1;
        std::vector<std::uint8_t> data;
    };
    Read readFile(int file, int offset, int count);
    // Final status of a write, or -1 when the request was refused (its status in lastRequestStatus).
    int writeFile(int file, int offset, int count, const std::vector<std::uint8_t>& data);
    int command(std::uint16_t code, std::uint16_t argument);
    std::uint16_t word(int file, int element); // one word of a file read

    void advance(std::int64_t ms);
    [[nodiscard]] std::int64_t now() const { return now_; }

    int lastRequestStatus = -1;
    int lastExtra = -1;

private:
    zvsim::Pack& pack_;
    std::int64_t now_ = 0;
};

// A pack made with these options and a host in front of it that has opened the extended command
// set.
struct OpenPack {
    explicit OpenPack(const zvsim::PackOptions& options = {})
        : pack(options)
        , host(pack)
    {
        host.open();
    }
    zvsim::Pack pack;
    Host host;
};

} // namespace simtest
