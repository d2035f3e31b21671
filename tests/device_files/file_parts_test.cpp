#include "device_files/file_parts.h"
#include "device_files/file_status.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

clsDirectoryElements entry(std::uint32_t size, std::uint32_t chunk, std::uint32_t maxBytes)
{
    clsDirectoryElements e;
    e.FileSize = size;
    e.FileChunk = chunk;
    e.FileMaxBytes = maxBytes;
    return e;
}

std::vector<std::pair<int, int>> pairs(const std::vector<FilePart>& parts)
{
    std::vector<std::pair<int, int>> out;
    for (const auto& p : parts)
        out.emplace_back(p.offset, p.count);
    return out;
}

} // namespace

TEST(FileParts, SplitsLargeFilesIntoRecordsPerTransfer)
{
    using P = std::vector<std::pair<int, int>>;
    EXPECT_EQ(pairs(readParts(entry(256, 2, 128))), (P { { 0, 64 }, { 64, 64 } })) << "an exact multiple";
    EXPECT_EQ(pairs(readParts(entry(300, 2, 128))), (P { { 0, 64 }, { 64, 64 }, { 128, 22 } }))
        << "a short last part";
    EXPECT_EQ(pairs(readParts(entry(128, 2, 128))), (P { { 0, 64 } }))
        << "size equal to the limit: one request";
    EXPECT_EQ(readParts(entry(8192, 128, 128)).size(), 64u)
        << "one record a part when a record fills a transfer";
}

TEST(FileParts, WritesTakeTheRecordSizeFromTheChunk)
{
    using P = std::vector<std::pair<int, int>>;
    EXPECT_EQ(pairs(writeParts(entry(300, 2, 128))), (P { { 0, 64 }, { 64, 64 }, { 128, 22 } }));
    EXPECT_EQ(pairs(writeParts(entry(96, 32, 64))), (P { { 0, 2 }, { 2, 1 } }));
}

TEST(FileParts, ALimitThatIsNotAWholeNumberOfRecordsStillCoversEveryRecord)
{
    using P = std::vector<std::pair<int, int>>;
    struct Case {
        std::uint32_t size, chunk, maxBytes;
        P parts;
    };
    const Case cases[] {
        { 96, 32, 48, { { 0, 1 }, { 1, 1 }, { 2, 1 } } }, // 1.5 records a transfer
        { 160, 32, 80, { { 0, 2 }, { 2, 2 }, { 4, 1 } } }, // 2.5 records: three parts, not two
        { 100, 2, 45, { { 0, 22 }, { 22, 22 }, { 44, 6 } } }, // an odd limit on words
        { 64, 32, 31, { { 0, 1 }, { 1, 1 } } }, // a record larger than the limit still moves
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(
            std::to_string(c.size) + "/" + std::to_string(c.chunk) + "/" + std::to_string(c.maxBytes));
        EXPECT_EQ(pairs(writeParts(entry(c.size, c.chunk, c.maxBytes))), c.parts);
        EXPECT_EQ(pairs(readParts(entry(c.size, c.chunk, c.maxBytes))), c.parts);
    }
}

TEST(FileStatus, VerdictsAndMessages)
{
    EXPECT_TRUE(CheckFileStatus(0).good);
    EXPECT_FALSE(CheckFileStatus(0).message);
    EXPECT_TRUE(CheckFileStatus(255).busy);
    EXPECT_EQ(*CheckFileStatus(1).message, "level 1 access is needed to approve the request");
    EXPECT_EQ(*CheckFileStatus(2).message, "Level 2 access is needed to approve the request");
    EXPECT_FALSE(CheckFileStatus(4).good);
    EXPECT_EQ(*CheckFileStatus(15).message, "This file is read-only");
    const auto smbus = CheckFileStatus(148);
    EXPECT_TRUE(smbus.good) << "128 to 148 report and go on";
    EXPECT_EQ(*smbus.message, "SMBus error code 0x0094");
    EXPECT_FALSE(CheckFileStatus(8).good) << "8 counts only in block mode";
    EXPECT_EQ(*CheckFileStatus(8).message, "Status code 0x0008");
    EXPECT_EQ(*CheckFileStatus(149).message, "Status code 0x0095");
    EXPECT_EQ(*CheckFileStatus(254).message, "Unknown error");
}
