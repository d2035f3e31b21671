#include "platform/text.h"

#include <algorithm>
#include <cctype>

namespace zv::platform {

bool equalsIgnoreCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    });
}

int hexDigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

std::string byteHex(std::uint8_t byte)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    return { kDigits[byte >> 4], kDigits[byte & 0x0F] };
}

} // namespace zv::platform
