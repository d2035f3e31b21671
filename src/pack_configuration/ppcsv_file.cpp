#include "pack_configuration/ppcsv_file.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace zv {

namespace {

constexpr int kTextType = 6;
constexpr const char* kParsingLine = "An error has occurred while parsing the 'ppcsv' file.";
constexpr const char* kTryAgain = "Please correct the problem and try again.";

std::string trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(" \t\r\n");
    return std::string(text.substr(first, last - first + 1));
}

std::string lowerCase(std::string_view text)
{
    std::string result(text);
    for (auto& c : result)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

std::vector<std::string> fields(std::string_view line)
{
    const char separator = line.find('\t') != std::string_view::npos ? '\t' : ',';
    std::vector<std::string> result;
    std::size_t start = 0;
    while (true) {
        const auto at = line.find(separator, start);
        result.emplace_back(
            line.substr(start, at == std::string_view::npos ? std::string_view::npos : at - start));
        if (at == std::string_view::npos)
            return result;
        start = at + 1;
    }
}

} // namespace

std::vector<std::string> ppcsvLines(const PpcsvHeader& header, const std::vector<PpcsvTab>& tabs)
{
    std::vector<std::string> lines {
        "# Zentavia Version " + std::to_string(header.major) + "." + std::to_string(header.minor) + "."
            + std::to_string(header.revision),
        "# Target = " + header.target,
        "# Cells = " + std::to_string(header.cells),
        std::string("# CapacityMode = ") + (header.capacityMode ? "Enabled" : "Disabled"),
        "# VScale x " + std::to_string(header.vScale),
        "# IPScale x " + std::to_string(header.ipScale),
        "# Scaled values are identified by a division sign + scalar in the units column",
    };
    for (const PpcsvTab& tab : tabs) {
        if (tab.rows.empty())
            continue;
        lines.emplace_back();
        lines.push_back("<" + tab.caption + ">," + std::to_string(tab.position) + ",");
        for (const PpcsvRow& row : tab.rows)
            lines.push_back(row.name + "," + row.units + "," + row.value);
    }
    return lines;
}

std::vector<PpcsvEntry> parsePpcsv(std::string_view text)
{
    std::vector<PpcsvEntry> entries;
    int number = 0;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = std::min(text.find('\n', start), text.size());
        std::string_view line = text.substr(start, end - start);
        start = end + 1;
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#' || line.front() == '<')
            continue;
        const auto parts = fields(line);
        PpcsvEntry entry { number, trimmed(parts[0]), std::nullopt };
        if (parts.size() > 2)
            entry.value = parts[2];
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::optional<DataSetFault> checkDataSet(
    const std::vector<PpcsvEntry>& entries, const ParameterTypeLookup& typeOf)
{
    std::set<std::string> seen;
    for (const PpcsvEntry& entry : entries) {
        const auto type = typeOf(entry.name);
        if (!type)
            return DataSetFault { "Error Parsing File",
                "An error has occurred while parsing the 'ppcsv' file on line number "
                    + std::to_string(entry.line) + ".\r\n" + kTryAgain };
        if (!seen.insert(lowerCase(entry.name)).second)
            return DataSetFault { "Duplicate Entry Detected",
                std::string(kParsingLine) + "\r\nThe parameter '" + entry.name
                    + "' has a duplicate entry.\r\n" + kTryAgain };
        if (*type != kTextType && (!entry.value || trimmed(*entry.value).empty()))
            return DataSetFault { "Value Field Missing",
                std::string(kParsingLine) + "\r\nThe parameter '" + entry.name
                    + "' has no value associated with it.\r\n" + kTryAgain };
    }
    return std::nullopt;
}

} // namespace zv
