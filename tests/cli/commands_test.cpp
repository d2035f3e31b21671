// get, read-file, sbread, capture-demo and demo mode, and the command line's own errors.

#include "cli/sbd_notation.h"
#include "cli_fixture.h"
#include "platform/ini_file.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

TEST_F(CliTest, GetReadsTheGatewayOrOneCell)
{
    sim.pack->model().files.set("Voltage", 3111, 2);
    sim.pack->model().files.set("Voltage", 3333, 3);
    auto result = run({ "get", "Voltage", "--node", "3" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Voltage: 3333 mV\n");
    EXPECT_EQ(run({ "get", "voltage", "--node", "2" }).out, "Voltage: 3111 mV\n")
        << "names match in any case";

    result = run({ "get", "Expected Number Of Cells" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Expected Number Of Cells: 8\n");
}

TEST_F(CliTest, GetRefusesUnknownNamesAndCells)
{
    auto result = run({ "get", "Voltage" });
    EXPECT_EQ(result.status, 1) << "cell parameters are not in the gateway list";
    EXPECT_THAT(result.err, HasSubstr("There is no parameter named \"Voltage\"."));
    result = run({ "get", "Voltage", "--node", "9" });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("There is no cell 9; the pack has 8 cells."));
}

TEST_F(CliTest, GetPrintsTheWindowsTextOfBitWordsAndDatesOrWithRawTheNumber)
{
    sim.pack->model().files.set("Algorithm Enable", 0x0047);
    struct Case {
        std::vector<std::string> line;
        const char* out;
    };
    const Case cases[] {
        { { "get", "Algorithm Enable" }, "Algorithm Enable: 0x0047\n" },
        { { "get", "Algorithm Enable", "--raw" }, "Algorithm Enable: 71\n" },
        { { "get", "Manufacture Date" }, "Manufacture Date: 05/17/2023\n" },
        { { "get", "Manufacture Date", "--raw" }, "Manufacture Date: 22193\n" },
        { { "get", "Expected Number Of Cells" }, "Expected Number Of Cells: 8\n" },
    };
    for (const Case& c : cases) {
        const auto result = run(c.line);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, c.out);
    }
}

TEST_F(CliTest, ReadFilePrintsOneRecordALine)
{
    const auto result = run({ "read-file", "9" });
    ASSERT_EQ(result.status, 0) << result.err;
    // File 9: 16 bytes in records of 2; "Expected Number Of Cells" is element 3.
    std::vector<std::string> records;
    std::istringstream in(result.out);
    for (std::string line; std::getline(in, line);)
        records.push_back(line);
    ASSERT_EQ(records.size(), 8u);
    EXPECT_EQ(records[3], "0800");
    for (const auto& record : records)
        EXPECT_EQ(record.size(), 4u);

    EXPECT_THAT(run({ "read-file", "77" }).err, HasSubstr("File 77 is not in the directory."));
}

TEST_F(CliTest, SbreadReadsWordsAndBlocksInTheChosenNotation)
{
    EXPECT_EQ(run({ "sbread", "0x1A" }).out, "0031\n") << "SpecificationInfo";
    EXPECT_EQ(run({ "sbread", "26", "--format", "uint" }).out, "49\n");
    const auto closed = run({ "sbread", "0x80", "--block" });
    EXPECT_EQ(closed.status, 1) << "the gateway block needs the extended command set";
    EXPECT_THAT(closed.err, HasSubstr("Error: Please verify SMB Data Type"));

    const auto block = run({ "sbread", "0x80", "--block", "--extended" });
    ASSERT_EQ(block.status, 0) << block.err;
    EXPECT_EQ(block.out.size(), 16u * 2 + 1) << "words 0 to 7 of file 1";
}

TEST(SbdNotation, WordsAndBlocks)
{
    using cli::SbdFormat;
    EXPECT_EQ(cli::wordText(0x00FF, SbdFormat::HEX), "00FF");
    EXPECT_EQ(cli::wordText(65535, SbdFormat::SINT), "-1");
    EXPECT_EQ(cli::wordText(0x4120, SbdFormat::STR), "A") << "blanks trimmed";
    const std::vector<std::uint8_t> block { 0x01, 0x02, 0xFF, 0xFF, 0x41 };
    EXPECT_EQ(cli::blockText(block, SbdFormat::HEX), "0102FFFF41");
    EXPECT_EQ(cli::blockText(block, SbdFormat::UINT), "513 65535 ") << "the last byte has no partner";
    EXPECT_EQ(cli::blockText(block, SbdFormat::SINT), "513 -1 ");
}

// A program folder of its own, so that a capture can be demo.ini in it.
class DemoCapture : public CliTest {
protected:
    DemoCapture()
    {
        fs::remove_all(home);
        fs::create_directories(home);
        fs::copy_file(fs::path(programFolder()) / "Zentavia.ini", home / "Zentavia.ini");
        fs::copy(fs::path(programFolder()) / "Configuration Files", home / "Configuration Files",
            fs::copy_options::recursive);
    }
    ~DemoCapture() override { fs::remove_all(home); }

    const fs::path home = fs::temp_directory_path() / ("zv-cli-demo-" + std::to_string(::getpid()));
};

TEST_F(DemoCapture, HoldsTheTargetTheDirectoryAndTheReadableFiles)
{
    const auto result = run({ "capture-demo" }, home.string());
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Captured target 1001: 41 directory records and"));

    // Which files and how the id is kept: the capture's own tests; here that it lands in the home.
    const auto capture = platform::IniFile::load((home / "demo.ini").string());
    EXPECT_TRUE(capture.contains("Data", "Dir40")) << "raw records, the Error entry included";
    EXPECT_EQ(capture.value("Data", "File9").substr(12, 4), "0800");
}

TEST_F(DemoCapture, DemoModeRunsFromItWithoutTheBus)
{
    ASSERT_EQ(run({ "capture-demo" }, home.string()).status, 0);
    const auto live = run({ "detect" }, home.string());
    sim.port.setMissing(1);
    const auto demo = run({ "--demo", "detect" }, home.string());
    ASSERT_EQ(demo.status, 0) << demo.err;
    EXPECT_EQ(demo.out, live.out);
    EXPECT_THAT(run({ "--demo", "sbread", "0x1A" }, home.string()).err, HasSubstr("demo mode has none"));
}

TEST_F(CliTest, DemoModeWithoutACaptureSaysSo)
{
    EXPECT_THAT(run({ "--demo", "detect" }, "/nonexistent").err,
        HasSubstr("The demonstration file is missing. Aborting demo mode startup."));
}

TEST_F(CliTest, UsageErrorsExitWithTwo)
{
    for (const auto& line : std::vector<std::vector<std::string>> {
             {},
             { "frobnicate" },
             { "get" },
             { "dir", "extra" },
             { "read-file", "-1" },
             { "get", "Voltage", "--node", "-2" },
             { "dir", "--raw" },
             { "detect", "--node", "2" },
             { "read-file", "x9" },
             { "sbread", "256" },
             { "--address", "200", "detect" },
             { "sbread", "1", "--format", "OCT" },
             { "--port", "/dev/ttyS0", "--usb", "cp2112", "detect" },
             { "get", "---", "-5" },
             { "read-file", "--", "-1" },
         }) {
        const auto result = run(line);
        EXPECT_EQ(result.status, 2) << ::testing::PrintToString(line);
        EXPECT_THAT(result.err, HasSubstr("zentavia-cli: ")) << ::testing::PrintToString(line);
        EXPECT_EQ(result.out, "");
    }
    EXPECT_THAT(run({ "read-file", "-1" }).err,
        HasSubstr("The file number must be a number from 0 to 255, not \"-1\"."))
        << "a negative number is a bad value, not an option";
    EXPECT_THAT(run({ "--help" }).out, HasSubstr("capture-demo [FILE]"));
}

} // namespace
} // namespace zv::test
