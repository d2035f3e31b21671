// The log writer against the in-process pack: a whole session line by line, two sessions in one
// file, comments, failed samples, the decimal comma, the refusals of a start, and the rows that
// are on disk while the log is still open.

#include "log_rig.h"

#include <gmock/gmock.h>

#include <regex>
#include <sstream>

namespace zv::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class LogWriterTest : public ::testing::Test, public LogRig {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(connect());
        // The two definitions of the example session: two columns each.
        staticPath = file("characterize_12cell.slog", "; static\r\nSerial\t12\t0\tU\r\nCycles\t12\t1\tU\r\n");
        dynamicPath = file("characterize_12cell.dlog", "Tick\t0\t0\tU\r\nCurrent\t1\t3\tS\r\n");
        writer().settings.DynamicDefinitionFile = dynamicPath;
    }

    std::string staticPath;
    std::string dynamicPath;
};

// Each line as a pattern: the fixed words exact, the pack's values as numbers.
void expectLines(const std::vector<std::string>& lines, const std::vector<std::string>& patterns)
{
    ASSERT_EQ(lines.size(), patterns.size()) << ::testing::PrintToString(lines);
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_TRUE(std::regex_match(lines[i], std::regex(patterns[i])))
            << "line " << i + 1 << ": " << lines[i] << "\n  expected " << patterns[i];
}

