#pragma once
// A second Rijndael, written in the plainest textbook form (state as a 4 x Nb matrix, S-box by
// searching the multiplicative inverse, bitwise affine map), to check the production cipher
// by an independent path.

#include <cstdint>
#include <vector>

namespace zv::testing {

inline std::uint8_t plainMultiply(std::uint8_t a, std::uint8_t b)
{
    int result = 0;
    int x = a;
    for (int bit = 0; bit < 8; ++bit) {
        if (b & (1 << bit)) {
            result ^= x;
        }
        x <<= 1;
        if (x & 0x100) {
            x ^= 0x11B;
        }
    }
    return static_cast<std::uint8_t>(result);
}

inline std::uint8_t plainSbox(std::uint8_t value)
{
    std::uint8_t inverse = 0;
    for (int candidate = 1; candidate < 256 && value != 0; ++candidate) {
        if (plainMultiply(value, static_cast<std::uint8_t>(candidate)) == 1) {
            inverse = static_cast<std::uint8_t>(candidate);
        }
    }
    std::uint8_t out = 0;
    for (int i = 0; i < 8; ++i) {
        const int bit = ((inverse >> i) ^ (inverse >> ((i + 4) % 8)) ^ (inverse >> ((i + 5) % 8))
                            ^ (inverse >> ((i + 6) % 8)) ^ (inverse >> ((i + 7) % 8)) ^ (0x63 >> i))
            & 1;
        out |= static_cast<std::uint8_t>(bit << i);
    }
    return out;
}

// Encrypts one block of 4 * nb bytes with a key of 4 * nk bytes.
inline std::vector<std::uint8_t> plainRijndaelEncrypt(
    const std::vector<std::uint8_t>& input, const std::vector<std::uint8_t>& key)
{
    const int nb = static_cast<int>(input.size() / 4);
    const int nk = static_cast<int>(key.size() / 4);
    const int nr = (nb > nk ? nb : nk) + 6;
    const int shifts[4] = { 0, 1, nb == 8 ? 3 : 2, nb == 8 ? 4 : 3 };

    std::vector<std::vector<std::uint8_t>> w(nb * (nr + 1), std::vector<std::uint8_t>(4));
    for (int i = 0; i < nk; ++i) {
        for (int j = 0; j < 4; ++j) {
            w[i][j] = key[4 * i + j];
        }
    }
    std::uint8_t rcon = 1;
    for (int i = nk; i < nb * (nr + 1); ++i) {
        std::vector<std::uint8_t> t = w[i - 1];
        if (i % nk == 0) {
            t = { static_cast<std::uint8_t>(plainSbox(t[1]) ^ rcon), plainSbox(t[2]), plainSbox(t[3]),
                plainSbox(t[0]) };
            rcon = plainMultiply(rcon, 2);
        } else if (nk > 6 && i % nk == 4) {
            for (auto& b : t) {
                b = plainSbox(b);
            }
        }
        for (int j = 0; j < 4; ++j) {
            w[i][j] = w[i - nk][j] ^ t[j];
        }
    }

    std::vector<std::vector<std::uint8_t>> s(4, std::vector<std::uint8_t>(nb));
    for (int c = 0; c < nb; ++c) {
        for (int r = 0; r < 4; ++r) {
            s[r][c] = input[4 * c + r];
        }
    }
    auto addKey = [&](int round) {
        for (int c = 0; c < nb; ++c) {
            for (int r = 0; r < 4; ++r) {
                s[r][c] ^= w[round * nb + c][r];
            }
        }
    };
    addKey(0);
    for (int round = 1; round <= nr; ++round) {
        for (auto& row : s) {
            for (auto& b : row) {
                b = plainSbox(b);
            }
        }
        for (int r = 1; r < 4; ++r) {
            std::vector<std::uint8_t> row(nb);
            for (int c = 0; c < nb; ++c) {
                row[c] = s[r][(c + shifts[r]) % nb];
            }
            s[r] = row;
        }
        if (round < nr) {
            for (int c = 0; c < nb; ++c) {
                const std::uint8_t a0 = s[0][c], a1 = s[1][c], a2 = s[2][c], a3 = s[3][c];
                s[0][c] = plainMultiply(a0, 2) ^ plainMultiply(a1, 3) ^ a2 ^ a3;
                s[1][c] = a0 ^ plainMultiply(a1, 2) ^ plainMultiply(a2, 3) ^ a3;
                s[2][c] = a0 ^ a1 ^ plainMultiply(a2, 2) ^ plainMultiply(a3, 3);
                s[3][c] = plainMultiply(a0, 3) ^ a1 ^ a2 ^ plainMultiply(a3, 2);
            }
        }
        addKey(round);
    }
    std::vector<std::uint8_t> out(input.size());
    for (int c = 0; c < nb; ++c) {
        for (int r = 0; r < 4; ++r) {
            out[4 * c + r] = s[r][c];
        }
    }
    return out;
}

} // namespace zv::testing
