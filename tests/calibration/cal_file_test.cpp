// The .cal text and its atomic writer.

#include "calibration/cal_file.h"

#include <filesystem>

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

TEST(CalFileTest, AtomicWriteReplacesWholeOrFailsLeavingTheTargetAndNoTemporary)
{
    const auto folder = std::filesystem::temp_directory_path() / "zv_cal_atomic";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const auto entries = [&] {
        return std::distance(
            std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    };
    const auto path = (folder / "a.cal").string();
    EXPECT_EQ(writeFileAtomically(path, "old\r\n"), "");
    EXPECT_EQ(writeFileAtomically(path, "new\r\n"), "");
    EXPECT_EQ(readTextFile(path), "new\r\n");
    // A target that cannot be replaced (a folder in its place): the write fails after the
    // temporary was made, and the temporary goes again.
    const auto busy = folder / "busy.cal";
    std::filesystem::create_directories(busy / "inside");
    EXPECT_NE(writeFileAtomically(busy.string(), "new\r\n"), "");
    EXPECT_TRUE(std::filesystem::is_directory(busy / "inside"));
    EXPECT_EQ(entries(), 2) << "the file and the folder, no temporary";
    EXPECT_NE(writeFileAtomically((folder / "no" / "such.cal").string(), "x"), "");
    EXPECT_FALSE(readTextFile((folder / "missing.cal").string()));
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace zv
