#pragma once
// Number parsing of texts from settings, files and typed values.

#include <optional>
#include <string_view>

namespace zv {

// Reads a number the forgiving way: blanks, tabs and line feeds anywhere are skipped, and reading
// stops at the first character that cannot continue the number; nothing usable gives 0.
// Decimal: optional sign, digits, '.', digits, an exponent with E or D ("1e3" is 1000).
// "&H" hexadecimal and "&O" octal: up to 0xFFFF the value is a signed 16-bit number, up to
// 0xFFFFFFFF a signed 32-bit number ("&HFFFF" is -1, "&HFFF8F0" is 16775408).
[[nodiscard]] double Val(std::string_view text);

// A whole number with surrounding blanks allowed and nothing else: optional sign and decimal
// digits, with a fraction rounded half to even. Empty, other text, or a value outside
// -32768..32767 gives nothing, and the caller takes its default.
[[nodiscard]] std::optional<int> strictInteger(std::string_view text);

} // namespace zv
