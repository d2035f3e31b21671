#include "link/hlk_text.h"

#include "link/pec.h"
#include "platform/text.h"

namespace zv {

namespace {

std::string tildeBytes(std::span<const std::uint8_t> bytes)
{
    std::string text;
    text.reserve(bytes.size() * 3);
    for (const auto b : bytes)
        text += ByteToTildeHex(b);
    return text;
}

constexpr std::size_t kFirstPairOffset = 5; // "/MRC~" then the first pair
constexpr std::size_t kPairStride = 3; // "XX~"

} // namespace

std::string ByteToTildeHex(std::uint8_t value)
{
    return "~" + platform::byteHex(value);
}

std::string GetBaudRate(int index)
{
    switch (index) {
    case 0:
        return "19200";
    case 1:
        return "57600";
    case 2:
        return "115200";
    default:
        return "";
    }
}

namespace hlk {

std::string writeWord(std::uint8_t writeAddress, std::uint8_t command, int value)
{
    const std::uint8_t bytes[] = { writeAddress, command, static_cast<std::uint8_t>(value % 256),
        static_cast<std::uint8_t>((value / 256) & 0xFF) };
    return "/T" + tildeBytes(std::span(bytes).subspan(1)) + ByteToTildeHex(pec(bytes)) + "\r";
}

std::string writeBlock(std::uint8_t writeAddress, std::uint8_t command, std::span<const std::uint8_t> data)
{
    std::vector<std::uint8_t> covered { writeAddress, command, static_cast<std::uint8_t>(data.size()) };
    covered.insert(covered.end(), data.begin(), data.end());
    return "/T" + tildeBytes(std::span(covered).subspan(1)) + ByteToTildeHex(pec(covered)) + "\r";
}

std::string writeRaw(std::span<const std::uint8_t> bytes)
{
    return "/T" + tildeBytes(bytes) + "\r";
}

std::string readCommand(std::uint8_t command)
{
    return "/*T" + ByteToTildeHex(command) + "\r";
}

std::optional<std::uint8_t> hexPairAt(std::string_view text, std::size_t pos)
{
    if (pos + 2 > text.size())
        return std::nullopt;
    const int hi = platform::hexDigitValue(text[pos]);
    const int lo = platform::hexDigitValue(text[pos + 1]);
    if (hi < 0 || lo < 0)
        return std::nullopt;
    return static_cast<std::uint8_t>(hi * 16 + lo);
}

std::optional<WordReply> parseWordReply(std::string_view reply)
{
    const auto at = reply.find("/MRC");
    if (at == std::string_view::npos)
        return std::nullopt;
    const auto first = at + kFirstPairOffset;
    const auto low = hexPairAt(reply, first);
    const auto high = hexPairAt(reply, first + kPairStride);
    const auto check = hexPairAt(reply, first + 2 * kPairStride);
    if (!low || !high || !check)
        return std::nullopt;
    return WordReply { *low, *high, *check };
}

std::optional<std::vector<std::uint8_t>> parseBlockReply(std::string_view reply)
{
    const auto at = reply.find("/MRC");
    if (at == std::string_view::npos)
        return std::nullopt;
    const auto first = at + kFirstPairOffset;
    const auto length = hexPairAt(reply, first);
    if (!length || *length == 0)
        return std::nullopt;
    std::vector<std::uint8_t> data;
    data.reserve(*length);
    for (std::size_t i = 1; i <= *length; ++i) {
        const auto b = hexPairAt(reply, first + i * kPairStride);
        if (!b)
            return std::nullopt;
        data.push_back(*b);
    }
    return data;
}

} // namespace hlk
} // namespace zv
