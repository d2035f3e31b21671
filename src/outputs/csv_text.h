#pragma once
// The text of CSV files: fields joined by a separator, quoted where they must be, lines ended
// by CR LF, and the file written in one go.

#include <string>
#include <string_view>
#include <vector>

namespace zv {

// A field as written: in double quotes, with inner quotes doubled, when it holds the separator,
// a quote or a line break; otherwise as it is.
[[nodiscard]] std::string csvField(std::string_view text, std::string_view separator);
// The fields, each made safe by csvField, joined by the separator.
[[nodiscard]] std::string csvLine(const std::vector<std::string>& fields, std::string_view separator);

// Writes the lines, each ended by CR LF, replacing the file; throws std::runtime_error with the
// system's reason when the file cannot be written.
void writeTextLines(const std::string& path, const std::vector<std::string>& lines);

} // namespace zv
