#pragma once
// Byte values as the front ends write them: "~XX" on the dongle's wire, "XX" on the USB socket.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zvsim {

// Two upper-case hex digits.
[[nodiscard]] std::string hexByte(std::uint8_t value);

// "~XX" for every byte, one after the other.
[[nodiscard]] std::string tildeHex(std::span<const std::uint8_t> bytes);

// The value of two hex digits (either case); nullopt for anything else.
[[nodiscard]] std::optional<std::uint8_t> parseHexByte(std::string_view twoDigits);

// "~XX~YY..." to bytes; nullopt when the text is not exactly such groups.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> parseTildeHex(std::string_view text);

// Control characters and bytes above 0x7E as <0D>, for traces.
[[nodiscard]] std::string printable(std::string_view bytes);

} // namespace zvsim
