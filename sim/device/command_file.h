#pragma once
// The command file (27): each write is a 16-bit command code and a 16-bit argument. Commit,
// rebuild, initialize, fuse reset, safe disconnect, wired, data flow, ship mode and the
// calibration steps.

#include "device/file_protocol.h"
#include "device/pack_model.h"
#include "device/pack_physics.h"

#include <cstdint>

namespace zvsim {

enum Command : std::uint16_t {
    CmdCalCurrentOffset = 0x00,
    CmdCalCurrentGain = 0x01,
    CmdCalTemperature = 0x02,
    CmdCommit = 0x03,
    CmdRebuild = 0x04,
    CmdInitialize = 0x07,
    CmdCalSelectCell = 0x08,
    CmdCalLowerVoltage = 0x09,
    CmdCalUpperVoltage = 0x0A,
    CmdResetFuse = 0x0B,
    CmdSafeDisconnect = 0x0C,
    CmdWired = 0x0D,
    CmdDataFlow = 0x0E,
    CmdShipMode = 0x10,
};

class CommandFile {
public:
    static constexpr std::int64_t RestartDelayMs = 20; // the status of the command is still read
    static constexpr std::int64_t InitializeSilentMs = 3000;
    static constexpr std::int64_t SafeDisconnectMs = 20000;

    CommandFile(PackModel& model, PackPhysics& physics);

    [[nodiscard]] FileResult execute(std::uint16_t code, std::uint16_t argument);

private:
    [[nodiscard]] bool calibrating() const;
    [[nodiscard]] FileResult calibrate(std::uint16_t code, std::uint16_t argument);
    [[nodiscard]] FileResult voltagePoint(bool upper, int mv);

    PackModel& model_;
    PackPhysics& physics_;
};

} // namespace zvsim
