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
std::size_t numberPrefixLength(std::string_view text, char point, bool allowExponentD)
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
    if (i < text.size()
        && (text[i] == 'e' || text[i] == 'E' || (allowExponentD && (text[i] == 'd' || text[i] == 'D')))) {
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

double hexLeadingNumber(std::string_view digits)
{
    std::uint64_t value = 0;
    std::size_t count = 0;
    for (; count < digits.size() && count < 16; ++count) {
        const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(digits[count])));
        const auto position = std::string_view("0123456789ABCDEF").find(c);
        if (position == std::string_view::npos) {
            break;
        }
        value = value * 16 + position;
    }
    // Four digits or fewer make a 16-bit integer, up to eight a 32-bit one.
    if (count <= 4) {
        return static_cast<double>(static_cast<std::int16_t>(value));
    }
    if (count <= 8) {
        return static_cast<double>(static_cast<std::int32_t>(value));
    }
    return static_cast<double>(value);
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
    const std::size_t length = numberPrefixLength(trimmed, decimalSeparator, false);
    if (length == 0 || length != trimmed.size()) {
        return std::nullopt;
    }
    return convertPrefix(trimmed, decimalSeparator);
}

double leadingNumber(std::string_view text)
{
    std::string compact;
    std::copy_if(text.begin(), text.end(), std::back_inserter(compact),
        [](char c) { return !isBlank(c) && c != '\r' && c != '\n'; });
    if (compact.size() > 2 && compact[0] == '&' && (compact[1] == 'H' || compact[1] == 'h')) {
        return hexLeadingNumber(std::string_view(compact).substr(2));
    }
    const std::size_t length = numberPrefixLength(compact, '.', true);
    if (length == 0) {
        return 0;
    }
    return convertPrefix(std::string_view(compact).substr(0, length), '.').value_or(0);
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
