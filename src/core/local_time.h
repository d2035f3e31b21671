#pragma once
// Dates and times in the forms of the user's locale (the C library's LC_TIME, which the
// application sets from the environment at start).

#include <chrono>
#include <string>

namespace zv {

[[nodiscard]] std::string shortDate(std::chrono::system_clock::time_point when);
[[nodiscard]] std::string timeOfDay(std::chrono::system_clock::time_point when);
// Date and time together, as a log line starts: shortDate + " " + timeOfDay.
[[nodiscard]] std::string dateAndTime(std::chrono::system_clock::time_point when);

} // namespace zv
