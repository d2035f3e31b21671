#include "access/crypt_text.h"

#include "platform/text.h"

#include <optional>
#include <vector>

namespace zv::modCryptText {
namespace {

std::span<const std::uint8_t> bytesOf(std::string_view text)
{
    return { reinterpret_cast<const std::uint8_t*>(text.data()), text.size() };
}

// One byte a pair of digits; a single digit left at the end is not a byte.
std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view hex)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(hex.size() / 2);
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        const int high = platform::hexDigitValue(hex[i]);
        const int low = platform::hexDigitValue(hex[i + 1]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    return bytes;
}

} // namespace

std::string EncryptText(std::string_view text, std::string_view key, CipherFaultHandler onFault)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    const auto enciphered = CRijndael(std::move(onFault)).EncryptData(bytesOf(text), bytesOf(key));
    std::string hex;
    hex.reserve(enciphered.size() * 2);
    for (const auto byte : enciphered) {
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 0x0F];
    }
    return hex;
}

std::string DecryptText(std::string_view cipherText, std::string_view key, CipherFaultHandler onFault)
{
    const auto bytes = bytesFromHex(cipherText);
    if (!bytes) {
        return {};
    }
    const auto message = CRijndael(std::move(onFault)).DecryptData(*bytes, bytesOf(key));
    return { message.begin(), message.end() };
}

} // namespace zv::modCryptText
