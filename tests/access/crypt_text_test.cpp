// The enciphered message layout, the key buffer rules and the failure results of the cipher of
// stored texts.

#include "access/crypt_rijndael.h"
#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "access/rijndael.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zv {
namespace {

std::vector<std::uint8_t> bytes(const std::string& text)
{
    return { text.begin(), text.end() };
}

const std::string kKey(kPackKey);

TEST(CRijndaelLayout, LengthFieldMessageAndZeroPaddingGoThroughTheCipher)
{
    const auto enciphered = CRijndael().EncryptData(bytes("Pack 7"), bytes(kKey));
    ASSERT_EQ(enciphered.size(), 32U);

    std::vector<std::uint8_t> key(32, 0);
    std::copy(kKey.begin(), kKey.end(), key.begin());
    auto block = enciphered;
    RijndaelBlockCipher(8, key).decryptBlock(block);
    std::vector<std::uint8_t> expected(32, 0);
    expected[0] = 6;
    const std::string message = "Pack 7";
    std::copy(message.begin(), message.end(), expected.begin() + 4);
    EXPECT_EQ(block, expected);
}

TEST(CRijndaelLayout, SizeIsLengthPlusFourRaisedToWholeBlocks)
{
    const CRijndael cipher;
    EXPECT_EQ(cipher.EncryptData(bytes(std::string(28, 'a')), bytes(kKey)).size(), 32U);
    EXPECT_EQ(cipher.EncryptData(bytes(std::string(29, 'a')), bytes(kKey)).size(), 64U);
    EXPECT_EQ(cipher.EncryptData(bytes(std::string(60, 'a')), bytes(kKey)).size(), 64U);
    EXPECT_EQ(cipher.EncryptData(bytes(std::string(61, 'a')), bytes(kKey)).size(), 96U);
}

TEST(CRijndaelLayout, EqualBlocksGiveEqualCipherBlocksAsNothingIsChained)
{
    // 4 length bytes + 92 message bytes: blocks 2 and 3 hold the same 32 message bytes.
    std::string message(28, 'x');
    message += std::string(32, 'Q') + std::string(32, 'Q');
    const auto enciphered = CRijndael().EncryptData(bytes(message), bytes(kKey));
    ASSERT_EQ(enciphered.size(), 96U);
    EXPECT_TRUE(std::equal(enciphered.begin() + 32, enciphered.begin() + 64, enciphered.begin() + 64));
}

TEST(CRijndaelKeyBuffer, LongKeysAreCutAndShortKeysZeroFilled)
{
    const CRijndael cipher;
    const auto message = bytes("Cell 12 of 16");
    std::vector<std::uint8_t> key40(40);
    for (std::size_t i = 0; i < key40.size(); ++i) {
        key40[i] = static_cast<std::uint8_t>(i * 7 + 1);
    }
    const std::vector<std::uint8_t> key32(key40.begin(), key40.begin() + 32);
    EXPECT_EQ(cipher.EncryptData(message, key40), cipher.EncryptData(message, key32));

    auto key5padded = bytes(kKey);
    key5padded.resize(32, 0);
    EXPECT_EQ(cipher.EncryptData(message, bytes(kKey)), cipher.EncryptData(message, key5padded));
    EXPECT_NE(cipher.EncryptData(message, bytes(kKey)), cipher.EncryptData(message, key32));
}

TEST(CRijndaelFailures, EmptyArgumentsBadLengthsAndOversizedLengthFieldGiveEmpty)
{
    std::vector<CipherFault> faults;
    const CRijndael cipher([&](const CipherFault& fault) { faults.push_back(fault); });
    const auto good = cipher.EncryptData(bytes("abc"), bytes(kKey));

    EXPECT_TRUE(cipher.EncryptData({}, bytes(kKey)).empty());
    EXPECT_TRUE(cipher.EncryptData(bytes("abc"), {}).empty());
    EXPECT_TRUE(cipher.DecryptData({}, bytes(kKey)).empty());
    EXPECT_TRUE(cipher.DecryptData(good, {}).empty());
    const std::vector<std::uint8_t> shortByOne(good.begin(), good.end() - 1);
    EXPECT_TRUE(cipher.DecryptData(shortByOne, bytes(kKey)).empty());

    // A block whose deciphered length field is 29 (one more than the block can hold).
    std::vector<std::uint8_t> plainBlock(32, 0);
    plainBlock[0] = 29;
    auto key = bytes(kKey);
    key.resize(32, 0);
    RijndaelBlockCipher(8, key).encryptBlock(plainBlock);
    EXPECT_TRUE(cipher.DecryptData(plainBlock, bytes(kKey)).empty());

    EXPECT_EQ(cipher.DecryptData(good, bytes(kKey)), bytes("abc"));
    EXPECT_TRUE(faults.empty()) << "refusals are not faults";
}

TEST(ModCryptText, RoundTripsTextsOfEveryByteAndSize)
{
    std::string allBytes;
    for (int c = 1; c < 256; ++c) {
        allBytes += static_cast<char>(c);
    }
    // 28 bytes fill the first block exactly with the length field.
    for (const std::string& text : { std::string("1002"), std::string(28, 'A'), allBytes }) {
        const auto hex = modCryptText::EncryptText(text, kPackKey);
        EXPECT_EQ(modCryptText::DecryptText(hex, kPackKey), text);
    }
}

TEST(ModCryptText, UpperCaseHexOutEmptyAndMalformedInputsGiveEmptyText)
{
    const auto oneBlock = modCryptText::EncryptText(std::string(28, 'a'), kPackKey);
    EXPECT_EQ(oneBlock.size(), 64U);
    EXPECT_EQ(oneBlock.find_first_not_of("0123456789ABCDEF"), std::string::npos);

    EXPECT_EQ(modCryptText::EncryptText("", kPackKey), "");
    EXPECT_EQ(modCryptText::DecryptText("", kPackKey), "");
    const auto hex = modCryptText::EncryptText("1003", kPackKey);
    EXPECT_EQ(modCryptText::DecryptText(hex.substr(0, 63), kPackKey), "");
    EXPECT_EQ(modCryptText::DecryptText(hex.substr(0, 62) + "G0", kPackKey), "");
    EXPECT_EQ(modCryptText::EncryptText("1003", ""), "");
}

TEST(ModCryptText, WrongKeyGivesEmptyOrGarbledButNeverTheText)
{
    int refused = 0;
    for (char last = 'a'; last <= 'z'; ++last) {
        const std::string wrongKey = std::string(kPackKey.substr(0, 4)) + last;
        if (wrongKey == kKey) {
            continue;
        }
        const auto hex = modCryptText::EncryptText("Target 1002", kPackKey);
        const auto text = modCryptText::DecryptText(hex, wrongKey);
        EXPECT_NE(text, "Target 1002");
        refused += text.empty() ? 1 : 0;
    }
    EXPECT_GT(refused, 0) << "a random length field almost always exceeds the block";
}

} // namespace
} // namespace zv
