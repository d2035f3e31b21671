#include "device/command_file.h"

#include <cmath>

namespace zvsim {

namespace {
constexpr std::uint16_t calibrationModeBits = 0xF000;
constexpr int CellCalFile = 31;
} // namespace

CommandFile::CommandFile(PackModel& model, PackPhysics& physics)
    : model_(model)
    , physics_(physics)
{
}

bool CommandFile::calibrating() const
{
    return (model_.files.get("Algorithm Enable") & calibrationModeBits) != 0;
}

FileResult CommandFile::execute(std::uint16_t code, std::uint16_t argument)
{
    FileStore& files = model_.files;
    switch (code) {
    case CmdCalCurrentOffset:
    case CmdCalCurrentGain:
    case CmdCalTemperature:
    case CmdCalSelectCell:
    case CmdCalLowerVoltage:
    case CmdCalUpperVoltage:
        return calibrate(code, argument);
    case CmdCommit:
        files.commit();
        model_.flashDirty = true;
        return { StatusOk, 0, 40 };
    case CmdRebuild: {
        int found = std::min<int>(static_cast<int>(files.get("Expected Number Of Cells")), model_.cells());
        files.set("Actual Number Of Cells", static_cast<std::uint32_t>(found));
        files.set("Number of CellWeft rebuilds", (files.get("Number of CellWeft rebuilds") + 1) & 0xFFFF);
        return { StatusOk, 0, 200 };
    }
    case CmdInitialize:
        if (argument > 1)
            return { StatusCannotDo, 0, 0 };
        model_.restart = PendingRestart { model_.nowMs + RestartDelayMs, InitializeSilentMs, argument == 1 };
        return {};
    case CmdResetFuse:
        files.setBits("Safety Flags", 0x8000, false);
        files.set("Permanent Disable Alert", 0);
        files.set("Permanent Disable Status", 0);
        files.setBits("Internal Flags 2", 0x0020, true);
        return {};
    case CmdSafeDisconnect:
        model_.safeDisconnectUntilMs = model_.nowMs + SafeDisconnectMs;
        files.setBits("Internal Flags 2", 0x0002, true);
        return {};
    case CmdWired:
        model_.wiredArmed = true;
        return {};
    case CmdDataFlow:
        if (argument > 1)
            return { StatusCannotDo, 0, 0 };
        model_.dataFlow = argument == 0;
        files.setBits("Internal Flags 2", 0x0004, !model_.dataFlow);
        return {};
    case CmdShipMode:
        files.set("Internal Flags 2", files.get("Internal Flags 2") ^ 0x0001);
        return {};
    default:
        return { StatusCannotDo, 0, 0 };
    }
}

FileResult CommandFile::calibrate(std::uint16_t code, std::uint16_t argument)
{
    if (!calibrating())
        return { StatusCannotDo, 0, 0 };
    FileStore& files = model_.files;
    switch (code) {
    case CmdCalCurrentOffset:
        physics_.applyCurrent(0);
        files.setSigned("Current Offset", static_cast<int>(std::lround(-physics_.rawCurrentMa())));
        files.setBits("Calibration Status", 0x0001, true);
        return { StatusOk, 0, 100 };
    case CmdCalCurrentGain: {
        int applied = static_cast<std::int16_t>(argument);
        physics_.applyCurrent(applied);
        double measured = physics_.rawCurrentMa() + files.getSigned("Current Offset");
        if (applied == 0 || std::fabs(measured) < 1)
            return { StatusCannotDo, 0, 0 };
        double gain = 32767.0 * applied / measured;
        if (gain < 16384 || gain > 49151)
            return { StatusCannotDo, 0, 0 };
        files.set("Current Gain", static_cast<std::uint32_t>(std::lround(gain)));
        return { StatusOk, 0, 100 };
    }
    case CmdCalTemperature:
        if (argument < 2000 || argument > 3500)
            return { StatusCannotDo, 0, 0 };
        physics_.applyAmbient(argument);
        for (int sensor = 1; sensor <= 5; ++sensor)
            files.setSigned("Sensor " + std::to_string(sensor) + " Offset",
                static_cast<int>(std::lround(argument - physics_.rawSensorDeciK(sensor))));
        files.setBits("Calibration Status", 0x0002, true);
        return { StatusOk, 0, 100 };
    case CmdCalSelectCell:
        if (argument < 1 || argument > model_.cells())
            return { StatusCannotDo, 0, 0 };
        model_.calibrationCell = argument;
        return {};
    case CmdCalLowerVoltage:
        return voltagePoint(false, argument);
    default:
        return voltagePoint(true, argument);
    }
}

FileResult CommandFile::voltagePoint(bool upper, int mv)
{
    int cell = model_.calibrationCell;
    if (cell < 1 || cell > std::min(model_.cells(), 16) || mv < 2000 || mv > 5000)
        return { StatusCannotDo, 0, 0 };
    FileStore& files = model_.files;
    physics_.applyCellVoltage(cell, mv);
    int raw = static_cast<int>(std::lround(physics_.rawCellMv(cell)));
    int at = 8 * (cell - 1) + (upper ? 4 : 0);
    files.setWord(CellCalFile, at, static_cast<std::uint16_t>(mv));
    files.setWord(CellCalFile, at + 2, static_cast<std::uint16_t>(raw));
    if (!upper)
        return { StatusOk, 0, 50 };
    int lowMv = files.word(CellCalFile, at - 4);
    int lowRaw = files.word(CellCalFile, at - 2);
    if (raw == lowRaw || lowMv == 0 || mv == lowMv)
        return { StatusCannotDo, 0, 0 };
    // The gain word is 32768 over the slope of actual against raw millivolts.
    double slope = static_cast<double>(mv - lowMv) / (raw - lowRaw);
    double gain = 32768.0 / slope;
    double offset = lowMv - lowRaw * slope;
    std::string name = "Cell " + std::to_string(cell) + " Voltage";
    files.set(name + " Gain", static_cast<std::uint32_t>(std::lround(gain)));
    files.setSigned(name + " Offset", static_cast<int>(std::lround(offset)));
    files.setBits("Calibration Status", 0x0004, true);
    return { StatusOk, 0, 50 };
}

} // namespace zvsim
