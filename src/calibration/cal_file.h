#pragma once
// The .cal file: the device's calibration data as text, kept on disk. Line 1 is device file 24,
// line 2 device file 31 (absent on a device of the single-file kind), each whole, as upper-case
// hexadecimal text, two digits a byte, and each ended by CR LF. There is no header, version or
// checksum: the match with a device is told only by the byte counts.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// The second line wherever line 2 is not read: 15 zero bytes.
inline constexpr std::string_view kDefaultCalSecondLine = "000000000000000000000000000000";

inline constexpr const char* kCalNoSecondLine = "The calibration file has no second line.";
inline constexpr const char* kCalNotHex
    = "The calibration file holds characters that are not hexadecimal digits.";

struct CalFile {
    std::string firstLine; // file 24
    std::optional<std::string> secondLine; // file 31; nothing in a one-line file
};

// The file's text: each present line followed by CR LF.
[[nodiscard]] std::string formatCalFile(const CalFile& file);

// The lines of a file's text; a line ends at LF, a CR before it is dropped. An empty text has an
// empty first line and no second. Lines after the second are ignored.
[[nodiscard]] CalFile parseCalFile(std::string_view text);

// A line's bytes, pair by pair; nothing when the line holds a character other than a hex digit
// or an odd number of digits.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> calLineBytes(std::string_view line);

// Bytes as a line: upper-case hex, two digits a byte.
[[nodiscard]] std::string calLineText(std::span<const std::uint8_t> bytes);

// The bytes a CalFile puts on the device.
struct CalibrationBytes {
    std::vector<std::uint8_t> first; // file 24
    std::vector<std::uint8_t> second; // file 31, or the 15-byte default
    bool writeSecond = true; // false: file 31 stays as it is
};

// The bytes of a .cal file's lines for a device; singleFile tells the device kind (SingleCalFile). `error` is
// set (and nothing else is meaningful) when a line is not hex text, or when line 2 is missing where the
// device needs it: a missing line 2 is allowed on target "1003" only, and then file 31 is not written.
struct CalibrationDecode {
    CalibrationBytes bytes;
    std::string error;
};
[[nodiscard]] CalibrationDecode decodeCalFile(
    const CalFile& file, bool singleFile, const std::string& targetId);

// Writes `text` to `path` through a temporary file beside it, renamed over the target once it is
// complete, so the target is either the old file or the whole new one. Empty on success, else
// the reason.
[[nodiscard]] std::string writeFileAtomically(const std::string& path, std::string_view text);

// The whole text of a .cal file; nothing when it cannot be read.
[[nodiscard]] std::optional<std::string> readTextFile(const std::string& path);

} // namespace zv
