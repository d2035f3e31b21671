// The .cal text and its atomic writer.

#include "calibration/cal_file.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(CalFileTest, LinesAndBytes)
{
    struct Case {
        const char* text;
        const char* first;
        std::optional<std::string> second;
    };
    const Case cases[] = {
        { "0A0B\r\nFF00\r\n", "0A0B", "FF00" },
        { "0A0B\r\n", "0A0B", std::nullopt },
        { "0A0B", "0A0B", std::nullopt },
        { "0A0B\nFF00", "0A0B", "FF00" }, // LF alone, no end on the last line
        { "0A0B\r\n\r\n", "0A0B", "" }, // an empty second line is a line
        { "", "", std::nullopt },
        { "01\r\n02\r\n03\r\n", "01", "02" },
    };
    for (const auto& c : cases) {
        const CalFile file = parseCalFile(c.text);
        EXPECT_EQ(file.firstLine, c.first) << c.text;
        EXPECT_EQ(file.secondLine, c.second) << c.text;
    }
    EXPECT_EQ(formatCalFile({ "0A0B", "FF00" }), "0A0B\r\nFF00\r\n");
    EXPECT_EQ(formatCalFile({ "0A0B", std::nullopt }), "0A0B\r\n");

    EXPECT_EQ(calLineBytes("00fF7a"), (std::vector<std::uint8_t> { 0x00, 0xFF, 0x7A }));
    EXPECT_EQ(calLineBytes(""), std::vector<std::uint8_t> {});
    for (const char* bad : { "0", "0G", " 00", "00 ", "0x00", "-1" })
        EXPECT_FALSE(calLineBytes(bad)) << bad;
    const std::vector<std::uint8_t> bytes { 0x01, 0xAB, 0xFE };
    EXPECT_EQ(calLineText(bytes), "01ABFE");
    EXPECT_EQ(calLineBytes(calLineText(bytes)), bytes);
    EXPECT_EQ(calLineBytes(kDefaultCalSecondLine)->size(), 15u);
}

class AtomicWriteTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        folder = std::filesystem::temp_directory_path()
            / ("zv_cal_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override
    {
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        std::filesystem::remove_all(folder);
    }
    [[nodiscard]] std::size_t entries() const
    {
        return static_cast<std::size_t>(std::distance(
            std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
    }
    std::filesystem::path folder;
};

TEST_F(AtomicWriteTest, ReplacesWholeAndLeavesNoTemporary)
{
    const auto path = (folder / "a.cal").string();
    EXPECT_EQ(writeFileAtomically(path, "old\r\n"), "");
    EXPECT_EQ(writeFileAtomically(path, "new\r\n"), "");
    EXPECT_EQ(readTextFile(path), "new\r\n");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(AtomicWriteTest, FailureKeepsTheOldFile)
{
    const auto path = (folder / "a.cal").string();
    ASSERT_EQ(writeFileAtomically(path, "old\r\n"), "");
    // A folder that takes no new file: the temporary cannot be made, the target stays.
    std::filesystem::permissions(
        folder, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    if (std::ofstream((folder / "probe").string())) {
        GTEST_SKIP() << "running as a user whom permissions do not stop";
    }
    EXPECT_NE(writeFileAtomically(path, "new\r\n"), "");
    EXPECT_EQ(readTextFile(path), "old\r\n");
    EXPECT_FALSE(readTextFile((folder / "missing.cal").string()));
    EXPECT_NE(writeFileAtomically((folder / "no" / "such.cal").string(), "x"), "");
}

} // namespace
} // namespace zv
