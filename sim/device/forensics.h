#pragma once
// The pack's memory of its life: the ring of the last ten safety events (file 33) and the hours
// each cell spent in four bands of temperature and of voltage (file 7).

#include "device/file_store.h"

#include <cstdint>
#include <vector>

namespace zvsim {

struct SafetySnapshot {
    std::uint16_t hours = 0;
    bool fuseBlown = false, pfet = false, cfet = false, dfet = false;
    std::vector<int> cellMv;
    int temperatureDeciK = 0;
    int currentMa = 0;
};

class Forensics {
public:
    static constexpr int SafetyFile = 33;
    static constexpr int HistoryFile = 7;
    static constexpr int Slots = 10;
    static constexpr int SlotBytes = 18;
    static constexpr std::uint8_t EmptySlot = 0xFF;

    Forensics(FileStore& files, bool summaryLayout);

    // First power-on contents: an empty ring and a lifetime with some hours in it.
    void factoryContents(std::uint32_t seed);

    // Writes one event into the slot at the ring head and moves the head on.
    void recordEvent(std::uint8_t code, std::uint16_t data, const SafetySnapshot& snapshot);

    // Adds elapsed time; each whole hour adds one to the lifetime and to the band of each cell.
    void addTime(std::int64_t ms, const std::vector<int>& cellDeciK, const std::vector<int>& cellMv);

    [[nodiscard]] int lifetimeHours() const { return files_.word(HistoryFile, 0); }
    [[nodiscard]] static int temperatureBand(int deciK);
    [[nodiscard]] static int voltageBand(int mv);

private:
    void addHour(const std::vector<int>& cellDeciK, const std::vector<int>& cellMv);
    void bump(int valueIndex);

    FileStore& files_;
    bool summaryLayout_;
    std::int64_t pendingMs_ = 0;
};

} // namespace zvsim
