#pragma once
// Hexadecimal text helpers: device data travels as upper-case hex text, two digits a byte,
// low byte first within a word.

#include "params/dynamic_value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// Drops a leading "0x"/"0X" or "&H" from texts longer than 2; every other character must be one
// of "0123456789ABCDEF". Nothing on a bad text or a value beyond 32 bits.
[[nodiscard]] std::optional<std::int64_t> convertToInt(std::string_view text);

// Formats: 0 "0x" + four digits, 1 "&H" + hex + "&", 2 "&H" + hex, 3 two digits, 4 four digits.
// A text value goes through convertToInt first; nothing on a bad value or format.
[[nodiscard]] std::optional<std::string> convertToHex(const DynamicValue& value, int format);

// Upper-case hex of the value (rounded; negatives as 32-bit two's complement), padded on the
// left to 2 * count digits and cut to that length from the right for count 1 to 4; with swap
// the bytes go low byte first. Throws RuntimeError 6 beyond 32 bits.
[[nodiscard]] std::string Hex_Str(double value, int count, bool swap);

// Removes blanks, CR LF pairs and tabs in place; true if only "0123456789ABCDEF" remain.
[[nodiscard]] bool ValidateHexFileFormat(std::string& text);

// Character sets: 0 "0123456789ABCDEF", 1 "0123456789", 3 "0123456789-", 2 and 4 "0123456789,-".
[[nodiscard]] bool ValidateCharFormat(std::string_view text, int mode);

// The hex text cut into two-digit pieces; an odd last digit stands alone.
[[nodiscard]] std::vector<std::string_view> hexPieces(std::string_view hex);
// The value of one piece (either case of letters); nothing for a non-hex character.
[[nodiscard]] std::optional<int> hexPieceValue(std::string_view piece);

} // namespace zv