std::string literal(const std::string& text)
{
    return std::regex_replace(text, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
}

TEST_F(LogWriterTest, SessionAsTheExampleShowsItThenASecondSessionInTheSameFile)
{
    writer().settings.StaticDefinitionFile = staticPath;
    ASSERT_TRUE(start("first, charge"));
    sample();
    sim.loop.wait(2000);
    sample();
    const std::string at = R"(11/19/2026,1:2\d:\d\d AM,)";
    expectLines(lines(),
        {
            "COMMENT," + at + "0,first  charge",
            "",
            "TITLE,Zentavia 3\\.\\d+\\.\\d+ Static Data Capture",
            "SOURCE FILE," + literal(staticPath),
            "ULMAR FILE,,,,12,12",
            "ELEMENT,,,,0,1",
            "FORMAT,,,,U,U",
            "HEADER,Date,Time,Capture,Serial,Cycles",
            "DATA," + at + R"(0,\d+,\d+)",
            "",
            "",
            "TITLE,Zentavia 3\\.\\d+\\.\\d+ Dynamic Data Capture",
            "SOURCE FILE," + literal(dynamicPath),
            "ULMAR FILE,,,,0,1",
            "ELEMENT,,,,0,3",
            "FORMAT,,,,U,S",
            "HEADER \\[D\\],Date,Time,Capture,Tick,Current",
            "DATA," + at + R"(0,\d+,-?\d+)",
            "DATA," + at + R"(0\.0333,\d+,-?\d+)",
        });
    EXPECT_EQ(sim.dialogs.shown().front().title, "Enter Comment");
    EXPECT_EQ(sim.dialogs.shown().front().text,
        "Would you like to add a comment to the start of this log session?");

    // A second session in the same file.
    sim.globals.PollingActive = false;
    writer().CloseLog();
    sim.dialogs.answerMessage(platform::Answer::OK); // the file exists: append
    ASSERT_TRUE(start("two"));
    const auto all = lines();
    const auto second = std::find_if(
        all.begin() + 1, all.end(), [](const std::string& l) { return l.starts_with("COMMENT,"); });
    ASSERT_NE(second, all.end()) << ::testing::PrintToString(all);
    const auto next = static_cast<std::size_t>(second - all.begin());
    // The first session's closing static block, its data row, two empty lines, the second session.
    EXPECT_THAT(all[next - 4], HasSubstr("HEADER,Date,Time,Capture,Serial,Cycles"));
    EXPECT_THAT(all[next - 3], ::testing::StartsWith("DATA,"));
    EXPECT_EQ(all[next - 2], "");
    EXPECT_EQ(all[next - 1], "");
    EXPECT_THAT(*second, ::testing::EndsWith(",0,two"));
    EXPECT_EQ(sim.dialogs.shown()[sim.dialogs.shown().size() - 2].text,
        "The file log.csv already exists.\r\nIf you continue, the data collected will be appended to the "
        "end\r\n"
        "of this file. Otherwise you can click Cancel to create a new file. \r\n\r\n"
        "Click OK to continue or Cancel to create new.");
}

TEST_F(LogWriterTest, CommentsKeepTheColumnsAndLaterRowsFollowTheHeader)
{
    ASSERT_TRUE(start("a,b,,c"));
    sample();
    sim.loop.wait(60000);
    writer().addComment("tap, then wait");
    writer().addComment("");
    writer().logChange([] {
        clsSMBusParameter p;
        p.ParameterName = "Cell Over Voltage";
        p.value = DynamicValue(4200.0);
        p.NewValue = DynamicValue(4250.0);
        return p;
    }());
    sim.dialogs.answerMessage(platform::Answer::OK);
    writer().captureLearnedData();
    const auto all = lines();
    EXPECT_THAT(all.front(), ::testing::EndsWith(",0,a b  c"));
    EXPECT_THAT(all[all.size() - 3], ::testing::MatchesRegex(R"(COMMENT,.*,1\.0000,tap  then wait)"));
    EXPECT_THAT(
        all[all.size() - 2], ::testing::MatchesRegex(R"(CHANGE,.*,1\.0000,Cell Over Voltage,4200,4250)"));
    EXPECT_THAT(all.back(), ::testing::MatchesRegex(R"(Ra,.*,1\.000[0-9](,[0-9]+)+)"));
    ASSERT_FALSE(sim.dialogs.notifications().empty());
    EXPECT_EQ(sim.dialogs.notifications().back().title, "Ra Data Captured");
}

TEST_F(LogWriterTest, FailedSampleReadWritesErrorAndTheNextSampleLogsAgain)
{
    ASSERT_TRUE(start("errors"));
    sample();
    // A sample the device cannot give: more words than device file 29 holds.
    auto& definition = sim.driver().Directory.LogFile;
    const int count = definition.FileCount;
    definition.FileCount = 200;
    sim.loop.wait(1000);
    sample();
    definition.FileCount = count;
    sim.loop.wait(1000);
    sample();
    const auto all = lines();
    EXPECT_THAT(all[all.size() - 2], ::testing::MatchesRegex(R"(ERROR,11/19/2026,[^,]+,0\.0167)"));
    EXPECT_THAT(all.back(), ::testing::MatchesRegex(R"(DATA,[^,]+,[^,]+,0\.0333,[0-9]+,-?[0-9]+)"));
}

TEST_F(LogWriterTest, DecimalCommaGivesSemicolonsInEveryRow)
{
    sim.globals.setDecimalSeparator(',');
    writer().settings.StaticDefinitionFile = staticPath;
    ASSERT_TRUE(start("semi;colon, comma"));
    sample();
    sim.loop.wait(2000);
    sample();
    writer().CloseLog();
    // A comma only as the decimal separator of a capture.
    for (const auto& line : lines()) {
        if (line.empty())
            continue;
        EXPECT_NE(line.find(';'), std::string::npos) << line;
        std::stringstream fields(line);
        for (std::string field; std::getline(fields, field, ';');)
            EXPECT_TRUE(
                field.find(',') == std::string::npos || std::regex_match(field, std::regex(R"(\d+,\d{4})")))
                << field << " in " << line;
    }
    EXPECT_THAT(lines().front(), ::testing::EndsWith(";0;semi colon  comma"));
    EXPECT_THAT(
        lines(), ::testing::Contains(::testing::MatchesRegex(R"(DATA;[^;]+;[^;]+;0,0333;[0-9]+;-?[0-9]+)")));
}

TEST_F(LogWriterTest, StartRefusals)
{
    // An empty comment opens nothing.
    EXPECT_FALSE(start(""));
    EXPECT_FALSE(std::filesystem::exists(folder / "log.csv"));
    EXPECT_FALSE(writer().LogOpen);

    // No dynamic definition: the box, then the logging dialog; its Cancel ends the start.
    writer().settings.DynamicDefinitionFile = kNotDefined;
    bool configured = false;
    writer().hooks.configure = [&] {
        configured = true;
        return false;
    };
    sim.dialogs.answerMessage(platform::Answer::OK);
    EXPECT_FALSE(writer().StartLogging());
    EXPECT_TRUE(configured);
    EXPECT_EQ(sim.dialogs.lastShown().title, "File not loaded");

    // No cells; the hardware offline.
    sim.globals.gNodeCount = 0;
    sim.dialogs.answerMessage(platform::Answer::OK);
    EXPECT_FALSE(writer().StartLogging());
    EXPECT_EQ(sim.dialogs.lastShown().text, "Logging cannot start because no nodes were detected.");

    // A folder that does not exist.
    sim.globals.gNodeCount = 12;
    writer().settings.DynamicDefinitionFile = dynamicPath;
    writer().settings.LogFilePath = (folder / "gone" / "log.csv").string();
    sim.dialogs.answerInput("x");
    sim.dialogs.answerMessage(platform::Answer::OK);
    EXPECT_FALSE(writer().StartLogging());
    EXPECT_EQ(sim.dialogs.lastShown().title, "Missing File");
}

} // namespace
} // namespace zv::test
