// Raw device data to values and back: FormatData, ConvertRawToValue, GetConfigurationValue,
// ParseLogData.

#include "params/raw_conversion.h"
#include "platform/testing/scripted_dialogs.h"

#include <gtest/gtest.h>

#include <vector>

namespace zv {
namespace {

class RawConversion : public ::testing::Test {
protected:
    platform::ScriptedDialogs dialogs;
    ValueConversion conversion { dialogs, kInvariantLocale };
};

TEST_F(RawConversion, FormatDataElementSizesAreLowByteFirst)
{
    const std::string hex = "E80301FF7F80";
    EXPECT_EQ(conversion.FormatData(hex, 1, 0, 0, 1, 0), DynamicValue(0xE8));
    EXPECT_EQ(conversion.FormatData(hex, 2, 0, 0, 1, 0), DynamicValue(1000));
    EXPECT_EQ(conversion.FormatData(hex, 2, 2, 0, 1, 0), DynamicValue(0x807F));
    EXPECT_EQ(conversion.FormatData(hex, 3, 1, 0, 1, 0), DynamicValue(0x807FFF));
    EXPECT_EQ(conversion.FormatData(hex, 4, 0, 0, 1, 0), DynamicValue(static_cast<double>(0xFF0103E8U)));
    EXPECT_EQ(conversion.FormatData("e803", 2, 0, 0, 1, 0), DynamicValue(1000)) << "either case of digits";
}

TEST_F(RawConversion, FormatDataDataTypesScaleASingleElement)
{
    EXPECT_EQ(conversion.FormatData("E803", 2, 0, 2, 0.1, 0), DynamicValue(100));
    EXPECT_EQ(conversion.FormatData("FFFF", 2, 0, 3, 1, 0), DynamicValue(-1));
    EXPECT_EQ(conversion.FormatData("0080", 2, 0, 3, 0.5, 0), DynamicValue(-16384));
    EXPECT_EQ(conversion.FormatData("FFFF", 2, 0, 2, 1, 0), DynamicValue(65535)) << "unsigned stays positive";
    EXPECT_EQ(conversion.FormatData("FFFFFF", 3, 0, 5, 1, 0), DynamicValue(-1));
    EXPECT_EQ(conversion.FormatData("FFFF00", 3, 0, 5, 1, 0), DynamicValue(65535));
    EXPECT_EQ(conversion.FormatData("10000000", 4, 0, 4, 0.01, 0), DynamicValue(0.16));
    EXPECT_EQ(conversion.FormatData("0500", 2, 0, 2, 0, 0), DynamicValue(5)) << "scale 0 means none";
    EXPECT_EQ(conversion.FormatData("0500", 2, 0, 7, 0.1, 0), DynamicValue(5)) << "other types unchanged";
}

TEST_F(RawConversion, FormatDataScaleBelowOneThousandthGivesThreeDecimalsText)
{
    EXPECT_EQ(conversion.FormatData("0A00", 2, 0, 2, 0.0001, 0), DynamicValue(".001"));
    EXPECT_EQ(conversion.FormatData("3930", 2, 0, 2, 0.0005, 0), DynamicValue("6.173"));
    const ValueConversion commaConversion(dialogs, NumberLocale { ',' });
    EXPECT_EQ(commaConversion.FormatData("3930", 2, 0, 2, 0.0005, 0), DynamicValue("6,173"));
    EXPECT_EQ(conversion.FormatData("0A00", 2, 0, 2, 0.001, 0), DynamicValue(0.01)) << "0.001 is not below";
}

TEST_F(RawConversion, FormatDataWholeListsUseTheListSeparator)
{
    EXPECT_EQ(conversion.FormatData("01000200FFFF", 2, -1, 0, 1, 0), DynamicValue("1,2,65535"));
    const ValueConversion commaConversion(dialogs, NumberLocale { ',' });
    EXPECT_EQ(commaConversion.FormatData("010203", 1, -1, 0, 1, 0), DynamicValue("1;2;3"));
    EXPECT_EQ(conversion.FormatData("FFFF", 2, -1, 3, 1, 0), DynamicValue("65535")) << "lists are not typed";
}

TEST_F(RawConversion, FormatDataBlocksOfTextAndHexInGroups)
{
    // "AB", 0x01 (dropped), "C", 0x7F (dropped), "D"
    const std::string hex = "414201437F44";
    EXPECT_EQ(conversion.FormatData(hex, 5, -1, 6, 0, 3), DynamicValue("AB,CD"));
    EXPECT_EQ(conversion.FormatData(hex, 5, 1, 6, 0, 3), DynamicValue("CD"));
    EXPECT_EQ(conversion.FormatData(hex, 5, -1, 6, 0, 0), DynamicValue("ABCD"));
    EXPECT_EQ(conversion.FormatData(hex, 5, -1, 7, 0, 2), DynamicValue("4142,0143,7F44"));
    EXPECT_TRUE(conversion.FormatData(hex, 5, 0, 0, 0, 2).isEmpty()) << "a block needs type 6 or 7";
}

TEST_F(RawConversion, FormatDataFaultsLeaveNoValue)
{
    EXPECT_TRUE(conversion.FormatData("E803", 2, 1, 2, 1, 0).isEmpty()) << "index beyond the data";
    EXPECT_TRUE(conversion.FormatData("E8G3", 1, 0, 0, 1, 0).isEmpty()) << "not hex";
    EXPECT_TRUE(conversion.FormatData("E803", 6, 0, 0, 1, 0).isEmpty()) << "no such element size";
    EXPECT_TRUE(conversion.FormatData("", 2, 0, 2, 1, 0).isEmpty());
    EXPECT_TRUE(conversion.FormatData("4142", 5, 5, 6, 0, 1).isEmpty());
}

TEST_F(RawConversion, FormatDataOddLengthTextEndsInASingleDigitByte)
{
    EXPECT_EQ(conversion.FormatData("E803F", 1, 2, 0, 1, 0), DynamicValue(15));
    EXPECT_EQ(conversion.FormatData("E803F", 2, 0, 0, 1, 0), DynamicValue(1000));
    EXPECT_TRUE(conversion.FormatData("E803F", 2, 1, 0, 1, 0).isEmpty()) << "incomplete last word";
}

TEST(ConvertRawToValueTest, EachTypeAndBadPositions)
{
    const std::vector<std::uint8_t> block = { 0x10, 0xFF, 0x34, 0x12, 0x01, 0x00, 0xFF, 0xFF, 'O', 'K' };
    EXPECT_EQ(ConvertRawToValue(block, 0, 1, 1), DynamicValue(0x10));
    EXPECT_EQ(ConvertRawToValue(block, 0, 3, 4), DynamicValue(0x1234));
    EXPECT_EQ(ConvertRawToValue(block, 1, 2, 2), DynamicValue(0xFF));
    EXPECT_EQ(ConvertRawToValue(block, 2, 1, 2), DynamicValue(0xFF10));
    EXPECT_EQ(ConvertRawToValue(block, 3, 1, 2), DynamicValue(0xFF10 - 0x10000));
    EXPECT_EQ(ConvertRawToValue(block, 3, 3, 4), DynamicValue(0x1234));
    EXPECT_EQ(ConvertRawToValue(block, 5, 3, 6), DynamicValue(0x00011234));
    EXPECT_EQ(
        ConvertRawToValue(block, 5, 5, 8), DynamicValue(static_cast<double>(0xFFFF0001) - 4294967296.0));
    EXPECT_EQ(ConvertRawToValue(block, 6, 0, 0), DynamicValue(std::string(block.begin(), block.end())));
    EXPECT_TRUE(ConvertRawToValue(block, 4, 1, 4).isEmpty());

    EXPECT_EQ(ConvertRawToValue(block, 2, 0, 0), DynamicValue(kBadConfigValue));
    EXPECT_EQ(ConvertRawToValue(block, 2, 10, 11), DynamicValue(kBadConfigValue));
    EXPECT_EQ(ConvertRawToValue(block, 5, 8, 10), DynamicValue(kBadConfigValue)) << "four bytes from 8";
    EXPECT_EQ(ConvertRawToValue({}, 1, 1, 1), DynamicValue(kBadConfigValue));
}

TEST_F(RawConversion, GetConfigurationValueByTypeName)
{
    EXPECT_EQ(conversion.GetConfigurationValue("255", "byte"), "FF");
    EXPECT_EQ(conversion.GetConfigurationValue("17", "B"), "11");
    EXPECT_EQ(conversion.GetConfigurationValue("1000", "integer"), "E803");
    EXPECT_EQ(conversion.GetConfigurationValue("1000", "U"), "E803");
    EXPECT_EQ(conversion.GetConfigurationValue("&H1234", "8"), "3412");
    EXPECT_EQ(conversion.GetConfigurationValue("70000", "2"), "7011") << "cut to 16 bits";
    EXPECT_EQ(conversion.GetConfigurationValue("0x1234", "bitfield"), "3412");
    EXPECT_EQ(conversion.GetConfigurationValue("0x5", "bitfield"), "0500");
    EXPECT_EQ(conversion.GetConfigurationValue("0x123456", "bitfield"), "5634");
    EXPECT_EQ(conversion.GetConfigurationValue("-1", "signedinteger"), "FFFF");
    EXPECT_EQ(conversion.GetConfigurationValue("-300", "s"), "D4FE");
    EXPECT_EQ(conversion.GetConfigurationValue("300", "3"), "2C01");
    EXPECT_EQ(conversion.GetConfigurationValue("AB", "string", 4), "41420000");
    EXPECT_EQ(conversion.GetConfigurationValue("ABCDE", "6", 2), "4142");
    EXPECT_EQ(conversion.GetConfigurationValue("ABC", "hex", 3), "AB0C00");
    EXPECT_EQ(conversion.GetConfigurationValue("123456", "7", 2), "1234");
    EXPECT_EQ(conversion.GetConfigurationValue("1", "float"), "");
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(RawConversion, GetConfigurationValueReportsAValueThatCannotBeConverted)
{
    dialogs.answerMessage(platform::Answer::OK);
    EXPECT_EQ(conversion.GetConfigurationValue("5000000000", "integer"), "");
    ASSERT_EQ(dialogs.shown().size(), 1U);
    EXPECT_EQ(dialogs.lastShown().text, "An error has occurred.\r\nOverflow");
}

struct LogElement {
    std::string FileDataType;
    std::string value;
};

TEST_F(RawConversion, ParseLogDataDecodesWordsByElementType)
{
    std::vector<LogElement> elements
        = { { "U", "old" }, { "H", "" }, { "S", "" }, { "STR", "keep" }, { "S", "" } };
    ASSERT_TRUE(conversion.ParseLogData("E803341200800000FEFF", elements));
    EXPECT_EQ(elements[0].value, "1000");
    EXPECT_EQ(elements[1].value, "0x1234");
    EXPECT_EQ(elements[2].value, "-32768");
    EXPECT_EQ(elements[3].value, "keep");
    EXPECT_EQ(elements[4].value, "-2");
}

TEST_F(RawConversion, ParseLogDataShortOrBadSampleSetsNothing)
{
    std::vector<LogElement> elements = { { "U", "a" }, { "U", "b" } };
    EXPECT_FALSE(conversion.ParseLogData("E803", elements));
    EXPECT_FALSE(conversion.ParseLogData("E803XX00", elements));
    EXPECT_EQ(elements[0].value, "a");
    EXPECT_EQ(elements[1].value, "b");
}

} // namespace
} // namespace zv
