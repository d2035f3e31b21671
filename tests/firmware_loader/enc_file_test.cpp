// The .enc reader and the block arithmetic: the exact tag line, the section table, the data
// each section takes from the body, the target rule, and the shipped images against the pack's
// own check of a section.

#include "device/firmware_image.h"
#include "firmware_loader/enc_file.h"
#include "firmware_loader/image_download.h"
#include "platform/atomic_file.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

const std::string kTag(kEncTagLine);

// Four digits low byte first.
std::string word(unsigned value)
{
    char text[5];
    std::snprintf(text, sizeof text, "%02X%02X", value & 0xFF, (value >> 8) & 0xFF);
    return text;
}

// One section of `bytes` bytes (digits "AB" repeated) for file 2, version 5001, placed at start 10,
// right behind the table.
std::string oneSectionBody(unsigned bytes)
{
    std::string body = word(1) + word(2) + word(5001) + word(10) + word(bytes - 1);
    for (unsigned i = 0; i < bytes; ++i)
        body += "AB";
    return body;
}

} // namespace

TEST(EncFile, TheTagLineMustBeExactAndTheBodyHoldItsTable)
{
    const std::string body = "\r\n" + oneSectionBody(4) + "\r\n";
    const std::string tag = kTag + "\r\n";
    struct Case {
        const char* name;
        std::string text;
        EncFault fault;
    } cases[] = {
        { "tag CR LF", kTag + body, EncFault::None },
        { "tag LF", kTag + "\n" + oneSectionBody(4), EncFault::None },
        { "trailing blank", kTag + " " + body, EncFault::NotFirmware },
        { "trailing tab", kTag + "\t" + body, EncFault::NotFirmware },
        { "leading blank", " " + kTag + body, EncFault::NotFirmware },
        { "lower case", "3c556c6d617220426f6f746c6f61643e" + body, EncFault::NotFirmware },
        { "cut short", kTag.substr(0, 30) + body, EncFault::NotFirmware },
        { "empty file", "", EncFault::NotFirmware },
        { "tag alone", tag, EncFault::Invalid },
        { "count zero", tag + word(0), EncFault::Invalid },
        { "count not hex", tag + "0G00" + oneSectionBody(4).substr(4), EncFault::Invalid },
        { "table entry cut", tag + word(1) + word(2) + word(5001), EncFault::Invalid },
        { "data beyond the body", tag + oneSectionBody(4).substr(0, 26), EncFault::Invalid },
        { "lower-case data", tag + word(1) + word(2) + word(1) + word(10) + word(1) + "abcd",
            EncFault::Invalid },
        { "blank inside data", tag + word(1) + word(2) + word(1) + word(10) + word(1) + "AB C",
            EncFault::Invalid },
        { "more sections than the table holds", tag + word(3) + oneSectionBody(4).substr(4),
            EncFault::Invalid },
    };
    for (const auto& c : cases)
        EXPECT_EQ(parseEncText(c.text).fault, c.fault) << c.name;
}

TEST(EncFile, SectionsTakeTheirDigitsFromTheBody)
{
    // Two sections: the first at start 0 (position 1: the table's own digits), the second at 20.
    std::string body = word(2) + word(2) + word(6000) + word(0) + word(1) + word(34) + word(101) + word(20)
        + word(2) + "1122" + "CAFE01";
    // Spread over lines: the body joins them without their line breaks.
    const auto image = parseEncText(kTag + "\r\n" + body.substr(0, 20) + "\r\n" + body.substr(20) + "\r\n");
    ASSERT_EQ(image.fault, EncFault::None);
    ASSERT_EQ(image.sections.size(), 2u);
    EXPECT_EQ(image.sections[0].file, 2u);
    EXPECT_EQ(image.sections[0].version, 6000u) << "\"7017\" is 6000";
    EXPECT_EQ(image.sections[0].start, 1u) << "start 0 means position 1";
    EXPECT_EQ(image.sections[0].data, "0200") << "last 1: two bytes from the first digit of the body";
    EXPECT_EQ(image.sections[1].file, 34u);
    EXPECT_EQ(image.sections[1].start, 41u) << "start 20: position 20 * 2 + 1";
    EXPECT_EQ(image.sections[1].data, "CAFE01");
}

TEST(EncFile, TheFirstVersionDecidesWhichTargetTakesTheImage)
{
    struct Case {
        const char* target;
        std::uint32_t version;
        bool fits;
    } cases[] = {
        { "1001", 5999, true },
        { "1001", 6000, false },
        { "1002", 5000, true },
        { "1002", 6000, false },
        { "1003", 6000, true },
        { "1003", 5999, false },
        { "ABCD", 1, true },
        { "ABCD", 9000, true },
    };
    for (const auto& c : cases)
        EXPECT_EQ(firmwareFitsTarget(c.target, c.version), c.fits) << c.target << " " << c.version;
}

TEST(ImageDownload, BlocksRoundUpAndAreFilledWithZeros)
{
    struct Case {
        unsigned bytes;
        int blocks;
    } cases[] = { { 1, 1 }, { 127, 1 }, { 128, 1 }, { 129, 2 }, { 192, 2 }, { 256, 2 }, { 257, 3 } };
    for (const auto& c : cases) {
        const auto image = parseEncText(kTag + "\r\n" + oneSectionBody(c.bytes));
        ASSERT_EQ(image.fault, EncFault::None);
        const FileRequest request = sectionRequest(image.sections[0], 128);
        EXPECT_EQ(request.count, c.blocks) << c.bytes << " bytes";
        ASSERT_EQ(request.data.size(), static_cast<std::size_t>(c.blocks) * 128);
        EXPECT_EQ(request.data[c.bytes - 1], 0xAB);
        EXPECT_TRUE(
            std::all_of(request.data.begin() + c.bytes, request.data.end(), [](auto b) { return b == 0; }));
        EXPECT_EQ(request.file, 2);
        EXPECT_EQ(request.blockSize, 128);
        EXPECT_EQ(request.access, 1);
    }
}

TEST(ShippedImages, EachSectionPassesThePacksCheckAndTheDamagedOneFails)
{
    struct Case {
        std::string path;
        std::uint32_t appVersion;
        bool good;
    } cases[] = {
        { test::programFolder() + "/Configuration Files/ZK9470/Firmware/FW_0002_0000_6000_0719.enc", 6000,
            true },
        { test::programFolder() + "/Configuration Files/ZK9460S12/Firmware/FW_0001_0000_5000_0012.enc", 5000,
            true },
        { std::string(ZENTAVIA_TEST_IMAGES) + "/FW_0002_0000_6000_0719_damaged.enc", 6000, false },
    };
    for (const auto& c : cases) {
        const auto image = parseEncText(readWholeFile(c.path));
        ASSERT_EQ(image.fault, EncFault::None) << c.path;
        ASSERT_EQ(image.sections.size(), 2u);
        EXPECT_EQ(image.sections[0].version, c.appVersion);
        EXPECT_EQ(image.sections[0].file, 2u);
        EXPECT_EQ(image.sections[1].file, 34u);
        EXPECT_EQ(image.sections[1].bytes(), 128u) << "the data section is exactly one block";
        const auto app = sectionRequest(image.sections[0], 128).data;
        const auto data = sectionRequest(image.sections[1], 128).data;
        EXPECT_EQ(zvsim::checkFirmwareSection(app).has_value(), c.good) << c.path;
        EXPECT_TRUE(zvsim::checkFirmwareSection(data).has_value());
    }
}
