#include "firmware_loader/enc_file.h"

#include "params/hex_text.h"

namespace zv {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::size_t kWordDigits = 4;
constexpr std::size_t kTableEntryDigits = 16;
constexpr std::uint32_t kFirstVersionOf1003 = 6000;

std::optional<int> hexValue(char c)
{
    const auto at = kHexDigits.find(c);
    if (at == std::string_view::npos)
        return std::nullopt;
    return static_cast<int>(at);
}

std::vector<std::string_view> splitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const auto end = text.find_first_of("\r\n", begin);
        if (end == std::string_view::npos) {
            lines.push_back(text.substr(begin));
            break;
        }
        lines.push_back(text.substr(begin, end - begin));
        begin = end + (text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n' ? 2 : 1);
    }
    return lines;
}

} // namespace

std::optional<std::uint32_t> encWord(std::string_view body, std::size_t position)
{
    if (position == 0 || position - 1 + kWordDigits > body.size())
        return std::nullopt;
    std::uint32_t bytes[2] = {};
    for (std::size_t i = 0; i < kWordDigits; ++i) {
        const auto digit = hexValue(body[position - 1 + i]);
        if (!digit)
            return std::nullopt;
        bytes[i / 2] = bytes[i / 2] * 16 + static_cast<std::uint32_t>(*digit);
    }
    return bytes[0] | (bytes[1] << 8);
}

EncImage parseEncText(std::string_view text)
{
    EncImage image;
    const auto lines = splitLines(text);
    if (lines.empty() || lines[0] != kEncTagLine) {
        image.fault = EncFault::NotFirmware;
        return image;
    }
    image.fault = EncFault::Invalid;
    if (lines.size() < 2)
        return image;
    const auto count = encWord(lines[1], 1);
    if (!count || *count == 0)
        return image;
    std::string body;
    for (std::size_t i = 1; i < lines.size(); ++i)
        body.append(lines[i]);

    for (std::uint32_t i = 0; i < *count; ++i) {
        const std::size_t entry = 5 + kTableEntryDigits * i;
        const auto file = encWord(body, entry);
        const auto version = encWord(body, entry + 4);
        const auto start = encWord(body, entry + 8);
        const auto last = encWord(body, entry + 12);
        if (!file || !version || !start || !last)
            return { EncFault::Invalid, {} };
        BootSection section;
        section.file = *file;
        section.version = *version;
        section.start = *start == 0 ? 1 : *start * 2 + 1;
        section.length = *last;
        const std::size_t digits = static_cast<std::size_t>(*last) * 2 + 2;
        if (section.start - 1 + digits > body.size())
            return { EncFault::Invalid, {} };
        section.data = body.substr(section.start - 1, digits);
        if (!ValidateHexFileFormat(section.data) || section.data.size() % 2 != 0 || section.data.empty())
            return { EncFault::Invalid, {} };
        image.sections.push_back(std::move(section));
    }
    image.fault = EncFault::None;
    return image;
}

bool firmwareFitsTarget(std::string_view targetId, std::uint32_t firstVersion)
{
    if (targetId == "1001" || targetId == "1002")
        return firstVersion < kFirstVersionOf1003;
    if (targetId == "1003")
        return firstVersion >= kFirstVersionOf1003;
    return true;
}

} // namespace zv
