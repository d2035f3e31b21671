#pragma once
// The packed log sample (file 29) that the definition in file 30 selects, and the words that the
// SBD map (file 39) puts behind a run of SMBus commands.

#include "device/pack_model.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace zvsim {

constexpr int LogSampleFile = 29;
constexpr int LogDefinitionFile = 30;
constexpr int SbdMapFile = 39;

// One definition entry: a file and an element of it.
struct SampleSource {
    int file = 0;
    int element = 0;
};

// Entries of a definition image: a count word, then a file byte and an element byte per entry.
[[nodiscard]] std::vector<SampleSource> definitionEntries(const std::vector<std::uint8_t>& image);

// The word one entry stands for; file 0 element 0 is the tick (seconds since power-on).
[[nodiscard]] std::uint16_t sourceWord(const PackModel& model, const SampleSource& source);

// The sample as file 29 holds it: one word per entry of file 30, then zeros.
[[nodiscard]] std::vector<std::uint8_t> composeLogSample(const PackModel& model);

// The word of an SMBus command inside the SBD map; nothing outside it.
[[nodiscard]] std::optional<std::uint16_t> sbdMapWord(const PackModel& model, std::uint8_t command);

} // namespace zvsim
