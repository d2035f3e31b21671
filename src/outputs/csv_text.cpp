#include "outputs/csv_text.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace zv {

std::string csvField(std::string_view text, std::string_view separator)
{
    const bool quoted = text.find_first_of("\"\r\n") != std::string_view::npos
        || (!separator.empty() && text.find(separator) != std::string_view::npos);
    if (!quoted)
        return std::string(text);
    std::string field = "\"";
    for (const char c : text) {
        if (c == '"')
            field += '"';
        field += c;
    }
    return field + '"';
}

std::string csvLine(const std::vector<std::string>& fields, std::string_view separator)
{
    std::string line;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0)
            line += separator;
        line += csvField(fields[i], separator);
    }
    return line;
}

void writeTextLines(const std::string& path, const std::vector<std::string>& lines)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file)
        throw std::runtime_error("Cannot open " + path + ": " + std::strerror(errno));
    for (const auto& line : lines)
        file << line << "\r\n";
    file.close();
    if (!file)
        throw std::runtime_error("Cannot write " + path);
}

} // namespace zv
