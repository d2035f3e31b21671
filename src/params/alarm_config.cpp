#include "params/alarm_config.h"

#include "params/number_text.h"

#include <charconv>
#include <string>

namespace zv {
namespace {

std::optional<int> integerField(std::string_view text)
{
    const std::string field = trimBlanks(text);
    std::string_view digits = field;
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
    }
    int value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (digits.empty() || result.ec != std::errc() || result.ptr != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<AlarmMapping> parseAlarmLine(std::string_view line)
{
    const std::string trimmed = trimBlanks(line);
    if (trimmed.starts_with('\'') || trimmed.starts_with("//")) {
        return std::nullopt;
    }
    const auto comma = trimmed.find(',');
    if (comma == std::string::npos || trimmed.find(',', comma + 1) != std::string::npos) {
        return std::nullopt;
    }
    const auto source = integerField(std::string_view(trimmed).substr(0, comma));
    const auto destination = integerField(std::string_view(trimmed).substr(comma + 1));
    if (!source || !destination || *source < 0 || *source > 15) {
        return std::nullopt;
    }
    if (!((*destination >= 0 && *destination <= 15) || *destination == -2)) {
        return std::nullopt;
    }
    return AlarmMapping { *source, *destination };
}

} // namespace zv
