#include "platform/serial_settings.h"

#include <charconv>
#include <string>
#include <vector>

namespace zv::platform {

namespace {

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

std::vector<std::string_view> fields(std::string_view text)
{
    std::vector<std::string_view> result;
    std::size_t start = 0;
    while (true) {
        const auto comma = text.find(',', start);
        result.push_back(trimmed(text.substr(start, comma - start)));
        if (comma == std::string_view::npos)
            return result;
        start = comma + 1;
    }
}

std::optional<int> number(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<Parity> parity(std::string_view text)
{
    if (text.size() != 1)
        return std::nullopt;
    switch (text[0]) {
    case 'n':
    case 'N':
        return Parity::None;
    case 'e':
    case 'E':
        return Parity::Even;
    case 'o':
    case 'O':
        return Parity::Odd;
    case 'm':
    case 'M':
        return Parity::Mark;
    case 's':
    case 'S':
        return Parity::Space;
    default:
        return std::nullopt;
    }
}

std::optional<StopBits> stopBits(std::string_view text)
{
    if (text == "1")
        return StopBits::One;
    if (text == "1.5")
        return StopBits::OneAndHalf;
    if (text == "2")
        return StopBits::Two;
    return std::nullopt;
}

} // namespace

std::optional<SerialSettings> parseSerialSettings(std::string_view text)
{
    const auto parts = fields(text);
    if (parts.size() != 4)
        return std::nullopt;
    const auto baud = number(parts[0]);
    const auto parityValue = parity(parts[1]);
    const auto dataBits = number(parts[2]);
    const auto stop = stopBits(parts[3]);
    if (!baud || *baud <= 0 || !parityValue || !dataBits || *dataBits < 5 || *dataBits > 8 || !stop)
        return std::nullopt;
    return SerialSettings { *baud, *parityValue, *dataBits, *stop };
}

} // namespace zv::platform
