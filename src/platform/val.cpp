#include "platform/val.h"

#include "platform/text.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace zv {

namespace {

std::string withoutBlanks(std::string_view text)
{
    std::string compact;
    for (char c : text) {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r')
            compact += c;
    }
    return compact;
}

double radixValue(std::string_view digits, int radix)
{
    std::uint64_t value = 0;
    for (char c : digits) {
        const int d = platform::hexDigitValue(c);
        if (d < 0 || d >= radix || value > (UINT64_MAX >> 4))
            break;
        value = value * static_cast<std::uint64_t>(radix) + static_cast<std::uint64_t>(d);
    }
    if (value <= 0xFFFF)
        return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
    if (value <= 0xFFFFFFFF)
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
    return static_cast<double>(value);
}

// The longest prefix of s that reads as a decimal number, or empty.
std::string decimalPrefix(std::string_view s)
{
    std::size_t i = 0;
    const auto digitsFrom = [&](std::size_t at) {
        std::size_t end = at;
        while (end < s.size() && s[end] >= '0' && s[end] <= '9')
            ++end;
        return end;
    };
    if (i < s.size() && (s[i] == '+' || s[i] == '-'))
        ++i;
    const std::size_t intStart = i;
    i = digitsFrom(i);
    bool anyDigit = i > intStart;
    if (i < s.size() && s[i] == '.') {
        const std::size_t fracEnd = digitsFrom(i + 1);
        anyDigit = anyDigit || fracEnd > i + 1;
        i = fracEnd;
    }
    if (!anyDigit)
        return {};
    std::string number(s.substr(0, i));
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        std::size_t j = i + 1;
        if (j < s.size() && (s[j] == '+' || s[j] == '-'))
            ++j;
        const std::size_t expEnd = digitsFrom(j);
        if (expEnd > j) {
            number += 'e';
            number += s.substr(i + 1, expEnd - i - 1);
        }
    }
    return number;
}

} // namespace

double Val(std::string_view text)
{
    const std::string s = withoutBlanks(text);
    if (s.size() >= 2 && s[0] == '&') {
        const char kind = s[1];
        if (kind == 'h' || kind == 'H')
            return radixValue(std::string_view(s).substr(2), 16);
        if (kind == 'o' || kind == 'O')
            return radixValue(std::string_view(s).substr(2), 8);
        return 0;
    }
    const std::string number = decimalPrefix(s);
    if (number.empty())
        return 0;
    const double value = std::strtod(number.c_str(), nullptr);
    return std::isfinite(value) ? value : 0;
}

std::optional<int> strictInteger(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    const std::string number = decimalPrefix(text);
    if (number.empty() || number.size() != text.size() || number.find('e') != std::string::npos)
        return std::nullopt;
    const double rounded = std::nearbyint(std::strtod(number.c_str(), nullptr));
    if (rounded < -32768 || rounded > 32767)
        return std::nullopt;
    return static_cast<int>(rounded);
}

} // namespace zv
