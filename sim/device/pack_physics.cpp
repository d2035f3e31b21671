#include "device/pack_physics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace zvsim {

namespace {

// Open-circuit voltage of a cell by state of charge in percent.
double openCircuitMv(double socPercent)
{
    static const std::array<std::pair<double, double>, 12> curve { { { 0, 3000 }, { 5, 3300 }, { 10, 3450 },
        { 20, 3550 }, { 30, 3610 }, { 40, 3650 }, { 50, 3690 }, { 60, 3750 }, { 70, 3830 }, { 80, 3920 },
        { 90, 4030 }, { 100, 4180 } } };
    socPercent = std::clamp(socPercent, 0.0, 100.0);
    for (std::size_t i = 1; i < curve.size(); ++i) {
        if (socPercent <= curve[i].first) {
            double t = (socPercent - curve[i - 1].first) / (curve[i].first - curve[i - 1].first);
            return curve[i - 1].second + t * (curve[i].second - curve[i - 1].second);
        }
    }
    return curve.back().second;
}

double spread(std::mt19937& rng, double halfWidth)
{
    return (static_cast<double>(rng() % 2001) / 1000.0 - 1.0) * halfWidth;
}

// Safety alert bits of "Safety Alert" / "Safety Status".
enum SafetyBit { Cov, Cuv, Occ, Ocd, Otc, Otd, Utc, Utd };
constexpr std::uint16_t chargeBlocking = (1 << Cov) | (1 << Occ) | (1 << Otc) | (1 << Utc);
constexpr std::uint16_t dischargeBlocking = (1 << Cuv) | (1 << Ocd) | (1 << Otd) | (1 << Utd);
constexpr std::int64_t confirmMs = 1000;
constexpr std::uint16_t alarmBits = 0xDB00;
constexpr std::uint16_t calibrationModeBits = 0xF000;

} // namespace

PackPhysics::PackPhysics(PackModel& model, Forensics& forensics)
    : model_(model)
    , forensics_(forensics)
{
    std::mt19937& rng = model_.rng;
    for (int i = 0; i < model_.cells(); ++i)
        cells_.push_back({ spread(rng, 0.02), 30.0 + spread(rng, 3.0), 298.1 + spread(rng, 0.5),
            1.0 + spread(rng, 0.004), spread(rng, 6.0) });
    for (int i = 1; i <= std::min(16, model_.cells()); ++i) {
        cellOffsetNames_.push_back("Cell " + std::to_string(i) + " Voltage Offset");
        cellGainNames_.push_back("Cell " + std::to_string(i) + " Voltage Gain");
    }
    for (int sensor = 1; sensor <= 5; ++sensor)
        sensorOffsetNames_.push_back("Sensor " + std::to_string(sensor) + " Offset");
    currentGainError_ = 1.0 + spread(rng, 0.02);
    currentBiasMa_ = 5 + spread(rng, 4.0);
    for (double& error : sensorErrorDeciK_)
        error = spread(rng, 15.0);
    chargeMah_ = model_.files.get("Design Capacity") * 0.55;
    nextAlarmMs_ = model_.options.alarmPeriodMs;
    for (auto& since : alertSinceMs_)
        since = -1;
    publish();
    publishCells();
}

void PackPhysics::applyCurrent(int ma)
{
    appliedCurrentMa_ = ma;
    currentMa_ = ma;
}

void PackPhysics::applyAmbient(int deciK)
{
    // The pack has settled at the ambient temperature it is calibrated at.
    ambientDeciK_ = deciK;
    boardK_ = deciK / 10.0;
    for (Cell& cell : cells_)
        cell.temperatureK = deciK / 10.0;
}

void PackPhysics::applyCellVoltage(int cell, int mv)
{
    if (cell >= 1 && cell <= model_.cells())
        cells_[static_cast<std::size_t>(cell - 1)].forcedMv = mv;
}

double PackPhysics::profileCurrentMa() const
{
    bool calibrating = (model_.files.get("Algorithm Enable") & calibrationModeBits) != 0;
    if (calibrating && appliedCurrentMa_ != -100000)
        return appliedCurrentMa_;
    if (calibrating || model_.safeDisconnectUntilMs > model_.nowMs)
        return 0;
    // A 20-minute cycle: rest, discharge, rest, charge.
    std::int64_t phase = (simulatedMs_ / 1000) % 1200;
    if (phase < 120 || (phase >= 600 && phase < 720))
        return 0;
    return phase < 600 ? -3000.0 : static_cast<double>(model_.files.get("Charging Current"));
}

