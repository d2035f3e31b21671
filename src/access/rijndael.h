#pragma once
// The Rijndael block cipher for any of its block and key sizes (4, 6 or 8 words of 32 bits).
// Each block is enciphered by itself: no chaining, no initialisation vector.

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace zv {

class RijndaelBlockCipher {
public:
    // blockWords (Nb) and key.size() / 4 (Nk) must each be 4, 6 or 8.
    RijndaelBlockCipher(int blockWords, std::span<const std::uint8_t> key);

    [[nodiscard]] int blockBytes() const { return 4 * blockWords_; }
    [[nodiscard]] int rounds() const { return rounds_; }

    // Both work in place on exactly blockBytes() bytes.
    void encryptBlock(std::span<std::uint8_t> block) const;
    void decryptBlock(std::span<std::uint8_t> block) const;

private:
    void addRoundKey(std::span<std::uint8_t> state, int round) const;
    void shiftRows(std::span<std::uint8_t> state, bool inverse) const;

    int blockWords_;
    int rounds_;
    std::array<int, 4> rowShift_ {};
    std::vector<std::uint8_t> roundKeys_; // (rounds + 1) * blockBytes, column by column
};

} // namespace zv
