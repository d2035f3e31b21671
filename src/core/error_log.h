#pragma once
// The file "error.log" beside the program: one tab-separated line a record, appended and closed
// at once.

#include <chrono>
#include <string>

namespace zv {

inline constexpr const char* kErrorLogName = "error.log";

struct ErrorLogRecord {
    std::string source;
    std::string module;
    std::string procedure;
    std::string number; // decimal, or "Debug"
    std::string description;
    std::string action; // "Abort", "Retry", "Ignore" or "Auto Handler"
};

// date, time, source, module, procedure, number, description, action, separated by tabs.
[[nodiscard]] std::string errorLogLine(
    const ErrorLogRecord& record, std::chrono::system_clock::time_point when);

// Appends one line; throws std::system_error when the file cannot be opened or written, so the
// failure reaches the caller of the error routine.
void appendErrorLog(const std::string& path, const std::string& line);

} // namespace zv
