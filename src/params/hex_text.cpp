#include "params/hex_text.h"

#include "params/runtime_error.h"

#include <algorithm>
#include <cmath>

namespace zv {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool onlyCharactersOf(std::string_view text, std::string_view allowed)
{
    return std::all_of(
        text.begin(), text.end(), [&](char c) { return allowed.find(c) != std::string_view::npos; });
}

// Hex digits of a 32-bit pattern, no leading zeros ("0" for 0).
std::string plainHex(std::uint32_t value)
{
    std::string digits;
    do {
        digits.insert(digits.begin(), kHexDigits[value & 0xF]);
        value >>= 4;
    } while (value != 0);
    return digits;
}

std::optional<std::uint32_t> toBitPattern(double value)
{
    const double rounded = roundHalfEven(value);
    if (!std::isfinite(rounded) || rounded < -2147483648.0 || rounded > 4294967295.0) {
        return std::nullopt;
    }
    return rounded < 0 ? static_cast<std::uint32_t>(static_cast<std::int64_t>(rounded))
                       : static_cast<std::uint32_t>(rounded);
}

std::string rightmost(std::string text, std::size_t count)
{
    if (text.size() < count) {
        return std::string(count - text.size(), '0') + text;
    }
    return text.substr(text.size() - count);
}

} // namespace

std::optional<std::int64_t> convertToInt(std::string_view text)
{
    if (text.size() > 2 && (text.starts_with("0x") || text.starts_with("0X") || text.starts_with("&H"))) {
        text.remove_prefix(2);
    }
    std::int64_t value = 0;
    for (const char c : text) {
        const auto digit = kHexDigits.find(c);
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        value = value * 16 + static_cast<std::int64_t>(digit);
        if (value > 0xFFFFFFFFLL) {
            return std::nullopt;
        }
    }
    return value;
}

std::optional<std::string> convertToHex(const DynamicValue& value, int format)
{
    std::optional<std::uint32_t> pattern;
    if (value.isText()) {
        if (const auto parsed = convertToInt(value.text())) {
            pattern = static_cast<std::uint32_t>(*parsed);
        }
    } else if (value.isNumber()) {
        pattern = toBitPattern(value.number());
    } else if (value.isEmpty()) {
        pattern = 0;
    }
    if (!pattern) {
        return std::nullopt;
    }
    const std::string hex = plainHex(*pattern);
    switch (format) {
    case 0:
        return "0x" + rightmost(hex, 4);
    case 1:
        return "&H" + hex + "&";
    case 2:
        return "&H" + hex;
    case 3:
        return rightmost(hex, 2);
    case 4:
        return rightmost(hex, 4);
    default:
        return std::nullopt;
    }
}

std::string Hex_Str(double value, int count, bool swap)
{
    const auto pattern = toBitPattern(value);
    if (!pattern) {
        throw RuntimeError::overflow();
    }
    std::string hex = plainHex(*pattern);
    if (count >= 1 && count <= 4) {
        hex = rightmost(hex, static_cast<std::size_t>(count) * 2);
    } else if (hex.size() % 2 != 0) {
        hex.insert(hex.begin(), '0');
    }
    if (!swap) {
        return hex;
    }
    std::string swapped;
    for (std::size_t i = hex.size(); i >= 2; i -= 2) {
        swapped += hex.substr(i - 2, 2);
    }
    return swapped;
}

bool ValidateHexFileFormat(std::string& text)
{
    std::string cleaned;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            ++i;
        } else if (text[i] != ' ' && text[i] != '\t') {
            cleaned += text[i];
        }
    }
    text = cleaned;
    return onlyCharactersOf(text, kHexDigits);
}

bool ValidateCharFormat(std::string_view text, int mode)
{
    switch (mode) {
    case 0:
        return onlyCharactersOf(text, kHexDigits);
    case 1:
        return onlyCharactersOf(text, "0123456789");
    case 3:
        return onlyCharactersOf(text, "0123456789-");
    case 2:
    case 4:
        return onlyCharactersOf(text, "0123456789,-");
    default:
        return text.empty();
    }
}

std::vector<std::string_view> hexPieces(std::string_view hex)
{
    std::vector<std::string_view> pieces;
    pieces.reserve((hex.size() + 1) / 2);
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        pieces.push_back(hex.substr(i, 2));
    }
    return pieces;
}

std::optional<int> hexPieceValue(std::string_view piece)
{
    if (piece.empty()) {
        return std::nullopt;
    }
    int value = 0;
    for (const char c : piece) {
        const auto digit = kHexDigits.find(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        value = value * 16 + static_cast<int>(digit);
    }
    return value;
}

} // namespace zv
