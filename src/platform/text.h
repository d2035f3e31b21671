#pragma once
// Small text helpers that every layer uses.

#include <cstdint>
#include <string>
#include <string_view>

namespace zv::platform {

// True when the texts are equal apart from the case of ASCII letters.
[[nodiscard]] bool equalsIgnoreCase(std::string_view a, std::string_view b);

// The value of a hexadecimal digit of either case; -1 for any other character.
[[nodiscard]] int hexDigitValue(char c);

// A byte as two upper-case hexadecimal digits.
[[nodiscard]] std::string byteHex(std::uint8_t byte);

} // namespace zv::platform
