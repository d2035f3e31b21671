#pragma once
// One line of a gateway or cell configuration file: tab-separated columns 0 to 12 (name,
// levels, number, multiplier, types, scale flags, scaling, limits, unit), the bit labels in
// 13 to 28, then LoggingType, TabOrder, FileNumber and FileIndex in 29 to 32. A line with fewer
// columns is the file's error: without its place in a device file a parameter cannot be read.

#include "params/number_text.h"
#include "params/smbus_parameter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zv {

inline constexpr std::size_t kRequiredConfigColumns = 33;

// A comment line begins with "#".
[[nodiscard]] inline bool isConfigComment(std::string_view line)
{
    return !line.empty() && line.front() == '#';
}

// The version a comment line carries once its "#" and tabs are removed; nothing if the rest is
// no number. Throws RuntimeError 6 for a number beyond 32 bits.
[[nodiscard]] std::optional<std::int32_t> configVersionOf(std::string_view commentLine);

// Removes every quote at either end: "\"mV\"" gives "mV", "\"\"\"\"" gives "".
[[nodiscard]] std::string stripQuotes(std::string_view text);

// Sets the parameter's fields from the columns of a line. Columns 9 to 11 are in the invariant
// form ("." as decimal point) whatever the locale. Throws RuntimeError 9 for fewer than 13
// columns, 13 for a column that is not a number, 6 for a byte column out of range.
void readParameterColumns(std::string_view line, clsSMBusParameter& parameter, const NumberLocale& locale);

// Columns 0 to 12 and the parameter's bit labels, tab-separated.
[[nodiscard]] std::string parameterColumns(const clsSMBusParameter& parameter);

} // namespace zv
