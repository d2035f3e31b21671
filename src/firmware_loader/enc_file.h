#pragma once
// The .enc firmware image: a fixed tag line, then hexadecimal text whose first word counts the
// sections and whose table places each section in the text. The image is opaque: it is only cut
// into sections, never deciphered.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// "<Ulmar Bootload>" as hexadecimal text; line 1 must equal it exactly.
inline constexpr std::string_view kEncTagLine = "3C556C6D617220426F6F746C6F61643E";

// One element of the section table.
struct BootSection {
    std::uint32_t file = 0; // device file that receives the section
    std::uint32_t version = 0;
    std::uint32_t start = 0; // character position of the data in the body, from 1
    std::uint32_t length = 0; // last byte, relative to the start
    std::string data; // the section's hexadecimal text

    [[nodiscard]] std::size_t bytes() const { return data.size() / 2; }
};

enum class EncFault {
    None,
    NotFirmware, // line 1 is not the tag
    Invalid, // the body or a section does not hold what the table says
};

struct EncImage {
    EncFault fault = EncFault::None;
    std::vector<BootSection> sections;
};

// A 16-bit value of four hexadecimal digits, low byte first ("7017" is 6000); nothing when the
// four characters from `position` (counted from 1) are not all hexadecimal digits.
[[nodiscard]] std::optional<std::uint32_t> encWord(std::string_view body, std::size_t position);

// Parses the whole file's text (any of CR LF, LF or CR ends a line); each section's data passes
// the driver's ValidateHexFileFormat.
[[nodiscard]] EncImage parseEncText(std::string_view text);

// Whether an image whose first section has this version fits the target: below 6000 for "1001"
// and "1002", at least 6000 for "1003", anything for other targets.
[[nodiscard]] bool firmwareFitsTarget(std::string_view targetId, std::uint32_t firstVersion);

} // namespace zv
