#pragma once
// The USB adapter's operations as a line protocol, as the socket endpoint serves them. Like a
// real adapter it frames the SMBus transactions and computes and checks the PEC itself.
//
// Requests, one a line, bytes as two hex digits, the address in its 7-bit form:
//   CONNECT                       -> 0
//   CONFIGURE a b c               -> 0
//   VERSION                       -> 0 <version text>
//   WRITEWORD AA CC LL HH         -> <status>
//   READWORD AA CC                -> <status> HH LL
//   WRITEBLOCK AA CC NN D0 ...    -> <status>
//   READBLOCK AA CC               -> <status> NN D0 ...
// Status: 0 done, 1 no acknowledge, 2 PEC error in the pack's answer, 3 bus time-out, 4 request
// not understood, 5 not connected (CONNECT first). Data follow only with status 0.

#include "device/smbus_target.h"
#include "frontends/link_faults.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zvsim {

enum UsbStatus : int {
    kUsbOk = 0,
    kUsbNoAck = 1,
    kUsbPecError = 2,
    kUsbTimeout = 3,
    kUsbBadRequest = 4,
    kUsbNotConnected = 5,
};

struct UsbAdapterOptions {
    LinkFaults faults;
    std::uint64_t seed = 1;
    std::int64_t startMs = 0;
};

class UsbAdapter {
public:
    static constexpr std::string_view kVersion = "ZV-USB-BRIDGE simulator 1.0";

    explicit UsbAdapter(SmbusTarget& target, UsbAdapterOptions options = {});

    // One request line (without its line end) handled at nowMs; returns the answer line.
    [[nodiscard]] std::string handle(std::string_view request, std::int64_t nowMs);

    // True once the pack has been pulled: the socket closes.
    [[nodiscard]] bool pulled() const { return pulled_; }
    // Notes the pull when its time has come.
    void checkPulled(std::int64_t nowMs);

    // Forgets CONNECT, as when the host's connection ends.
    void disconnect() { connected_ = false; }

private:
    std::string writeWord(std::uint8_t address7, std::uint8_t command, std::uint8_t low, std::uint8_t high);
    std::string readWord(std::uint8_t address7, std::uint8_t command);
    std::string writeBlock(std::uint8_t address7, std::uint8_t command, std::vector<std::uint8_t> data);
    std::string readBlock(std::uint8_t address7, std::uint8_t command);
    std::string write(std::uint8_t address7, std::vector<std::uint8_t> covered);
    struct ReadResult {
        int status;
        std::vector<std::uint8_t> data;
    };
    ReadResult read(std::uint8_t address7, std::uint8_t command, int count);
    // Rolls the faults that keep an answer from coming back; status 3 when one hits.
    [[nodiscard]] bool lineFails();

    SmbusTarget& target_;
    UsbAdapterOptions options_;
    FaultDice dice_;
    bool connected_ = false;
    bool pulled_ = false;
};

} // namespace zvsim
