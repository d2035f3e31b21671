// Hex text helpers and number text forms.

#include "params/hex_text.h"
#include "params/number_text.h"
#include "params/runtime_error.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(ConvertToInt, PrefixesDigitsAndFailures)
{
    EXPECT_EQ(convertToInt("0x24"), 0x24);
    EXPECT_EQ(convertToInt("0X24"), 0x24);
    EXPECT_EQ(convertToInt("&H24"), 0x24);
    EXPECT_EQ(convertToInt("24"), 0x24);
    EXPECT_EQ(convertToInt("FFFFFFFF"), 0xFFFFFFFFLL);
    EXPECT_EQ(convertToInt("0x"), std::nullopt) << "a prefix alone is not dropped";
    EXPECT_EQ(convertToInt("0x1a"), std::nullopt) << "lower-case digits are refused";
    EXPECT_EQ(convertToInt("12G"), std::nullopt);
    EXPECT_EQ(convertToInt("100000000"), std::nullopt) << "beyond 32 bits";
}

TEST(ConvertToHex, EveryFormatNumbersAndTexts)
{
    EXPECT_EQ(convertToHex(DynamicValue(4660), 0), "0x1234");
    EXPECT_EQ(convertToHex(DynamicValue(10), 0), "0x000A");
    EXPECT_EQ(convertToHex(DynamicValue(0x12345), 0), "0x2345") << "four digits only";
    EXPECT_EQ(convertToHex(DynamicValue(0x12345), 1), "&H12345&");
    EXPECT_EQ(convertToHex(DynamicValue(255), 2), "&HFF");
    EXPECT_EQ(convertToHex(DynamicValue(0x1FF), 3), "FF");
    EXPECT_EQ(convertToHex(DynamicValue(5), 4), "0005");
    EXPECT_EQ(convertToHex(DynamicValue(-1), 0), "0xFFFF");
    EXPECT_EQ(convertToHex(DynamicValue("0x00FF"), 0), "0x00FF") << "texts are read as hex";
    EXPECT_EQ(convertToHex(DynamicValue("1000"), 4), "1000");
    EXPECT_EQ(convertToHex(DynamicValue("xyz"), 0), std::nullopt);
    EXPECT_EQ(convertToHex(DynamicValue::null(), 0), std::nullopt);
    EXPECT_EQ(convertToHex(DynamicValue(5), 7), std::nullopt);
}

TEST(HexStr, PaddingCuttingAndByteSwap)
{
    EXPECT_EQ(Hex_Str(0, 2, true), "0000");
    EXPECT_EQ(Hex_Str(0x1234, 2, true), "3412");
    EXPECT_EQ(Hex_Str(0x1234, 2, false), "1234");
    EXPECT_EQ(Hex_Str(0xAB, 1, true), "AB");
    EXPECT_EQ(Hex_Str(0x12345, 2, true), "4523") << "cut from the right beyond 16 bits";
    EXPECT_EQ(Hex_Str(0x12345, 4, true), "45230100");
    EXPECT_EQ(Hex_Str(-1, 2, true), "FFFF");
    EXPECT_EQ(Hex_Str(2.5, 1, true), "02") << "halves round to even";
    EXPECT_EQ(Hex_Str(0x123, 0, false), "0123") << "no count: whole bytes";
    EXPECT_THROW((void)Hex_Str(4294967296.0, 4, true), RuntimeError);
}

TEST(ValidateFormats, HexFileTextIsCleanedInPlace)
{
    std::string text = "0A 1B\t2C\r\n3D";
    EXPECT_TRUE(ValidateHexFileFormat(text));
    EXPECT_EQ(text, "0A1B2C3D");
    std::string lower = "0a";
    EXPECT_FALSE(ValidateHexFileFormat(lower));
    std::string loneLineFeed = "0A\n";
    EXPECT_FALSE(ValidateHexFileFormat(loneLineFeed));
}

TEST(ValidateFormats, CharacterSetsByMode)
{
    EXPECT_TRUE(ValidateCharFormat("09AF", 0));
    EXPECT_FALSE(ValidateCharFormat("0a", 0));
    EXPECT_TRUE(ValidateCharFormat("123", 1));
    EXPECT_FALSE(ValidateCharFormat("-1", 1));
    EXPECT_TRUE(ValidateCharFormat("-12", 3));
    EXPECT_FALSE(ValidateCharFormat("1,2", 3));
    EXPECT_TRUE(ValidateCharFormat("1,-2", 2));
    EXPECT_TRUE(ValidateCharFormat("1,-2", 4));
    EXPECT_FALSE(ValidateCharFormat("1.2", 4));
    EXPECT_FALSE(ValidateCharFormat("1", 9));
}

TEST(NumberText, GeneralFormAndFormatsFollowTheLocale)
{
    const NumberLocale comma { ',' };
    EXPECT_EQ(generalNumberText(100, kInvariantLocale), "100");
    EXPECT_EQ(generalNumberText(0.1 * 3, kInvariantLocale), "0.3");
    EXPECT_EQ(generalNumberText(-2.5, comma), "-2,5");
    EXPECT_EQ(generalNumberText(0.00001, kInvariantLocale), "1E-05");
    EXPECT_EQ(formatNumber(25, "0.0", kInvariantLocale), "25.0");
    EXPECT_EQ(formatNumber(25, "0.0", comma), "25,0");
    EXPECT_EQ(formatNumber(0.15, "0.0", kInvariantLocale), "0.2") << "halves away from zero";
    EXPECT_EQ(formatNumber(-0.15, "0.0", kInvariantLocale), "-0.2");
    EXPECT_EQ(formatNumber(0.0005, "#.000", kInvariantLocale), ".001");
    EXPECT_EQ(formatNumber(12.3456, "#.000", comma), "12,346");
    EXPECT_EQ(formatNumber(0, "#.000", kInvariantLocale), ".000");
}

TEST(NumberText, ParsingWholeTexts)
{
    EXPECT_EQ(parseNumber(" 0.001 ", '.'), 0.001);
    EXPECT_EQ(parseNumber("0,001", ','), 0.001);
    EXPECT_EQ(parseNumber("0.001", ','), std::nullopt);
    EXPECT_EQ(parseNumber("-", '.'), std::nullopt);
    EXPECT_EQ(parseNumber("1e3", '.'), 1000);
    EXPECT_EQ(parseNumber("12abc", '.'), std::nullopt);
}

} // namespace
} // namespace zv
