#pragma once
// The USB-to-SMBus adapter: its seven operations. The adapter frames the transactions and
// carries the PEC itself; addresses are in their 7-bit form. Status 0 is success.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zv {

enum UsbStatus : int {
    kUsbOk = 0,
    kUsbNoAck = 1, // no acknowledge: no target at the address, or the target refused
    kUsbPecError = 2, // the target's answer failed its PEC
    kUsbTimeout = 3, // the answer was lost or cut, or the bus is stuck
    kUsbBadRequest = 4, // a transfer the adapter cannot carry
    kUsbNotConnected = 5, // Connect first
    kUsbAbsent = 6, // from Connect: there is no adapter
};

class UsbAdapter {
public:
    virtual ~UsbAdapter() = default;

    // The adapter's version text; nothing when it cannot tell.
    [[nodiscard]] virtual std::optional<std::string> GetVersion() = 0;
    virtual void Configure(int a, int b, int c) = 0;
    [[nodiscard]] virtual int Connect(bool connect) = 0;
    [[nodiscard]] virtual int WriteWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high)
        = 0;
    // The count of the block is data.size().
    [[nodiscard]] virtual int WriteBlock(
        std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data)
        = 0;
    [[nodiscard]] virtual int ReadWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low)
        = 0;
    // The data without the length byte; left as it was on failure.
    [[nodiscard]] virtual int ReadBlock(
        std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data)
        = 0;
};

} // namespace zv
