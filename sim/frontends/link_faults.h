#pragma once
// Faults on a switch and a rate: the link faults the front ends add, the device faults they pass
// on to the pack, the text form of the --faults option and a seeded die that decides each case.

#include "device/smbus_target.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace zvsim {

struct LinkFaults {
    double pecRate = 0.0; // share of read replies whose PEC byte is corrupted
    double lostRate = 0.0; // share of transaction replies that never come
    double cutRate = 0.0; // share of transaction replies cut off before their prompt
    double stuckRate = 0.0; // share of transactions that find the bus stuck high
    double alarmRate = 0.0; // share of reads interrupted by an alarm broadcast
    std::optional<std::int64_t> pullAfterMs; // the pack is pulled this long after the start
};

// The longest time an option or fault takes, in seconds (a year).
inline constexpr double kMaxFaultSeconds = 31536000.0;

struct FaultPlan {
    LinkFaults link;
    DeviceFaults device;
};

struct FaultListResult {
    FaultPlan plan;
    std::string error; // empty when the list was understood
};

// Parses "pec:0.05,lost:0.01,busy:3,status:9,stuck:0.01,pull:120". Rates are shares from 0 to 1,
// busy a count of status polls, status a code from 0 to 255, pull seconds after the start.
[[nodiscard]] FaultListResult parseFaultList(std::string_view text);

// The plan in the same text form (only the switches that are on); "none" when nothing is.
[[nodiscard]] std::string describeFaults(const FaultPlan& plan);

// Decides with a given probability; the same seed gives the same sequence of decisions.
class FaultDice {
public:
    explicit FaultDice(std::uint64_t seed)
        : engine_(seed)
    {
    }
    [[nodiscard]] bool roll(double rate);
    [[nodiscard]] std::uint64_t next() { return engine_(); }

private:
    std::mt19937_64 engine_;
};

} // namespace zvsim
