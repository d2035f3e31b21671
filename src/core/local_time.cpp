#include "core/local_time.h"

#include <ctime>

namespace zv {

namespace {

std::string format(std::chrono::system_clock::time_point when, const char* pattern)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(when);
    std::tm local {};
    localtime_r(&seconds, &local);
    char buffer[128];
    const std::size_t length = std::strftime(buffer, sizeof buffer, pattern, &local);
    return std::string(buffer, length);
}

} // namespace

std::string shortDate(std::chrono::system_clock::time_point when)
{
    return format(when, "%x");
}
std::string timeOfDay(std::chrono::system_clock::time_point when)
{
    return format(when, "%X");
}
std::string dateAndTime(std::chrono::system_clock::time_point when)
{
    return shortDate(when) + " " + timeOfDay(when);
}

} // namespace zv
