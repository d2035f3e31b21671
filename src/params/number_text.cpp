#include "params/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace zv {
namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Locale-independent shortest text of at most 15 significant digits, "e" exponent.
std::string chars15(double value)
{
    std::array<char, 64> buffer {};
    const auto result
        = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, 15);
    return { buffer.data(), result.ptr };
}

std::optional<double> fromChars(std::string_view text)
{
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

// Length of "[+-]digits[.digits][e[+-]digits]" at the start of text, with `point` as the
// decimal point; 0 if there are no digits.
std::size_t numberPrefixLength(std::string_view text, char point)
{
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        ++i;
    }
    std::size_t digits = 0;
    for (; i < text.size() && isDigit(text[i]); ++i) {
        ++digits;
    }
    if (i < text.size() && text[i] == point) {
        ++i;
        for (; i < text.size() && isDigit(text[i]); ++i) {
            ++digits;
        }
    }
    if (digits == 0) {
        return 0;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) {
            ++j;
        }
        if (j < text.size() && isDigit(text[j])) {
            while (j < text.size() && isDigit(text[j])) {
                ++j;
            }
            i = j;
        }
    }
    return i;
}

// Normalises a number prefix for from_chars: "." point, "e" exponent, no leading "+".
std::optional<double> convertPrefix(std::string_view prefix, char point)
{
    std::string normalised;
    for (const char c : prefix) {
        if (c == point) {
            normalised += '.';
        } else if (c == 'd' || c == 'D') {
            normalised += 'e';
        } else if (!(c == '+' && normalised.empty())) {
            normalised += c;
        }
    }
    return fromChars(normalised);
}

} // namespace

std::string generalNumberText(double value, const NumberLocale& locale)
{
    if (value == 0) {
        return "0";
    }
    std::string text = chars15(value);
    for (auto& c : text) {
        if (c == '.') {
            c = locale.decimalSeparator;
        } else if (c == 'e') {
            c = 'E';
        }
    }
    return text;
}

std::string formatNumber(double value, std::string_view pattern, const NumberLocale& locale)
{
    const auto point = pattern.find('.');
    const int decimals = point == std::string_view::npos ? 0 : static_cast<int>(pattern.size() - point - 1);
    const bool optionalIntegerDigit = !pattern.empty() && pattern.front() == '#';
    const double scale = std::pow(10.0, decimals);
    const double scaled = std::round(toFifteenDigits(toFifteenDigits(value) * scale));
    if (!std::isfinite(scaled) || std::fabs(scaled) > 9e15) {
        return generalNumberText(value, locale);
    }
    const auto magnitude = static_cast<std::uint64_t>(std::fabs(scaled));
    const auto unit = static_cast<std::uint64_t>(scale);
    const std::uint64_t integerPart = magnitude / unit;
    std::string text = scaled < 0 ? "-" : "";
    if (integerPart != 0 || !optionalIntegerDigit) {
        text += std::to_string(integerPart);
    }
    if (decimals > 0) {
        std::string fraction = std::to_string(magnitude % unit);
        text += locale.decimalSeparator;
        text += std::string(static_cast<std::size_t>(decimals) - fraction.size(), '0') + fraction;
    }
    return text;
}

std::optional<double> parseNumber(std::string_view text, char decimalSeparator)
{
    const std::string trimmed = trimBlanks(text);
    const std::size_t length = numberPrefixLength(trimmed, decimalSeparator);
    if (length == 0 || length != trimmed.size()) {
        return std::nullopt;
    }
    return convertPrefix(trimmed, decimalSeparator);
}

double roundHalfEven(double value)
{
    return std::nearbyint(value);
}

double toFifteenDigits(double value)
{
    if (!std::isfinite(value) || value == 0) {
        return value;
    }
    return fromChars(chars15(value)).value_or(value);
}

std::string trimBlanks(std::string_view text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), isBlank).base();
    return first < last ? std::string(first, last) : std::string();
}

std::string toLower(std::string_view text)
{
    std::string lower(text);
    for (auto& c : lower) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return lower;
}

} // namespace zv