double PackPhysics::cellTrueMv(const Cell& cell) const
{
    if (cell.forcedMv >= 0)
        return cell.forcedMv;
    double capacity = std::max<double>(1, model_.files.get("Design Capacity"));
    double soc = chargeMah_ / capacity * 100.0 + cell.socOffset * 100.0;
    return openCircuitMv(soc) + currentMa_ * cell.resistanceMohm / 1000.0;
}

double PackPhysics::rawCurrentMa() const
{
    return currentMa_ * currentGainError_ + currentBiasMa_;
}

double PackPhysics::rawSensorDeciK(int sensor) const
{
    double trueK = boardK_;
    if (sensor > 1) {
        // Sensors 2 to 5 each sit on a group of cells.
        int groups = 4;
        int per = std::max(1, (model_.cells() + groups - 1) / groups);
        int first = std::min(model_.cells() - 1, (sensor - 2) * per);
        trueK = cells_[static_cast<std::size_t>(first)].temperatureK;
    }
    return trueK * 10.0 + sensorErrorDeciK_[sensor - 1];
}

double PackPhysics::rawCellMv(int cell) const
{
    const Cell& c = cells_[static_cast<std::size_t>(cell - 1)];
    return cellTrueMv(c) * c.gainError + c.offsetMv;
}

int PackPhysics::readCurrentMa() const
{
    double offset = model_.files.getSigned("Current Offset");
    double gain = model_.files.get("Current Gain") / 32767.0;
    return static_cast<int>(std::lround((rawCurrentMa() + offset) * gain));
}

int PackPhysics::readSensorDeciK(int sensor) const
{
    double offset = model_.files.getSigned(sensorOffsetNames_[static_cast<std::size_t>(sensor - 1)]);
    return static_cast<int>(std::lround(rawSensorDeciK(sensor) + offset));
}

int PackPhysics::readCellMv(int index) const
{
    auto i = static_cast<std::size_t>(index);
    double offset = index < 16 ? model_.files.getSigned(cellOffsetNames_[i]) : 0;
    // The gain word divides: 32768 is gain 1, a larger word reads lower.
    std::uint32_t word = index < 16 ? model_.files.get(cellGainNames_[i]) : 32768;
    double gain = 32768.0 / std::max<std::uint32_t>(1, word);
    return static_cast<int>(std::lround(rawCellMv(index + 1) * gain + offset));
}

void PackPhysics::relearn()
{
    // The state of charge is taken again from the resting voltage of the first cell.
    double mv = cells_.empty()
        ? 3700
        : cellTrueMv(cells_.front()) - currentMa_ * cells_.front().resistanceMohm / 1000;
    double soc = 0;
    while (soc < 100 && openCircuitMv(soc) < mv)
        soc += 0.5;
    chargeMah_ = soc / 100.0 * model_.files.get("Design Capacity");
    for (int node = 1; node <= model_.cells(); ++node)
        for (int i = 0; i < 4; ++i)
            model_.files.set("Ra " + std::to_string(i), static_cast<std::uint32_t>(30 + 5 * i), node);
}

void PackPhysics::advanceTo(std::int64_t nowMs)
{
    while (simulatedMs_ + StepMs <= nowMs) {
        simulatedMs_ += StepMs;
        step();
    }
}

void PackPhysics::step()
{
    FileStore& files = model_.files;
    bool calibrating = (files.get("Algorithm Enable") & calibrationModeBits) != 0;
    if (!calibrating) {
        appliedCurrentMa_ = -100000;
        for (Cell& cell : cells_)
            cell.forcedMv = -1;
    }
    std::uint16_t fets = static_cast<std::uint16_t>(files.get("FET Status"));
    double wanted = profileCurrentMa();
    if ((wanted > 0 && !(fets & 2)) || (wanted < 0 && !(fets & 1)))
        wanted = 0;
    if (wanted > 0 && files.get("Max Cell Voltage") >= files.get("Charge Termination Voltage"))
        wanted = std::min<double>(wanted, files.get("Taper Current"));
    currentMa_ = wanted;

    double hours = StepMs / 3600000.0;
    double capacity = files.get("Design Capacity");
    chargeMah_ = std::clamp(chargeMah_ + currentMa_ * hours, 0.0, capacity);
    double heatK = currentMa_ * currentMa_ * 1e-8;
    double ambientK = ambientDeciK_ / 10.0;
    for (Cell& cell : cells_)
        cell.temperatureK += (ambientK + heatK * cell.resistanceMohm - cell.temperatureK) * StepMs / 120000.0;
    boardK_ += (ambientK + 0.5 + heatK * 20 - boardK_) * StepMs / 60000.0;

    std::vector<int> cellMv, cellDeciK;
    for (int i = 0; i < model_.cells(); ++i) {
        cellMv.push_back(readCellMv(i));
        cellDeciK.push_back(
            static_cast<int>(std::lround(cells_[static_cast<std::size_t>(i)].temperatureK * 10)));
    }
    forensics_.addTime(StepMs, cellDeciK, cellMv);
    if (model_.dataFlow && simulatedMs_ >= nextCellWeftPollMs_) {
        nextCellWeftPollMs_ = simulatedMs_ + CellWeftPollMs;
        cellWeftPoll();
    }
    publish();
    protect(cellMv, cellDeciK, readCurrentMa());
}

