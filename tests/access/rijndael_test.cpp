// Known answers of the block cipher: the 256-bit block and key the pack key uses, and AES-256.
//
// Vectors used (published facts about the algorithm):
// - Rijndael 256-bit block, 256-bit key, "pi / e" vector of the Rijndael proposal's appendix
//   (key 2b7e1516..., plain text 3243f6a8...), as also listed in Gladman's and Bouncy Castle's
//   Rijndael test suites.
// - NESSIE "Rijndael-256-256.unverified.test-vectors", set 1 (one key bit set, zero plain text)
//   and set 2 (zero key, one plain text bit set), vectors 0 to 3 of each; these are the
//   variable-key and variable-text known answers of the submission package for this size.
// - AES-256 (Rijndael with a 128-bit block), FIPS-197 appendix C.3.

#include "access/rijndael.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zv {
namespace {

std::vector<std::uint8_t> fromHex(const std::string& hex)
{
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

struct KnownAnswer {
    const char* key;
    const char* plain;
    const char* cipher;
};

const KnownAnswer kBlock256Key256[] = {
    { "2b7e151628aed2a6abf7158809cf4f3c762e7160f38b4da56a784d9045190cfe",
        "3243f6a8885a308d313198a2e03707344a4093822299f31d0082efa98ec4e6c8",
        "a49406115dfb30a40418aafa4869b7c6a886ff31602a7dd19c889dc64f7e4e7a" },
    { "8000000000000000000000000000000000000000000000000000000000000000",
        "0000000000000000000000000000000000000000000000000000000000000000",
        "e62abce069837b65309be4eda2c0e149fe56c07b7082d3287f592c4a4927a277" },
    { "4000000000000000000000000000000000000000000000000000000000000000",
        "0000000000000000000000000000000000000000000000000000000000000000",
        "1f00b4dd622c0b2951f25970b0ed47a65f513112daca242b5292ca314917bf94" },
    { "2000000000000000000000000000000000000000000000000000000000000000",
        "0000000000000000000000000000000000000000000000000000000000000000",
        "2aa9f4be159f9f8777561281c1cc4fcd7435e6e855e222426c309838abd5ffee" },
    { "1000000000000000000000000000000000000000000000000000000000000000",
        "0000000000000000000000000000000000000000000000000000000000000000",
        "b4adf28c3a85c337aa3150e3032b941aa49f12f911221dd91a62919cad447cfb" },
    { "0000000000000000000000000000000000000000000000000000000000000000",
        "8000000000000000000000000000000000000000000000000000000000000000",
        "159a08e46e616e6e9978502010daff922eb362e77dcaaf02eaeb7354eb8b8dba" },
    { "0000000000000000000000000000000000000000000000000000000000000000",
        "4000000000000000000000000000000000000000000000000000000000000000",
        "2756ddecd7558b198962f092d7ba3eef45d9e287380aab8e852658092aa9dfa1" },
    { "0000000000000000000000000000000000000000000000000000000000000000",
        "2000000000000000000000000000000000000000000000000000000000000000",
        "87b829fb7b0c16c408151d323fcb8b56ebc0573747d46c2b47bfd533ed3273c9" },
    { "0000000000000000000000000000000000000000000000000000000000000000",
        "1000000000000000000000000000000000000000000000000000000000000000",
        "db462eec713d4cc89607dca35c4fe6e8d618c8bdacd3dd1c0a1b14e6ca8c23c6" },
};

TEST(RijndaelBlockCipher, Block256Key256KnownAnswersBothWays)
{
    for (const auto& vector : kBlock256Key256) {
        SCOPED_TRACE(vector.cipher);
        const RijndaelBlockCipher cipher(8, fromHex(vector.key));
        EXPECT_EQ(cipher.rounds(), 14);
        auto block = fromHex(vector.plain);
        cipher.encryptBlock(block);
        EXPECT_EQ(block, fromHex(vector.cipher));
        cipher.decryptBlock(block);
        EXPECT_EQ(block, fromHex(vector.plain));
    }
}

TEST(RijndaelBlockCipher, SameCodePassesAes256KnownAnswer)
{
    const RijndaelBlockCipher cipher(
        4, fromHex("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f"));
    auto block = fromHex("00112233445566778899aabbccddeeff");
    cipher.encryptBlock(block);
    EXPECT_EQ(block, fromHex("8ea2b7ca516745bfeafc49904b496089"));
    cipher.decryptBlock(block);
    EXPECT_EQ(block, fromHex("00112233445566778899aabbccddeeff"));
}

} // namespace
} // namespace zv
