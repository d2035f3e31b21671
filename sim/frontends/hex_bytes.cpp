#include "frontends/hex_bytes.h"

namespace zvsim {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

int digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

} // namespace

std::string hexByte(std::uint8_t value)
{
    return { kDigits[value >> 4], kDigits[value & 0x0F] };
}

std::string tildeHex(std::span<const std::uint8_t> bytes)
{
    std::string text;
    text.reserve(bytes.size() * 3);
    for (std::uint8_t byte : bytes)
        text += "~" + hexByte(byte);
    return text;
}

std::optional<std::uint8_t> parseHexByte(std::string_view twoDigits)
{
    if (twoDigits.size() != 2)
        return std::nullopt;
    const int high = digitValue(twoDigits[0]);
    const int low = digitValue(twoDigits[1]);
    if (high < 0 || low < 0)
        return std::nullopt;
    return static_cast<std::uint8_t>(high * 16 + low);
}

std::optional<std::vector<std::uint8_t>> parseTildeHex(std::string_view text)
{
    if (text.size() % 3 != 0)
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at < text.size(); at += 3) {
        const auto value = parseHexByte(text.substr(at + 1, 2));
        if (text[at] != '~' || !value)
            return std::nullopt;
        bytes.push_back(*value);
    }
    return bytes;
}

std::string printable(std::string_view bytes)
{
    std::string text;
    for (char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (byte >= 0x20 && byte <= 0x7E)
            text += c;
        else
            text += "<" + hexByte(byte) + ">";
    }
    return text;
}

} // namespace zvsim
