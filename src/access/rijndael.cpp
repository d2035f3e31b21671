#include "access/rijndael.h"

#include <algorithm>
#include <stdexcept>

namespace zv {
namespace {

// Multiplication in GF(2^8) modulo x^8 + x^4 + x^3 + x + 1.
std::uint8_t gfMultiply(std::uint8_t a, std::uint8_t b)
{
    std::uint8_t product = 0;
    while (b != 0) {
        if (b & 1) {
            product ^= a;
        }
        a = static_cast<std::uint8_t>((a << 1) ^ ((a & 0x80) ? 0x1B : 0x00));
        b >>= 1;
    }
    return product;
}

std::uint8_t rotateLeft(std::uint8_t x, int n)
{
    return static_cast<std::uint8_t>((x << n) | (x >> (8 - n)));
}

// The S-box and its inverse, built from logarithms to the generator 3 and the affine map.
struct SubstitutionTables {
    std::array<std::uint8_t, 256> forward {};
    std::array<std::uint8_t, 256> inverse {};

    SubstitutionTables()
    {
        std::array<std::uint8_t, 256> power {};
        std::array<std::uint8_t, 256> logarithm {};
        std::uint8_t x = 1;
        for (int i = 0; i < 255; ++i) {
            power[i] = x;
            logarithm[x] = static_cast<std::uint8_t>(i);
            x = gfMultiply(x, 3);
        }
        for (int value = 0; value < 256; ++value) {
            const std::uint8_t reciprocal = value == 0 ? 0 : power[(255 - logarithm[value]) % 255];
            const std::uint8_t substituted = reciprocal ^ rotateLeft(reciprocal, 1)
                ^ rotateLeft(reciprocal, 2) ^ rotateLeft(reciprocal, 3) ^ rotateLeft(reciprocal, 4) ^ 0x63;
            forward[value] = substituted;
            inverse[substituted] = static_cast<std::uint8_t>(value);
        }
    }
};

const SubstitutionTables& tables()
{
    static const SubstitutionTables built;
    return built;
}

void mixColumn(std::span<std::uint8_t> column, bool inverse)
{
    const std::array<std::uint8_t, 4> a { column[0], column[1], column[2], column[3] };
    const std::array<std::uint8_t, 4> m = inverse ? std::array<std::uint8_t, 4> { 14, 11, 13, 9 }
                                                  : std::array<std::uint8_t, 4> { 2, 3, 1, 1 };
    for (int row = 0; row < 4; ++row) {
        column[row] = gfMultiply(a[row], m[0]) ^ gfMultiply(a[(row + 1) % 4], m[1])
            ^ gfMultiply(a[(row + 2) % 4], m[2]) ^ gfMultiply(a[(row + 3) % 4], m[3]);
    }
}

bool validWordCount(int words)
{
    return words == 4 || words == 6 || words == 8;
}

} // namespace

RijndaelBlockCipher::RijndaelBlockCipher(int blockWords, std::span<const std::uint8_t> key)
    : blockWords_(blockWords)
{
    const int keyWords = static_cast<int>(key.size() / 4);
    if (!validWordCount(blockWords) || !validWordCount(keyWords) || key.size() % 4 != 0) {
        throw std::invalid_argument("Rijndael block and key must be 4, 6 or 8 words");
    }
    rounds_ = std::max(blockWords, keyWords) + 6;
    rowShift_ = blockWords == 8 ? std::array<int, 4> { 0, 1, 3, 4 } : std::array<int, 4> { 0, 1, 2, 3 };

    // Key schedule: words w[i] of 4 bytes, Nb * (rounds + 1) of them.
    const int totalWords = blockWords * (rounds_ + 1);
    roundKeys_.assign(static_cast<std::size_t>(totalWords) * 4, 0);
    std::copy(key.begin(), key.end(), roundKeys_.begin());
    const auto& sbox = tables().forward;
    std::uint8_t roundConstant = 1;
    for (int i = keyWords; i < totalWords; ++i) {
        std::array<std::uint8_t, 4> temp {};
        for (int b = 0; b < 4; ++b) {
            temp[b] = roundKeys_[(i - 1) * 4 + b];
        }
        if (i % keyWords == 0) {
            temp = { static_cast<std::uint8_t>(sbox[temp[1]] ^ roundConstant), sbox[temp[2]], sbox[temp[3]],
                sbox[temp[0]] };
            roundConstant = gfMultiply(roundConstant, 2);
        } else if (keyWords > 6 && i % keyWords == 4) {
            for (auto& b : temp) {
                b = sbox[b];
            }
        }
        for (int b = 0; b < 4; ++b) {
            roundKeys_[i * 4 + b] = roundKeys_[(i - keyWords) * 4 + b] ^ temp[b];
        }
    }
}

void RijndaelBlockCipher::addRoundKey(std::span<std::uint8_t> state, int round) const
{
    const auto offset = static_cast<std::size_t>(round) * blockBytes();
    for (std::size_t i = 0; i < state.size(); ++i) {
        state[i] ^= roundKeys_[offset + i];
    }
}

// The state is column-major: byte (row, column) sits at column * 4 + row.
void RijndaelBlockCipher::shiftRows(std::span<std::uint8_t> state, bool inverse) const
{
    std::vector<std::uint8_t> original(state.begin(), state.end());
    for (int row = 1; row < 4; ++row) {
        for (int column = 0; column < blockWords_; ++column) {
            const int shifted = (column + rowShift_[row]) % blockWords_;
            if (inverse) {
                state[shifted * 4 + row] = original[column * 4 + row];
            } else {
                state[column * 4 + row] = original[shifted * 4 + row];
            }
        }
    }
}

void RijndaelBlockCipher::encryptBlock(std::span<std::uint8_t> block) const
{
    const auto& sbox = tables().forward;
    addRoundKey(block, 0);
    for (int round = 1; round <= rounds_; ++round) {
        for (auto& b : block) {
            b = sbox[b];
        }
        shiftRows(block, false);
        if (round != rounds_) {
            for (int column = 0; column < blockWords_; ++column) {
                mixColumn(block.subspan(column * 4, 4), false);
            }
        }
        addRoundKey(block, round);
    }
}

void RijndaelBlockCipher::decryptBlock(std::span<std::uint8_t> block) const
{
    const auto& inverseSbox = tables().inverse;
    for (int round = rounds_; round >= 1; --round) {
        addRoundKey(block, round);
        if (round != rounds_) {
            for (int column = 0; column < blockWords_; ++column) {
                mixColumn(block.subspan(column * 4, 4), true);
            }
        }
        shiftRows(block, true);
        for (auto& b : block) {
            b = inverseSbox[b];
        }
    }
    addRoundKey(block, 0);
}

} // namespace zv
