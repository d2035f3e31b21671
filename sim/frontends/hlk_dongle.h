#pragma once
// The HLK dongle as a pure protocol engine: bytes from the host in, the dongle's answers out, on
// the clock the embedder gives. It carries SMBus master transactions to the pack behind the
// SmbusTarget seam and adds the link faults. No I/O: the pty and in-process front ends wrap it.

#include "device/smbus_target.h"
#include "frontends/link_faults.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zvsim {

enum class TraceDirection { In, Out };
using TraceSink = std::function<void(TraceDirection, std::string_view)>;

struct HlkOptions {
    LinkFaults faults;
    std::uint64_t seed = 1;
    std::int64_t startMs = 0; // the clock reading at which the dongle powers up
    std::uint16_t alarmWord = 0x1000; // the word of the broadcasts that the "alarm" fault inserts
    bool anyBaud = false; // accept the host at any baud rate (for terminals that cannot set one)
};

class HlkDongle {
public:
    static constexpr int kPowerOnBaud = 19200;
    static constexpr std::uint8_t kResetByte = 0x12;

    explicit HlkDongle(SmbusTarget& target, HlkOptions options = {});

    // The baud rate the host's side of the line is set to now.
    void setLineBaud(int baud) { lineBaud_ = baud; }
    [[nodiscard]] int lineBaud() const { return lineBaud_; }
    // The baud rate the dongle itself runs at (19200 after a reset, "/B" changes it).
    [[nodiscard]] int baud() const { return baud_; }

    // Bytes the host sent at nowMs; returns what the dongle sends back.
    [[nodiscard]] std::string receive(std::string_view bytes, std::int64_t nowMs);

    // Unsolicited traffic due at nowMs: the alarm broadcasts the pack has sent to the host.
    [[nodiscard]] std::string poll(std::int64_t nowMs);

    // When the pack is to be pulled; nullopt when it never is or already was.
    [[nodiscard]] std::optional<std::int64_t> nextDueMs() const;

    // True once the pack has been pulled: the dongle answers nothing any more.
    [[nodiscard]] bool pulled() const { return pulled_; }

    void setTrace(TraceSink sink) { trace_ = std::move(sink); }

private:
    std::string handleLine(std::string_view line);
    std::string handleSetting(std::string_view line);
    std::string transmit(std::string_view hexText, bool withStop);
    std::string read(std::string_view countText);
    std::string finishTransaction(std::string reply);
    std::string faultAlarmLine();
    std::string broadcastLine(const std::vector<std::uint8_t>& bytes);
    bool addressedTargetAnswers() const;
    void powerOn();
    void checkPulled(std::int64_t nowMs);
    std::string toHost(std::string text, int dongleBaud) const;
    void traceOut(std::string_view text) const;

    SmbusTarget& target_;
    HlkOptions options_;
    FaultDice dice_;
    TraceSink trace_;
    std::string line_;
    int lineBaud_ = kPowerOnBaud;
    int baud_ = kPowerOnBaud;
    bool open_ = false;
    bool pulled_ = false;
    std::uint8_t deviceAddress8_ = 0x16;
    std::uint8_t hostAddress8_ = 0x10;
};

// The baud rate of a "/B" index: 0 19200, 1 57600, 2 115200; 0 for any other index.
[[nodiscard]] int hlkBaudForIndex(int index);

} // namespace zvsim
