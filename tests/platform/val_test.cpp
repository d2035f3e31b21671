#include "platform/val.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(Val, ReadsAsFarAsItCan)
{
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("-"), 0);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_EQ(Val("   42"), 42);
    EXPECT_EQ(Val("12abc"), 12);
    EXPECT_EQ(Val("1 2 3"), 123); // blanks inside are skipped too
    EXPECT_EQ(Val("-7.25"), -7.25);
    EXPECT_EQ(Val(".5"), 0.5);
    EXPECT_EQ(Val("3."), 3);
    EXPECT_EQ(Val("1e3"), 1000);
    EXPECT_EQ(Val("2.5E-1"), 0.25);
    EXPECT_EQ(Val("1d2"), 100);
    EXPECT_EQ(Val("1e"), 1);
    EXPECT_EQ(Val("1e+"), 1);
    EXPECT_EQ(Val("1.2.3"), 1.2);
    EXPECT_EQ(Val("1,5"), 1); // the decimal point is always '.'
    EXPECT_EQ(Val("1e999"), 0); // out of range
}

TEST(Val, HexadecimalAndOctal)
{
    EXPECT_EQ(Val("&HFFF8F0"), 16775408);
    EXPECT_EQ(Val("&hff"), 255);
    EXPECT_EQ(Val("&H7FFF"), 32767);
    EXPECT_EQ(Val("&HFFFF"), -1); // four digits: a 16-bit number
    EXPECT_EQ(Val("&H8000"), -32768);
    EXPECT_EQ(Val("&H10000"), 65536);
    EXPECT_EQ(Val("&HFFFFFFFF"), -1);
    EXPECT_EQ(Val("&H1G"), 1);
    EXPECT_EQ(Val("&H"), 0);
    EXPECT_EQ(Val("&O17"), 15);
    EXPECT_EQ(Val("&O178"), 15);
    EXPECT_EQ(Val("&X12"), 0);
    EXPECT_EQ(Val("  &H 1F"), 31);
}

TEST(StrictInteger, AcceptsOnlyAWholeNumber)
{
    EXPECT_EQ(strictInteger("3"), 3);
    EXPECT_EQ(strictInteger(" -12 "), -12);
    EXPECT_EQ(strictInteger("+4"), 4);
    EXPECT_EQ(strictInteger("2.5"), 2); // half to even
    EXPECT_EQ(strictInteger("3.5"), 4);
    EXPECT_EQ(strictInteger("32767"), 32767);
    EXPECT_EQ(strictInteger("32768"), std::nullopt);
    EXPECT_EQ(strictInteger(""), std::nullopt);
    EXPECT_EQ(strictInteger("-"), std::nullopt);
    EXPECT_EQ(strictInteger("COM3"), std::nullopt);
    EXPECT_EQ(strictInteger("3x"), std::nullopt);
    EXPECT_EQ(strictInteger("1 2"), std::nullopt);
    EXPECT_EQ(strictInteger("1e3"), std::nullopt);
}

} // namespace
} // namespace zv
