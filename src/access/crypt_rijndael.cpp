#include "access/crypt_rijndael.h"

#include "access/rijndael.h"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <stdexcept>

namespace zv {
namespace {

constexpr int kBlockWords = CRijndael::kBlockBytes / 4;
constexpr std::size_t kLengthFieldBytes = 4;

// The key buffer: zero-filled, the caller's bytes from the front, beyond the 32nd ignored.
std::array<std::uint8_t, CRijndael::kKeyBytes> keyBuffer(std::span<const std::uint8_t> password)
{
    std::array<std::uint8_t, CRijndael::kKeyBytes> key {};
    std::copy_n(password.begin(), std::min(password.size(), key.size()), key.begin());
    return key;
}

std::size_t roundUpToBlock(std::size_t size)
{
    const std::size_t block = CRijndael::kBlockBytes;
    return (size + block - 1) / block * block;
}

template <typename Transform> void eachBlock(std::vector<std::uint8_t>& data, Transform transform)
{
    for (std::size_t offset = 0; offset < data.size(); offset += CRijndael::kBlockBytes) {
        transform(std::span<std::uint8_t>(data).subspan(offset, CRijndael::kBlockBytes));
    }
}

} // namespace

CRijndael::CRijndael(CipherFaultHandler onFault)
    : onFault_(std::move(onFault))
{
}

std::vector<std::uint8_t> CRijndael::EncryptData(
    std::span<const std::uint8_t> message, std::span<const std::uint8_t> password) const
{
    if (message.empty() || password.empty()) {
        return {};
    }
    try {
        if (message.size() > std::numeric_limits<std::uint32_t>::max() - kLengthFieldBytes) {
            throw std::length_error("Overflow");
        }
        const RijndaelBlockCipher cipher(kBlockWords, keyBuffer(password));
        std::vector<std::uint8_t> work(roundUpToBlock(message.size() + kLengthFieldBytes), 0);
        const auto length = static_cast<std::uint32_t>(message.size());
        for (std::size_t i = 0; i < kLengthFieldBytes; ++i) {
            work[i] = static_cast<std::uint8_t>(length >> (8 * i));
        }
        std::copy(message.begin(), message.end(), work.begin() + kLengthFieldBytes);
        eachBlock(work, [&](std::span<std::uint8_t> block) { cipher.encryptBlock(block); });
        return work;
    } catch (const std::exception& fault) {
        reportFault("EncryptData", "An error has occurred while encrypting the file.", fault.what());
        return {};
    }
}

std::vector<std::uint8_t> CRijndael::DecryptData(
    std::span<const std::uint8_t> message, std::span<const std::uint8_t> password) const
{
    if (message.empty() || password.empty() || message.size() % kBlockBytes != 0) {
        return {};
    }
    try {
        const RijndaelBlockCipher cipher(kBlockWords, keyBuffer(password));
        std::vector<std::uint8_t> work(message.begin(), message.end());
        eachBlock(work, [&](std::span<std::uint8_t> block) { cipher.decryptBlock(block); });
        std::uint64_t length = 0;
        for (std::size_t i = 0; i < kLengthFieldBytes; ++i) {
            length |= static_cast<std::uint64_t>(work[i]) << (8 * i);
        }
        if (length > work.size() - kLengthFieldBytes) {
            return {};
        }
        const auto first = work.begin() + kLengthFieldBytes;
        return { first, first + static_cast<std::ptrdiff_t>(length) };
    } catch (const std::exception& fault) {
        reportFault("DecryptData", "An error has occurred while decrypting the file.", fault.what());
        return {};
    }
}

void CRijndael::reportFault(const char* procedure, const char* text, const std::string& description) const
{
    if (onFault_) {
        onFault_(CipherFault { "Encryption", procedure, text, description });
    }
}

} // namespace zv
