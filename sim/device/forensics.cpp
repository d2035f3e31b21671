#include "device/forensics.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace zvsim {

Forensics::Forensics(FileStore& files, bool summaryLayout)
    : files_(files)
    , summaryLayout_(summaryLayout)
{
}

void Forensics::factoryContents(std::uint32_t seed)
{
    std::vector<std::uint8_t>& ring = files_.bytes(SafetyFile);
    std::fill(ring.begin(), ring.end(), 0);
    for (int slot = 0; slot < Slots; ++slot)
        ring[static_cast<std::size_t>(2 + slot * SlotBytes + 3)] = EmptySlot;

    // A pack that has lived 1234 hours, mostly in the middle bands.
    const int lifetime = 1234;
    std::mt19937 rng(seed);
    std::vector<std::uint8_t>& history = files_.bytes(HistoryFile);
    std::fill(history.begin(), history.end(), 0);
    files_.setWord(HistoryFile, 0, lifetime);
    int cells = (static_cast<int>(history.size()) / 2 - 1) / 8;
    for (int block = 0; block < 2; ++block) {
        for (int cell = 0; cell < cells; ++cell) {
            int low = 40 + static_cast<int>(rng() % 60);
            int high = 80 + static_cast<int>(rng() % 80);
            int nearHigh = 300 + static_cast<int>(rng() % 200);
            int bands[4] = { low, lifetime - low - high - nearHigh, nearHigh, high };
            for (int band = 0; band < 4; ++band)
                files_.setWord(HistoryFile, 2 * (1 + block * cells * 4 + cell * 4 + band),
                    static_cast<std::uint16_t>(bands[band]));
        }
    }
}

void Forensics::recordEvent(std::uint8_t code, std::uint16_t data, const SafetySnapshot& s)
{
    int head = files_.word(SafetyFile, 0) % Slots;
    int at = 2 + head * SlotBytes;
    std::vector<std::uint8_t>& ring = files_.bytes(SafetyFile);
    std::fill(ring.begin() + at, ring.begin() + at + SlotBytes, 0);
    files_.setWord(SafetyFile, at, s.hours);
    ring[static_cast<std::size_t>(at + 2)] = static_cast<std::uint8_t>(
        (s.fuseBlown ? 0x80 : 0) | (s.pfet ? 0x40 : 0) | (s.cfet ? 0x20 : 0) | (s.dfet ? 0x10 : 0));
    ring[static_cast<std::size_t>(at + 3)] = code;
    files_.setWord(SafetyFile, at + 4, data);
    if (summaryLayout_ && !s.cellMv.empty()) {
        auto [minIt, maxIt] = std::minmax_element(s.cellMv.begin(), s.cellMv.end());
        int average
            = std::accumulate(s.cellMv.begin(), s.cellMv.end(), 0) / static_cast<int>(s.cellMv.size());
        files_.setWord(SafetyFile, at + 6, static_cast<std::uint16_t>(*maxIt));
        files_.setWord(SafetyFile, at + 8, static_cast<std::uint16_t>(*minIt));
        files_.setWord(SafetyFile, at + 10, static_cast<std::uint16_t>(average));
        ring[static_cast<std::size_t>(at + 12)] = static_cast<std::uint8_t>(maxIt - s.cellMv.begin() + 1);
        ring[static_cast<std::size_t>(at + 13)] = static_cast<std::uint8_t>(minIt - s.cellMv.begin() + 1);
    } else {
        for (std::size_t cell = 0; cell < std::min<std::size_t>(4, s.cellMv.size()); ++cell)
            files_.setWord(
                SafetyFile, at + 6 + 2 * static_cast<int>(cell), static_cast<std::uint16_t>(s.cellMv[cell]));
    }
    files_.setWord(SafetyFile, at + 14, static_cast<std::uint16_t>(s.temperatureDeciK));
    files_.setWord(SafetyFile, at + 16, static_cast<std::uint16_t>(static_cast<std::int16_t>(s.currentMa)));
    files_.setWord(SafetyFile, 0, static_cast<std::uint16_t>((head + 1) % Slots));
}

int Forensics::temperatureBand(int deciK)
{
    if (deciK < 2831)
        return 0;
    if (deciK < 2981)
        return 1;
    return deciK < 3131 ? 2 : 3;
}

int Forensics::voltageBand(int mv)
{
    if (mv < 3300)
        return 0;
    if (mv < 3700)
        return 1;
    return mv < 4000 ? 2 : 3;
}

void Forensics::addTime(std::int64_t ms, const std::vector<int>& cellDeciK, const std::vector<int>& cellMv)
{
    pendingMs_ += ms;
    while (pendingMs_ >= 3600000) {
        pendingMs_ -= 3600000;
        addHour(cellDeciK, cellMv);
    }
}

void Forensics::bump(int valueIndex)
{
    int offset = 2 * valueIndex;
    if (offset + 1 < static_cast<int>(files_.bytes(HistoryFile).size()))
        files_.setWord(HistoryFile, offset, static_cast<std::uint16_t>(files_.word(HistoryFile, offset) + 1));
}

void Forensics::addHour(const std::vector<int>& cellDeciK, const std::vector<int>& cellMv)
{
    bump(0);
    int cells = static_cast<int>(cellMv.size());
    for (int cell = 0; cell < cells; ++cell) {
        bump(1 + cell * 4 + temperatureBand(cellDeciK[static_cast<std::size_t>(cell)]));
        bump(1 + cells * 4 + cell * 4 + voltageBand(cellMv[static_cast<std::size_t>(cell)]));
    }
}

} // namespace zvsim
