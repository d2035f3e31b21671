#pragma once
// modCryptText: a text to upper-case hexadecimal cipher text and back, one byte a character.

#include "access/crypt_rijndael.h"

#include <string>
#include <string_view>

namespace zv::modCryptText {

// Empty text for an empty text or key.
[[nodiscard]] std::string EncryptText(
    std::string_view text, std::string_view key, CipherFaultHandler onFault = {});
// Empty text when the cipher text cannot be deciphered: odd pairs left over, no multiple of
// 32 bytes, a digit that is not hexadecimal, or a length field beyond the message.
[[nodiscard]] std::string DecryptText(
    std::string_view cipherText, std::string_view key, CipherFaultHandler onFault = {});

} // namespace zv::modCryptText
