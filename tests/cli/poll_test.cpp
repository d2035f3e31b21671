// zentavia-cli poll on the virtual clock: the lines it prints, the log it writes through the log
// writer, and its options.

#include "cli_fixture.h"
#include "log_columns.h"

#include <filesystem>
#include <unistd.h>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

class CliPollTest : public CliTest {
protected:
    CliPollTest()
        : folder(fs::temp_directory_path() / ("zv-cli-poll-" + std::to_string(::getpid())))
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~CliPollTest() override { fs::remove_all(folder); }

    std::string logPath() const { return (folder / "poll.csv").string(); }

    fs::path folder;
};

TEST_F(CliPollTest, PrintsOneLineASampleWithEveryCell)
{
    const auto started = sim.loop.milliseconds();
    const auto result = run({ "poll", "--count", "3", "--rate", "2" });
    ASSERT_EQ(result.status, 0) << result.err;
    std::vector<std::string> lines;
    std::istringstream in(result.out);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    ASSERT_EQ(lines.size(), 3u) << result.out;
    EXPECT_THAT(lines[0], ::testing::MatchesRegex(".* mV  .* mA  .* %  .* \\|( [0-9]+){8}"));
    EXPECT_GE(sim.loop.milliseconds() - started, 4000) << "two waits of two seconds";
}

TEST_F(CliPollTest, LogHasTheStaticBlocksAtBothEndsAndARowASample)
{
    const auto result = run({ "poll", "--count", "4", "--log", logPath(), "--comment", "bench, run 7" });
    ASSERT_EQ(result.status, 0) << result.err;
    const LogShape shape = logShape(logPath());
    EXPECT_EQ(shape.rows.at("COMMENT"), 1);
    EXPECT_EQ(shape.rows.at("HEADER"), 2) << "opening and closing static blocks";
    EXPECT_EQ(shape.rows.at("HEADER [D]"), 1);
    EXPECT_EQ(shape.rows.at("DATA"), 4 + 2);
    EXPECT_THAT(shape.mismatches, ::testing::IsEmpty());
    EXPECT_TRUE(shape.everyRowEndsInCrLf);
    std::ifstream in(logPath());
    std::string first;
    std::getline(in, first);
    EXPECT_THAT(first, ::testing::EndsWith(",0,bench  run 7\r"));

    // A second run appends its own session; without a static definition no static blocks.
    ASSERT_EQ(run({ "poll", "--count", "2", "--log", logPath(), "--slog", "" }).status, 0);
    const LogShape both = logShape(logPath());
    EXPECT_EQ(both.rows.at("COMMENT"), 2);
    EXPECT_EQ(both.rows.at("HEADER"), 2);
    EXPECT_EQ(both.rows.at("DATA"), 6 + 2);
}

TEST_F(CliPollTest, RefusedLogsAndOptions)
{
    auto result
        = run({ "poll", "--count", "1", "--log", logPath(), "--dlog", (folder / "none.dlog").string() });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("is missing."));
    EXPECT_THAT(result.err, HasSubstr("Logging failed to start."));

    EXPECT_EQ(run({ "poll", "--count", "0" }).status, 2);
    EXPECT_THAT(run({ "detect", "--count", "2" }).err, HasSubstr("--count belongs to poll."));
    EXPECT_THAT(run({ "poll", "--log", "" }).err, HasSubstr("--log needs a file."));
}

} // namespace
} // namespace zv::test
