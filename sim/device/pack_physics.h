#pragma once
// The pack's physics on the clock it is given: a charge/discharge current profile, state of charge
// by coulomb counting, cell voltages from an open-circuit curve with IR drop and per-cell spread,
// temperatures, protection against the limits of file 10, and the CellWeft poll of the cells.

#include "device/forensics.h"
#include "device/pack_model.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zvsim {

class PackPhysics {
public:
    static constexpr std::int64_t StepMs = 250;
    static constexpr std::int64_t CellWeftPollMs = 2000;

    PackPhysics(PackModel& model, Forensics& forensics);

    // Runs whole steps up to nowMs; the files show the state after the last step.
    void advanceTo(std::int64_t nowMs);

    // Calibration references: what the pack is told it sees now.
    void applyCurrent(int ma);
    void applyAmbient(int deciK);
    void applyCellVoltage(int cell, int mv);

    // Raw sensor readings before calibration, used by the calibration commands.
    [[nodiscard]] double rawCurrentMa() const;
    [[nodiscard]] double rawSensorDeciK(int sensor) const;
    [[nodiscard]] double rawCellMv(int cell) const;

    // A relearn: state of charge from the open-circuit voltage, learned resistances to defaults.
    void relearn();

    [[nodiscard]] double trueCurrentMa() const { return currentMa_; }
    [[nodiscard]] double stateOfChargeMah() const { return chargeMah_; }

private:
    struct Cell {
        double socOffset; // share of capacity away from the pack's state of charge
        double resistanceMohm;
        double temperatureK;
        double gainError; // voltage sensor
        double offsetMv;
        int forcedMv = -1; // a calibration reference applied to this cell
    };

    void step();
    [[nodiscard]] double profileCurrentMa() const;
    [[nodiscard]] double cellTrueMv(const Cell& cell) const;
    [[nodiscard]] int readCellMv(int index) const;
    [[nodiscard]] int readSensorDeciK(int sensor) const;
    [[nodiscard]] int readCurrentMa() const;
    void publish();
    void publishCells();
    void protect(const std::vector<int>& cellMv, const std::vector<int>& cellDeciK, int currentMa);
    void setSafety(int bit, bool alert, std::uint16_t data);
    void cellWeftPoll();
    [[nodiscard]] SafetySnapshot snapshot() const;

    PackModel& model_;
    Forensics& forensics_;
    std::vector<Cell> cells_;
    std::vector<std::string> cellOffsetNames_, cellGainNames_, sensorOffsetNames_;
    std::int64_t simulatedMs_ = 0;
    std::int64_t nextCellWeftPollMs_ = CellWeftPollMs;
    std::int64_t nextAlarmMs_ = 0;
    double chargeMah_ = 0;
    double currentMa_ = 0;
    double boardK_ = 298.1;
    double currentGainError_ = 1.0;
    double currentBiasMa_ = 0;
    double sensorErrorDeciK_[5] = {};
    int appliedCurrentMa_ = -100000; // none
    int ambientDeciK_ = 2981;
    std::int64_t alertSinceMs_[16] = {};
    std::uint16_t lastAlarmWord_ = 0;
};

} // namespace zvsim
