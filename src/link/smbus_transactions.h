#pragma once
// SMBus word and block transactions over the HLK dongle, with PEC, the retry ladder and link
// recovery, and the ManufacturerAccess operations that identify and open the target.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zv::platform {
class EventLoop;
}

namespace zv {

class CellWeftEvents;
class DongleLink;

// SMBus commands the driver itself uses.
namespace smbus {
inline constexpr std::uint8_t kManufacturerAccess = 0x00;
inline constexpr std::uint8_t kBatteryMode = 0x03;
inline constexpr std::uint8_t kSpecificationInfo = 0x1A;
inline constexpr std::uint8_t kFileAccess = 0x3C;
inline constexpr std::uint8_t kFileStatus = 0x3D;
inline constexpr std::uint8_t kFileWrite = 0x3E;
inline constexpr std::uint8_t kFileRead = 0x3F;
inline constexpr std::uint8_t kDynamicGatewayData = 0x80;
inline constexpr std::uint8_t kGatewayInformation = 0xEE;
} // namespace smbus

// ManufacturerAccess words written to command 0x00.
namespace manufacturer_access {
inline constexpr int kDisableCommandSet = 0x0000;
inline constexpr int kLock = 0x0030;
inline constexpr int kEnableCommandSet = 0x7A3C;
inline constexpr int kUnlock = 0x6E21;
inline constexpr int kAccessLevel = 0xC01A;
inline constexpr int kTargetId = 0xC01B;
} // namespace manufacturer_access

// Hardware states of command 0 that mean the target runs a loader.
inline constexpr int kSystemLoaderState = 0x6699;
inline constexpr int kApplicationLoaderState = 0xFA99;

struct Scaling {
    int VScale = 1;
    int IPScale = 1;
    int CapacityMode = 0;
};

// VScale and IPScale from SpecificationInfo (0x1A, bits 8 to 11 and 12 to 15 are powers of ten),
// CapacityMode from bit 15 of BatteryMode (0x03).
[[nodiscard]] Scaling scalingFrom(int specificationInfo, int batteryMode);

class SmbusTransactions {
public:
    SmbusTransactions(DongleLink& link, platform::EventLoop& loop, CellWeftEvents& events);

    [[nodiscard]] bool SMBus_WriteWord(std::uint8_t command, int value);
    [[nodiscard]] std::optional<int> SMBus_ReadWord(std::uint8_t command);
    [[nodiscard]] bool SMBus_WriteBlock(std::uint8_t command, std::span<const std::uint8_t> data);
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> SMBus_ReadBlock(std::uint8_t command);
    [[nodiscard]] bool SMBus_WriteSBlock(std::span<const std::uint8_t> bytes);

    // Word of command 0 with nothing written first, or -1.
    [[nodiscard]] int GetHardwareState();
    [[nodiscard]] bool GetScaling();
    [[nodiscard]] bool EnableUlmarCommandSet();
    [[nodiscard]] bool DisableUlmarCommandSet();
    [[nodiscard]] int UnlockDevice(); // 0 or -1
    [[nodiscard]] bool LockDevice();
    [[nodiscard]] int GetAccessLevel(); // level, -1 request failed, -2 answer unreadable
    [[nodiscard]] int GetTargetID(); // id, -1000 request failed, -1001 answer unreadable

    [[nodiscard]] const Scaling& scaling() const { return scaling_; }

    static constexpr int kRetryLimit = 10; // a transaction gives up after 11 attempts
    static constexpr int kRetryPauseMs = 250;

private:
    enum class ReadKind { Word, Block };
    struct Failure {
        int number;
        std::string text;
        bool rebuildLink;
    };
    [[nodiscard]] bool sendWithRetries(const std::string& message, const Failure& onExhausted);
    [[nodiscard]] bool transmitReadCommand(std::uint8_t command, ReadKind kind);
    [[nodiscard]] int queryWord(int request, int requestFailed, int answerUnreadable);
    void raise(const Failure& failure);
    // The operation's deadline has passed: no further attempt.
    [[nodiscard]] bool expired() const;

    DongleLink& link_;
    platform::EventLoop& loop_;
    CellWeftEvents& events_;
    Scaling scaling_;
};

} // namespace zv
