#include "cli/sbd_notation.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace zv::cli {

namespace {

int signedWord(int word)
{
    return word < 32768 ? word : word - 65536;
}

std::string trimmedBlanks(std::string text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

std::optional<SbdFormat> parseSbdFormat(std::string_view text)
{
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
        [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (upper == "HEX")
        return SbdFormat::HEX;
    if (upper == "UINT")
        return SbdFormat::UINT;
    if (upper == "SINT")
        return SbdFormat::SINT;
    if (upper == "STR")
        return SbdFormat::STR;
    return std::nullopt;
}

std::string wordText(int word, SbdFormat format)
{
    switch (format) {
    case SbdFormat::HEX: {
        char text[8];
        std::snprintf(text, sizeof text, "%04X", word & 0xFFFF);
        return text;
    }
    case SbdFormat::UINT:
        return std::to_string(word);
    case SbdFormat::SINT:
        return std::to_string(signedWord(word));
    case SbdFormat::STR:
        return trimmedBlanks({ static_cast<char>((word >> 8) & 0xFF), static_cast<char>(word & 0xFF) });
    }
    return {};
}

std::string blockText(std::span<const std::uint8_t> block, SbdFormat format)
{
    std::string text;
    if (format == SbdFormat::HEX) {
        for (const auto byte : block) {
            char digits[4];
            std::snprintf(digits, sizeof digits, "%02X", byte);
            text += digits;
        }
    } else if (format == SbdFormat::STR) {
        text.assign(block.begin(), block.end());
    } else {
        for (std::size_t i = 0; i + 1 < block.size(); i += 2) {
            const int word = block[i] + 256 * block[i + 1];
            text += std::to_string(format == SbdFormat::SINT ? signedWord(word) : word) + " ";
        }
    }
    return text;
}

} // namespace zv::cli
