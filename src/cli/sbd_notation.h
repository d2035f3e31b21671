#pragma once
// The notations of an SMBus read: HEX, UINT, SINT and STR, for a word and for a block.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zv::cli {

enum class SbdFormat { HEX, UINT, SINT, STR };

// "HEX", "UINT", "SINT" or "STR" in any case; nothing for another text.
[[nodiscard]] std::optional<SbdFormat> parseSbdFormat(std::string_view text);

// A word from 0 to 65535: four hex digits; decimal; signed decimal; the characters of the high
// and the low byte with blanks at both ends trimmed.
[[nodiscard]] std::string wordText(int word, SbdFormat format);
// A block: two hex digits a byte; the words b[i] + 256 b[i+1] each followed by a blank (a last
// byte without a partner left out); the same signed; one character a byte.
[[nodiscard]] std::string blockText(std::span<const std::uint8_t> block, SbdFormat format);

} // namespace zv::cli
