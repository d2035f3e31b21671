#include "pack_configuration/editable_file.h"

#include "pack_configuration/pack_format_error.h"
#include "params/number_text.h"
#include "params/raw_conversion.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace zv {

namespace {

enum Line { kTitle, kVersion, kFileCount, kFileNumber, kFileName, kFileChunk, kFileSize, kFirstValue };

// A whole number in the usual text form: decimal with an optional sign, or "&H" and hex digits.
std::optional<long> wholeNumber(std::string_view text)
{
    int base = 10;
    if (text.size() > 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
        text.remove_prefix(2);
        base = 16;
    }
    if (base == 10 && !text.empty() && text[0] == '+')
        text.remove_prefix(1);
    long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

long field(const std::vector<std::string>& lines, Line line, const char* what, long lowest, long highest)
{
    const auto value = wholeNumber(lines[line]);
    if (!value || *value < lowest || *value > highest)
        throw PackFormatError(std::string("The ") + what + " '" + lines[line] + "' is not a number from "
            + std::to_string(lowest) + " to " + std::to_string(highest) + ".");
    return *value;
}

} // namespace

std::vector<std::string> editableLines(std::string_view text)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start <= text.size()) {
        const auto end = std::min(text.find('\n', start), text.size());
        std::string line(text.substr(start, end - start));
        line = line.substr(0, line.find('#'));
        line.erase(std::remove(line.begin(), line.end(), '\t'), line.end());
        line = trimBlanks(line);
        while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())))
            line.pop_back();
        if (!line.empty())
            lines.push_back(std::move(line));
        start = end + 1;
    }
    return lines;
}

EditableFile readEditablePCFile(
    std::string_view text, const ValueConversion& conversion, const DirectoryElements& directory)
{
    const auto lines = editableLines(text);
    if (lines.size() < kFirstValue)
        throw PackFormatError("The file has " + std::to_string(lines.size()) + " of the 7 header lines.");
    EditableFile result;
    result.header = { lines[kTitle], lines[kVersion] };
    (void)field(lines, kFileCount, "number of files", 1, 0x7FFF);
    const long number = field(lines, kFileNumber, "file number", 0, 255);
    const auto* entry = directory.fileEntry(static_cast<int>(number));
    if (!entry)
        throw PackFormatError("The device has no file " + std::to_string(number) + ".");
    PackProperties& file = result.file;
    file.FileNumber = static_cast<std::uint8_t>(number);
    file.FileName = lines[kFileName];
    file.FileChunk = static_cast<std::uint16_t>(field(lines, kFileChunk, "chunk", 1, 0xFFFF));
    file.FileSize = static_cast<std::uint16_t>(field(lines, kFileSize, "file size", 0, 0xFFFF));
    file.FileMaxBytes = static_cast<std::uint16_t>(entry->FileMaxBytes);
    file.FileIndex = 0;
    const std::size_t values = file.FileSize / 2;
    if (lines.size() < kFirstValue + values)
        throw PackFormatError("The file holds " + std::to_string(lines.size() - kFirstValue) + " of its "
            + std::to_string(values) + " values.");
    std::string data;
    for (std::size_t i = 0; i < values; ++i) {
        const std::string& line = lines[kFirstValue + i];
        const auto value = wholeNumber(line);
        if (!value || *value < -32768 || *value > 0xFFFF)
            throw PackFormatError("The value '" + line + "' is not a 16-bit number.");
        const std::string raw = conversion.GetConfigurationValue(std::to_string(*value), "integer", 2);
        if (raw.size() != 4)
            throw PackFormatError("The value '" + line + "' cannot be written.");
        data += raw;
    }
    file.FileData = data;
    return result;
}

} // namespace zv
