#pragma once
// Alarm.cfg: which status bit each of the 16 alarm bits maps to.
// A line (trimmed) is a comment when it begins with "'" or "//"; otherwise it holds
// "source,destination". It counts only for a source of 0 to 15 and a destination of 0 to 15
// or -2.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zv {

// AlarmMap: index = source bit, value = destination bit, -1 for no mapping.
using AlarmMapTable = std::array<std::int16_t, 16>;
inline constexpr std::int16_t kNoAlarmMapping = -1;

struct AlarmMapping {
    int source = 0;
    int destination = 0;
};

// The mapping a line gives; nothing for comments and lines that do not count.
[[nodiscard]] std::optional<AlarmMapping> parseAlarmLine(std::string_view line);

} // namespace zv
