// Any cipher text deciphers to some text or to nothing, and any text comes back unchanged.

#include "access/crypt_text.h"
#include "access/pack_key.h"

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    (void)zv::modCryptText::DecryptText(input, zv::kPackKey);
    if (zv::modCryptText::DecryptText(zv::modCryptText::EncryptText(input, zv::kPackKey), zv::kPackKey)
        != input) {
        std::abort();
    }
    return 0;
}
