#include "logging/log_rows.h"

#include "device_files/directory.h"

#include <cstdio>

namespace zv {

namespace {

constexpr const char* kEnd = "\r\n";

} // namespace

std::string elapsedCaptureText(std::int64_t elapsedMs, char decimalSeparator)
{
    char buffer[48];
    std::snprintf(buffer, sizeof buffer, "%.4f", static_cast<double>(elapsedMs) / 60000.0);
    std::string text(buffer);
    if (const auto point = text.find('.'); point != std::string::npos)
        text[point] = decimalSeparator;
    return text;
}

std::string commentText(std::string_view text, std::string_view delimiter)
{
    std::string result(text);
    for (char& c : result)
        if (c == ',' || c == '\r' || c == '\n' || (delimiter.size() == 1 && c == delimiter.front()))
            c = ' ';
    return result;
}

LogRows::LogRows(std::string delimiter)
    : d_(std::move(delimiter))
{
}

// Labels and paths are the operator's text: one that holds the delimiter or a quote is quoted,
// so that a spreadsheet still finds the columns.
std::string LogRows::field(std::string_view text) const
{
    if (text.find(d_) == std::string_view::npos && text.find('"') == std::string_view::npos)
        return std::string(text);
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string LogRows::stamped(const char* kind, const LogStamp& stamp) const
{
    return kind + d_ + stamp.date + d_ + stamp.time + d_ + stamp.capture;
}

std::string LogRows::sessionComment(
    const std::string& date, const std::string& time, const std::string& text) const
{
    return "COMMENT" + d_ + date + d_ + time + d_ + "0" + d_ + text + kEnd + kEnd;
}

std::string LogRows::headerBlock(
    const std::string& title, const std::string& sourceFile, const LogFile& definition, bool dynamic) const
{
    std::string numbers;
    std::string elements;
    std::string formats;
    std::string labels;
    for (const auto& item : definition) {
        numbers += d_ + std::to_string(item.FileNumber);
        elements += d_ + std::to_string(item.FileElement);
        formats += d_ + field(item.FileDataType);
        labels += d_ + field(item.FileLabel);
    }
    const std::string empty = d_ + d_ + d_;
    std::string block = "TITLE" + d_ + title + kEnd;
    block += "SOURCE FILE" + d_ + field(sourceFile) + kEnd;
    block += "ULMAR FILE" + empty + numbers + kEnd;
    block += "ELEMENT" + empty + elements + kEnd;
    block += "FORMAT" + empty + formats + kEnd;
    block += (dynamic ? "HEADER [D]" : "HEADER") + d_ + "Date" + d_ + "Time" + d_ + "Capture" + labels + kEnd;
    return block;
}

std::string LogRows::data(const LogStamp& stamp, const LogFile& definition) const
{
    std::string row = stamped("DATA", stamp);
    for (const auto& item : definition)
        row += d_ + item.value;
    return row + kEnd;
}

std::string LogRows::error(const LogStamp& stamp) const
{
    return stamped("ERROR", stamp) + kEnd;
}

std::string LogRows::comment(const LogStamp& stamp, const std::string& text) const
{
    return stamped("COMMENT", stamp) + d_ + text + kEnd;
}

std::string LogRows::change(const LogStamp& stamp, const std::string& name, const std::string& oldValue,
    const std::string& newValue) const
{
    return stamped("CHANGE", stamp) + d_ + field(name) + d_ + field(oldValue) + d_ + field(newValue) + kEnd;
}

std::string LogRows::learned(const LogStamp& stamp, std::string_view commaSeparated) const
{
    std::string row = stamped("Ra", stamp) + d_;
    for (char c : commaSeparated) {
        if (c == ',')
            row += d_;
        else
            row += c;
    }
    return row + kEnd;
}

std::string captureTitle(int major, int minor, int revision, bool dynamic)
{
    return "Zentavia " + std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(revision)
        + (dynamic ? " Dynamic Data Capture" : " Static Data Capture");
}

} // namespace zv
