#pragma once
// CRijndael: enciphers a whole message with Rijndael of a 256-bit block and a 256-bit key.
// The message is laid out as a 32-bit length (low byte first), the message bytes and zero
// bytes up to the next multiple of 32; all of it, length included, goes through the cipher.

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace zv {

// What the common handler is told about an unexpected fault inside the cipher.
struct CipherFault {
    std::string module; // "Encryption"
    std::string procedure; // "EncryptData" or "DecryptData"
    std::string text; // the user-facing sentence
    std::string description; // what went wrong
};

using CipherFaultHandler = std::function<void(const CipherFault&)>;

class CRijndael {
public:
    static constexpr int kBlockBytes = 32;
    static constexpr int kKeyBytes = 32;

    explicit CRijndael(CipherFaultHandler onFault = {});

    // Empty when either argument is empty (or on a fault).
    [[nodiscard]] std::vector<std::uint8_t> EncryptData(
        std::span<const std::uint8_t> message, std::span<const std::uint8_t> password) const;
    // Empty when either argument is empty, the length is no multiple of 32, the length field
    // exceeds the message, or on a fault.
    [[nodiscard]] std::vector<std::uint8_t> DecryptData(
        std::span<const std::uint8_t> message, std::span<const std::uint8_t> password) const;

private:
    void reportFault(const char* procedure, const char* text, const std::string& description) const;

    CipherFaultHandler onFault_;
};

} // namespace zv
