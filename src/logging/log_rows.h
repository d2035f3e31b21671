#pragma once
// The rows of a CSV log, pure: each function returns one row with its CR LF, the fields joined
// by the delimiter (gListSep). Dates, times and captures come in as text.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

class LogFile;

struct LogStamp {
    std::string date; // the locale's short date
    std::string time; // the locale's time
    std::string capture; // "0" or ElapsedCapture
};

// Minutes since the first sample with four decimals ("0.0333"), the decimal separator given.
[[nodiscard]] std::string elapsedCaptureText(std::int64_t elapsedMs, char decimalSeparator);

// A comment as a row can hold it: each comma and each delimiter become a blank, line ends too,
// so the number of fields stays fixed.
[[nodiscard]] std::string commentText(std::string_view text, std::string_view delimiter);

class LogRows {
public:
    explicit LogRows(std::string delimiter);

    // The first row of a session, with its empty line.
    [[nodiscard]] std::string sessionComment(
        const std::string& date, const std::string& time, const std::string& text) const;
    // TITLE, SOURCE FILE, ULMAR FILE, ELEMENT, FORMAT and HEADER of a definition.
    [[nodiscard]] std::string headerBlock(const std::string& title, const std::string& sourceFile,
        const LogFile& definition, bool dynamic) const;
    [[nodiscard]] std::string data(const LogStamp& stamp, const LogFile& definition) const;
    [[nodiscard]] std::string error(const LogStamp& stamp) const;
    [[nodiscard]] std::string comment(const LogStamp& stamp, const std::string& text) const;
    [[nodiscard]] std::string change(const LogStamp& stamp, const std::string& name,
        const std::string& oldValue, const std::string& newValue) const;
    // The learned data: its commas become delimiters.
    [[nodiscard]] std::string learned(const LogStamp& stamp, std::string_view commaSeparated) const;

    [[nodiscard]] const std::string& delimiter() const { return d_; }

private:
    [[nodiscard]] std::string field(std::string_view text) const;
    [[nodiscard]] std::string stamped(const char* kind, const LogStamp& stamp) const;

    std::string d_;
};

// "Zentavia <major>.<minor>.<revision> Static Data Capture" or "... Dynamic Data Capture".
[[nodiscard]] std::string captureTitle(int major, int minor, int revision, bool dynamic);

} // namespace zv
