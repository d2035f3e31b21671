#include "logging/log_definition.h"

#include <charconv>

namespace zv {

namespace {

constexpr char kTab = '\t';

// Blanks only: a tab is a field separator, so trailing tabs stay and make extra fields.
std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlank = " ";
    const auto first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::vector<std::string_view> fields(std::string_view line)
{
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    while (true) {
        const auto tab = line.find(kTab, start);
        parts.push_back(line.substr(start, tab == std::string_view::npos ? tab : tab - start));
        if (tab == std::string_view::npos)
            return parts;
        start = tab + 1;
    }
}

// A 16-bit integer in decimal, blanks around it allowed: the error's text when it is not one.
std::string readInteger(std::string_view text, std::int16_t& value)
{
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || end != text.data() + text.size() || error == std::errc::invalid_argument)
        return "Type mismatch";
    if (error == std::errc::result_out_of_range || number < -32768 || number > 32767)
        return "Overflow";
    value = static_cast<std::int16_t>(number);
    return {};
}

} // namespace

ParsedLogDefinition parseLogDefinition(std::string_view text)
{
    ParsedLogDefinition parsed;
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        line = trimmed(line);
        text = end == std::string_view::npos ? std::string_view {} : text.substr(end + 1);
        if (line.empty() || line.front() == ';')
            continue;
        const auto parts = fields(line);
        if (parts.size() != 4) {
            parsed.outcome = LogDefinitionOutcome::BadFieldCount;
            return parsed;
        }
        LogDefinitionEntry entry;
        entry.label = std::string(parts[0]);
        for (auto [field, target] :
            { std::pair { parts[1], &entry.fileNumber }, { parts[2], &entry.fileElement } }) {
            if (auto error = readInteger(field, *target); !error.empty()) {
                parsed.outcome = LogDefinitionOutcome::BadNumber;
                parsed.error = std::move(error);
                return parsed;
            }
        }
        entry.dataType = std::string(parts[3]);
        parsed.entries.push_back(std::move(entry));
    }
    return parsed;
}

std::vector<std::uint8_t> logDefinitionImage(const std::vector<LogDefinitionEntry>& entries)
{
    const auto count = static_cast<std::uint16_t>(entries.size());
    std::vector<std::uint8_t> image { static_cast<std::uint8_t>(count & 0xFF),
        static_cast<std::uint8_t>(count >> 8) };
    for (const auto& entry : entries) {
        image.push_back(static_cast<std::uint8_t>(entry.fileNumber & 0xFF));
        image.push_back(static_cast<std::uint8_t>(entry.fileElement & 0xFF));
    }
    return image;
}

int logDefinitionFile(LogDefinitionKind kind)
{
    return kind == LogDefinitionKind::Map ? 39 : 30;
}

} // namespace zv
