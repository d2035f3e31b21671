#include "platform/ini_file.h"

#include "platform/text.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <utility>

namespace zv::platform {

namespace {

std::string_view trimmed(std::string_view s)
{
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!s.empty() && blank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && blank(s.back()))
        s.remove_suffix(1);
    return s;
}

std::string entryText(std::string_view key, std::string_view value)
{
    std::string line(key);
    line += '=';
    line += value;
    return line;
}

} // namespace

IniFile IniFile::load(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return {};
    std::ostringstream content;
    content << in.rdbuf();
    if (in.bad())
        return {};
    return parse(content.str());
}

IniFile IniFile::parse(std::string_view text)
{
    IniFile file;
    std::string current;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos)
            end = text.size();
        std::string_view raw = text.substr(start, end - start);
        start = end + 1;
        if (!raw.empty() && raw.back() == '\r') {
            raw.remove_suffix(1);
            file.crlf_ = true;
        }

        Line line { Kind::Other, std::string(raw), current, {}, {} };
        const std::string_view body = trimmed(raw);
        const bool comment = !body.empty() && (body.front() == ';' || body.front() == '#');
        if (!comment && !body.empty() && body.front() == '[') {
            const auto close = body.rfind(']');
            if (close != std::string_view::npos) {
                current = std::string(trimmed(body.substr(1, close - 1)));
                line.kind = Kind::Section;
                line.section = current;
            }
        } else if (!comment && !current.empty()) {
            const auto eq = body.find('=');
            if (eq != std::string_view::npos && eq > 0) {
                line.kind = Kind::Entry;
                line.key = std::string(trimmed(body.substr(0, eq)));
                line.value = std::string(trimmed(body.substr(eq + 1)));
            }
        }
        file.lines_.push_back(std::move(line));
    }
    return file;
}

bool IniFile::save(const std::string& path) const
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out)
        return false;
    out << text();
    out.flush();
    return static_cast<bool>(out);
}

std::string IniFile::text() const
{
    const char* eol = crlf_ ? "\r\n" : "\n";
    std::string out;
    for (const auto& line : lines_) {
        out += line.raw;
        out += eol;
    }
    return out;
}

const IniFile::Line* IniFile::findEntry(std::string_view section, std::string_view key) const
{
    for (const auto& line : lines_) {
        if (line.kind == Kind::Entry && equalsIgnoreCase(line.section, section)
            && equalsIgnoreCase(line.key, key))
            return &line;
    }
    return nullptr;
}

IniFile::Line* IniFile::findEntry(std::string_view section, std::string_view key)
{
    return const_cast<Line*>(std::as_const(*this).findEntry(section, key));
}

bool IniFile::contains(std::string_view section, std::string_view key) const
{
    return findEntry(section, key) != nullptr;
}

std::string IniFile::value(std::string_view section, std::string_view key) const
{
    const Line* line = findEntry(section, key);
    return line ? line->value : std::string();
}

std::size_t IniFile::insertionPoint(std::string_view section) const
{
    // After the last entry of the section, else right after its header; npos when it is absent.
    std::size_t point = std::string::npos;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const auto& line = lines_[i];
        if (line.kind == Kind::Other || !equalsIgnoreCase(line.section, section))
            continue;
        if (line.kind == Kind::Entry || point == std::string::npos)
            point = i + 1;
    }
    return point;
}

void IniFile::setValue(std::string_view section, std::string_view key, std::string_view value)
{
    if (Line* line = findEntry(section, key)) {
        if (line->value == value)
            return;
        line->value = std::string(value);
        line->raw = entryText(line->key, value);
        return;
    }
    Line entry { Kind::Entry, entryText(key, value), std::string(section), std::string(key),
        std::string(value) };
    const std::size_t point = insertionPoint(section);
    if (point != std::string::npos) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(point), std::move(entry));
        return;
    }
    lines_.push_back({ Kind::Section, "[" + std::string(section) + "]", std::string(section), {}, {} });
    lines_.push_back(std::move(entry));
}

std::vector<std::string> IniFile::sections() const
{
    std::vector<std::string> names;
    for (const auto& line : lines_) {
        if (line.kind != Kind::Section)
            continue;
        const bool seen = std::any_of(names.begin(), names.end(),
            [&](const std::string& n) { return equalsIgnoreCase(n, line.section); });
        if (!seen)
            names.push_back(line.section);
    }
    return names;
}

std::vector<std::string> IniFile::keys(std::string_view section) const
{
    std::vector<std::string> names;
    for (const auto& line : lines_) {
        if (line.kind == Kind::Entry && equalsIgnoreCase(line.section, section))
            names.push_back(line.key);
    }
    return names;
}

} // namespace zv::platform
