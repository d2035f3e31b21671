#pragma once
// The text form of a log definition (.dlog, .slog, .map) and the image that is downloaded to the
// device: pure, text in and records or bytes out.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

enum class LogDefinitionKind { Dynamic, Static, Map };

struct LogDefinitionEntry {
    std::string label; // FileLabel
    std::int16_t fileNumber = 0; // FileNumber
    std::int16_t fileElement = 0; // FileElement
    std::string dataType; // FileDataType: "U", "H", "S" or "STR"
};

enum class LogDefinitionOutcome {
    Ok,
    BadFieldCount, // a line without exactly four tab-separated fields: "Invalid File Format"
    BadNumber, // a file or element that is not a 16-bit decimal integer: a run-time error
};

struct ParsedLogDefinition {
    // The definitions read, in file order; after a failure those before the bad line.
    std::vector<LogDefinitionEntry> entries;
    LogDefinitionOutcome outcome = LogDefinitionOutcome::Ok;
    std::string error; // the run-time error's text for BadNumber ("Type mismatch", "Overflow")
};

// Reads the lines: each is trimmed; empty lines and lines starting with ";" are skipped; any
// other line must hold four fields separated by one tab each.
[[nodiscard]] ParsedLogDefinition parseLogDefinition(std::string_view text);

// The download image: the count as a word, low byte first, then for each definition the low
// byte of FileNumber and of FileElement. N definitions give N + 1 words.
[[nodiscard]] std::vector<std::uint8_t> logDefinitionImage(const std::vector<LogDefinitionEntry>& entries);

// The device file a definition of this kind is written to: 30, or 39 for a map.
[[nodiscard]] int logDefinitionFile(LogDefinitionKind kind);

} // namespace zv