void PackPhysics::cellWeftPoll()
{
    FileStore& files = model_.files;
    files.set("Number of CellWeft Polls", (files.get("Number of CellWeft Polls") + 1) & 0xFFFF);
    files.set("LAN time stamp", static_cast<std::uint32_t>(simulatedMs_ / 1000) & 0xFFFF);
    files.setBits("Internal Flags 2", 0x2000, true);
    publishCells();
}

void PackPhysics::publishCells()
{
    FileStore& files = model_.files;
    int n = model_.cells();
    std::vector<int> mv(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        mv[static_cast<std::size_t>(i)] = readCellMv(i);
    int average = std::accumulate(mv.begin(), mv.end(), 0) / n;
    bool balancingOn = (files.get("Algorithm Enable") & 1) != 0;
    double capacity = std::max<double>(1, files.get("Design Capacity"));
    for (int node = 1; node <= n; ++node) {
        const Cell& cell = cells_[static_cast<std::size_t>(node - 1)];
        int v = mv[static_cast<std::size_t>(node - 1)];
        int threshold = static_cast<int>(files.get("Balance Threshold", node));
        std::uint16_t status = static_cast<std::uint16_t>(files.get("Cell Status", node) & 0x3C);
        int balance = 0;
        if (balancingOn && v > average + threshold) {
            status |= 0x41; // pump north, balancing
            balance = -50;
        } else if (balancingOn && v < average - threshold) {
            status |= 0x42; // pump south, balancing
            balance = 50;
        }
        files.set("Voltage", static_cast<std::uint32_t>(v), node);
        files.set("Temperature", static_cast<std::uint32_t>(std::lround(cell.temperatureK * 10)), node);
        files.setSigned("Balance Current", balance, node);
        files.set("Cell State of Charge",
            static_cast<std::uint32_t>(
                std::clamp(chargeMah_ / capacity * 100 + cell.socOffset * 100, 0.0, 100.0)),
            node);
        if (balance != 0)
            files.set(
                "Balance Time", (files.get("Balance Time", node) + CellWeftPollMs / 1000) & 0xFFFF, node);
        files.set("Cell Status", status, node);
    }
}

void PackPhysics::publish()
{
    FileStore& files = model_.files;
    int current = readCurrentMa();
    double capacity = std::max<double>(1, files.get("Design Capacity"));
    int rsoc = static_cast<int>(std::lround(chargeMah_ / capacity * 100));
    int board = readSensorDeciK(1);
    int packMv = 0, maxMv = 0, minMv = 65535, maxDeciK = 0;
    for (int i = 0; i < model_.cells(); ++i) {
        int mv = readCellMv(i);
        packMv += mv;
        maxMv = std::max(maxMv, mv);
        minMv = std::min(minMv, mv);
        maxDeciK = std::max(
            maxDeciK, static_cast<int>(std::lround(cells_[static_cast<std::size_t>(i)].temperatureK * 10)));
    }
    double average = files.getSigned("Average Current");
    average += (current - average) * 0.1;
    files.setSigned("Current", current);
    files.setSigned("Average Current", static_cast<int>(std::lround(average)));
    files.set("State of Charge", static_cast<std::uint32_t>(rsoc));
    files.set("Sense Resistor Temperature", static_cast<std::uint32_t>(board + std::abs(current) / 500));
    files.set(
        "Charge FET Temperature", static_cast<std::uint32_t>(board + (current > 0 ? current / 400 : 0)));
    files.set(
        "Discharge FET Temperature", static_cast<std::uint32_t>(board + (current < 0 ? -current / 400 : 0)));
    files.set("Precharge FET Temperature", static_cast<std::uint32_t>(board));
    files.set("Pack Voltage", static_cast<std::uint32_t>(std::min(packMv, 65535)));
    files.set("Temperature", static_cast<std::uint32_t>(maxDeciK));
    files.set("Relative State of Charge", static_cast<std::uint32_t>(rsoc));
    files.set("Board Temperature", static_cast<std::uint32_t>(board));
    files.set("Remaining Capacity", static_cast<std::uint32_t>(std::lround(chargeMah_)));
    files.set("Full Charge Capacity", static_cast<std::uint32_t>(capacity));
    files.set("Max Cell Voltage", static_cast<std::uint32_t>(maxMv));
    files.set("Min Cell Voltage", static_cast<std::uint32_t>(minMv));
    files.set("Average Time to Empty",
        average < -1 ? static_cast<std::uint32_t>(std::min(65534.0, chargeMah_ / -average * 60)) : 65535u);
    files.set("Average Time to Full",
        average > 1 ? static_cast<std::uint32_t>(std::min(65534.0, (capacity - chargeMah_) / average * 60))
                    : 65535u);
    for (int sensor = 1; sensor <= 5; ++sensor)
        files.setWord(21, 2 * (sensor - 1), static_cast<std::uint16_t>(readSensorDeciK(sensor)));
    std::uint32_t seconds = static_cast<std::uint32_t>(simulatedMs_ / 1000) & 0xFFFF;
    files.set("Time stamp", seconds);
    files.set("Current time stamp", seconds);
    files.set("Temperature time stamp", seconds);
    files.set("State", model_.dataFlow ? 1u : 2u);
    files.set("FETs allowed", 0x7);
    files.set("actual FETs", files.get("FET Status"));
    files.set("Poll rate index", 2);
    files.set("Actual Number Of Cells", files.get("Actual Number Of Cells"));
}

SafetySnapshot PackPhysics::snapshot() const
{
    const FileStore& files = model_.files;
    SafetySnapshot s;
    s.hours = static_cast<std::uint16_t>(forensics_.lifetimeHours());
    std::uint32_t fets = files.get("FET Status");
    s.dfet = fets & 1;
    s.cfet = fets & 2;
    s.pfet = fets & 4;
    s.fuseBlown = files.get("Safety Flags") & 0x8000;
    for (int i = 0; i < model_.cells(); ++i)
        s.cellMv.push_back(readCellMv(i));
    s.temperatureDeciK = static_cast<int>(files.get("Temperature"));
    s.currentMa = files.getSigned("Current");
    return s;
}

void PackPhysics::setSafety(int bit, bool alert, std::uint16_t data)
{
    FileStore& files = model_.files;
    auto mask = static_cast<std::uint16_t>(1 << bit);
    if (!alert) {
        alertSinceMs_[bit] = -1;
        files.setBits("Safety Alert", mask, false);
        files.setBits("Safety Status", mask, false);
        return;
    }
    files.setBits("Safety Alert", mask, true);
    if (alertSinceMs_[bit] < 0)
        alertSinceMs_[bit] = simulatedMs_;
    bool confirmed = simulatedMs_ - alertSinceMs_[bit] >= confirmMs;
    if (confirmed && !(files.get("Safety Status") & mask)) {
        files.setBits("Safety Status", mask, true);
        forensics_.recordEvent(static_cast<std::uint8_t>(bit + 1), data, snapshot());
    }
}

void PackPhysics::protect(const std::vector<int>& cellMv, const std::vector<int>& cellDeciK, int currentMa)
{
    FileStore& files = model_.files;
    int maxMv = *std::max_element(cellMv.begin(), cellMv.end());
    int minMv = *std::min_element(cellMv.begin(), cellMv.end());
    int maxT = *std::max_element(cellDeciK.begin(), cellDeciK.end());
    int minT = *std::min_element(cellDeciK.begin(), cellDeciK.end());
    std::uint16_t status = static_cast<std::uint16_t>(files.get("Safety Status"));
    auto held = [&](int bit) { return (status & (1 << bit)) != 0; };
    auto limit = [&](const char* name) { return static_cast<int>(files.get(name)); };
    bool charging = currentMa > 0;

    setSafety(Cov,
        maxMv >= limit("Cell Over Voltage Limit")
            || (held(Cov) && maxMv >= limit("Cell Over Voltage Recovery")),
        static_cast<std::uint16_t>(maxMv));
    setSafety(Cuv,
        minMv <= limit("Cell Under Voltage Limit")
            || (held(Cuv) && minMv <= limit("Cell Under Voltage Recovery")),
        static_cast<std::uint16_t>(minMv));
    setSafety(Occ, currentMa >= limit("Over Current Charge Limit"), static_cast<std::uint16_t>(currentMa));
    setSafety(
        Ocd, -currentMa >= limit("Over Current Discharge Limit"), static_cast<std::uint16_t>(currentMa));
    bool hot = maxT >= limit("Over Temperature Limit")
        || ((held(Otc) || held(Otd)) && maxT >= limit("Over Temperature Recovery"));
    bool cold = minT <= limit("Under Temperature Limit")
        || ((held(Utc) || held(Utd)) && minT <= limit("Under Temperature Recovery"));
    setSafety(Otc, hot && charging, static_cast<std::uint16_t>(maxT));
    setSafety(Otd, hot && !charging, static_cast<std::uint16_t>(maxT));
    setSafety(Utc, cold && charging, static_cast<std::uint16_t>(minT));
    setSafety(Utd, cold && !charging, static_cast<std::uint16_t>(minT));
    files.setBits("Permanent Disable Alert", 0x0100, maxMv - minMv > limit("Cell Imbalance Limit"));

    status = static_cast<std::uint16_t>(files.get("Safety Status"));
    for (int node = 1; node <= model_.cells(); ++node) {
        int mv = cellMv[static_cast<std::size_t>(node - 1)];
        int t = cellDeciK[static_cast<std::size_t>(node - 1)];
        std::uint32_t before = files.get("Cell Status", node);
        auto hysteresis = [&](std::uint32_t bit, bool crossed, bool notRecovered) {
            return (crossed || ((before & bit) && notRecovered)) ? bit : 0u;
        };
        std::uint32_t bits = hysteresis(0x04, mv >= limit("Cell Over Voltage Limit"),
                                 mv >= limit("Cell Over Voltage Recovery"))
            | hysteresis(
                0x08, mv <= limit("Cell Under Voltage Limit"), mv <= limit("Cell Under Voltage Recovery"))
            | hysteresis(0x10, t >= limit("Over Temperature Limit"), t >= limit("Over Temperature Recovery"))
            | hysteresis(
                0x20, t <= limit("Under Temperature Limit"), t <= limit("Under Temperature Recovery"));
        files.set("Cell Status", (before & ~0x3Cu) | bits, node);
    }

    bool fuse = files.get("Safety Flags") & 0x8000;
    bool off
        = fuse || (files.get("Internal Flags 2") & 0x0003) || model_.safeDisconnectUntilMs > model_.nowMs;
    std::uint16_t fets = 0;
    if (!off && !(status & dischargeBlocking))
        fets |= 1;
    if (!off && !(status & chargeBlocking))
        fets |= 2;
    files.set("FET Status", fets);

    int rsoc = static_cast<int>(files.get("Relative State of Charge"));
    std::uint16_t battery = 0x0080;
    battery |= currentMa <= 0 ? 0x0040 : 0;
    battery |= rsoc >= 100 ? 0x0020 : 0;
    battery |= rsoc <= 0 ? 0x0010 : 0;
    battery |= rsoc < 10 ? 0x0200 : 0;
    battery |= (status & (1 << Cov)) ? 0x8000 : 0;
    battery |= (status & chargeBlocking) ? 0x4000 : 0;
    battery |= (status & ((1 << Otc) | (1 << Otd))) ? 0x1000 : 0;
    battery |= (status & dischargeBlocking) ? 0x0800 : 0;
    files.set("Battery Status", battery);
    files.set("Status", battery);
    files.setBits("Charge Alert", 0x0001, rsoc >= 100);
    files.setBits("Charge Status", 0x0001, rsoc >= 100);
    files.setBits("Charge Alert", 0x0002, status & (1 << Cov));
    files.setBits("Charge Status", 0x0002, status & (1 << Cov));

    std::uint16_t system = 0;
    system |= currentMa > 10 ? 0x01 : 0;
    system |= currentMa < -10 ? 0x02 : 0;
    system |= std::abs(currentMa) <= 10 ? 0x04 : 0;
    system |= model_.dataFlow ? 0x30 : 0;
    system |= (battery & alarmBits) ? 0x40 : 0;
    for (int node = 1; node <= model_.cells(); ++node)
        system |= (files.get("Cell Status", node) & 0x40) ? 0x08 : 0;
    files.set("System Flags", system);

    bool broadcasts = files.get("Algorithm Enable") & 0x40;
    std::uint16_t rising = static_cast<std::uint16_t>(battery & alarmBits & ~lastAlarmWord_);
    lastAlarmWord_ = static_cast<std::uint16_t>(battery & alarmBits);
    if (broadcasts && rising)
        model_.alarmBroadcasts.push_back(battery);
    if (model_.options.alarmPeriodMs > 0 && simulatedMs_ >= nextAlarmMs_) {
        nextAlarmMs_ = simulatedMs_ + model_.options.alarmPeriodMs;
        model_.alarmBroadcasts.push_back(battery);
    }
}

} // namespace zvsim
