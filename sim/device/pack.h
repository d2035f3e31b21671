#pragma once
// The simulated pack: a gateway and its cells as an SMBus slave. ManufacturerAccess words, the
// smart-battery words, the file protocol, the block commands 0x80 and 0xEE, the SBD map, alarm
// broadcasts, restarts that leave it silent for a while, and the device-side faults.

#include "device/command_file.h"
#include "device/file_protocol.h"
#include "device/forensics.h"
#include "device/pack_files.h"
#include "device/pack_model.h"
#include "device/pack_options.h"
#include "device/pack_physics.h"
#include "device/smbus_target.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace zvsim {

// ManufacturerAccess words written to command 0x00.
enum ManufacturerAccess : std::uint16_t {
    MaDisableCommandSet = 0x0000,
    MaLock = 0x0030,
    MaUnlock = 0x6E21,
    MaEnableCommandSet = 0x7A3C,
    MaAccessLevel = 0xC01A,
    MaTargetId = 0xC01B,
};

// Hardware states read from command 0x00.
enum HardwareState : std::uint16_t {
    StateApplication = 0x0000,
    StateAppLoader = 0x6699,
    StateSystemLoader = 0xFA99
};

class Pack : public SmbusTarget {
public:
    static constexpr std::int64_t FaultRestartSilentMs = 2000;

    explicit Pack(const PackOptions& options);

    [[nodiscard]] std::uint8_t address7() const override { return model_.options.address7; }
    [[nodiscard]] bool masterWrite(std::span<const std::uint8_t> bytes) override;
    [[nodiscard]] bool masterWriteCommand(std::uint8_t command) override;
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> masterRead(int count) override;
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> takeAlarmBroadcast() override;
    void advanceTo(std::int64_t ms) override;

    DeviceFaults& faults() { return faults_; }
    // Queues an alarm broadcast of the present battery status word (the fault of an alarm in the
    // middle of a transaction).
    void queueAlarm();
    // A power cycle: the pack restarts now and is silent for silentMs.
    void powerCycle(std::int64_t silentMs);

    [[nodiscard]] bool silent() const { return model_.nowMs < silentUntilMs_; }
    [[nodiscard]] bool commandSetOpen() const { return extendedSet_; }
    [[nodiscard]] std::uint16_t hardwareState() const;
    [[nodiscard]] PackModel& model() { return model_; }
    [[nodiscard]] const PackModel& model() const { return model_; }
    [[nodiscard]] PackPhysics& physics() { return physics_; }

private:
    [[nodiscard]] bool transactionLost();
    [[nodiscard]] bool pecMatches(std::span<const std::uint8_t> bytes) const;
    [[nodiscard]] bool writeWord(std::uint8_t command, std::uint16_t value);
    [[nodiscard]] bool writeBlock(std::uint8_t command, std::span<const std::uint8_t> data);
    [[nodiscard]] std::optional<std::uint16_t> readWord(std::uint8_t command) const;
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> readBlock(std::uint8_t command) const;
    [[nodiscard]] bool readable(std::uint8_t command) const;
    void manufacturerAccess(std::uint16_t word);
    void maybeRestartDuringTransfer();
    void performRestart(const PendingRestart& restart);
    void persist();

    PackModel model_;
    Forensics forensics_;
    PackPhysics physics_;
    CommandFile commands_;
    PackFileServer server_;
    DeviceFaults faults_;
    FileProtocol protocol_;
    bool unlocked_ = false;
    bool extendedSet_ = false;
    std::uint16_t lastMaWord_ = MaDisableCommandSet;
    std::uint8_t openCommand_ = 0;
    std::int64_t silentUntilMs_ = 0;
    std::vector<std::uint16_t> scratchWords_ = std::vector<std::uint16_t>(256, 0);
};

[[nodiscard]] std::unique_ptr<Pack> makePack(const PackOptions& options);

} // namespace zvsim
