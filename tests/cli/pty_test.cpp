// zentavia-cli against zentavia-packsim on a pseudo-terminal: the real programs, the real serial
// port, detect end to end. The one test that takes real time; it waits only on the children.

#include "log_columns.h"
#include "support/child_process.h"

#include <filesystem>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;

constexpr int kStartMs = 10000;
constexpr int kRunMs = 60000;

TEST(CliOverPty, DetectsTheSimulatedPack)
{
    ChildProcess packsim(ZENTAVIA_PACKSIM, { "--pty", "--cells", "12" });
    ASSERT_TRUE(packsim.started());
    const auto line = packsim.waitForLine("HLK dongle on ", kStartMs);
    ASSERT_TRUE(line) << packsim.output() << packsim.errors();
    const std::string device = line->substr(line->find("/dev/"));

    ChildProcess cli(ZENTAVIA_CLI, { "--port", device, "detect" });
    ASSERT_TRUE(cli.started());
    const auto status = cli.waitForExit(kRunMs);
    ASSERT_TRUE(status) << "zentavia-cli did not end";
    EXPECT_EQ(*status, 0) << cli.errors();
    EXPECT_THAT(cli.output(), HasSubstr("Target ID:     1001\nTarget name:   ZK9460\nCells:         12\n"));
    EXPECT_THAT(cli.output(), HasSubstr("  39  SBDataMap"));
}

} // namespace
} // namespace zv::test

namespace zv::test {
namespace {

// zentavia-cli poll with a log against zentavia-packsim on a pseudo-terminal.
class PollOverPty : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(packsim.started());
        const auto line = packsim.waitForLine("HLK dongle on ", kStartMs);
        ASSERT_TRUE(line) << packsim.output() << packsim.errors();
        device = line->substr(line->find("/dev/"));
        std::filesystem::remove(logPath);
    }
    void TearDown() override { std::filesystem::remove(logPath); }

    // Runs a logging poll until it has printed `samples` lines, then sends the signal. A line is
    // printed before its row is logged, so at least samples - 1 dynamic rows were written.
    LogShape pollThenSignal(int samples, int signal)
    {
        ChildProcess cli(ZENTAVIA_CLI, { "--port", device, "poll", "--log", logPath, "--comment", "pty" });
        EXPECT_TRUE(cli.started());
        const auto printed = [&] {
            const std::string& out = cli.output();
            int n = 0;
            for (auto at = out.find(" | "); at != std::string::npos; at = out.find(" | ", at + 1))
                ++n;
            return n;
        };
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kRunMs);
        while (printed() < samples && std::chrono::steady_clock::now() < deadline)
            (void)cli.waitForLine("\x01", 200); // reads what has arrived
        EXPECT_GE(printed(), samples) << cli.errors();
        cli.sendSignal(signal);
        EXPECT_TRUE(cli.waitForExit(kRunMs));
        return logShape(logPath);
    }

    ChildProcess packsim { ZENTAVIA_PACKSIM, { "--pty", "--cells", "12" } };
    std::string device;
    std::string logPath
        = std::filesystem::temp_directory_path() / ("zv-poll-pty-" + std::to_string(::getpid()) + ".csv");
};

TEST_F(PollOverPty, KilledPollLeavesEveryWrittenRowComplete)
{
    const LogShape shape = pollThenSignal(4, SIGKILL);
    EXPECT_GE(shape.rows.at("DATA"), 4);
    EXPECT_TRUE(shape.everyRowEndsInCrLf) << "no row is cut";
    EXPECT_THAT(shape.mismatches, ::testing::IsEmpty());
    EXPECT_EQ(shape.rows.at("HEADER"), 1) << "a killed poll writes no closing block";
}

TEST_F(PollOverPty, TerminatedPollClosesTheLogWithItsStaticBlock)
{
    const LogShape shape = pollThenSignal(3, SIGTERM);
    EXPECT_EQ(shape.rows.at("HEADER"), 2);
    EXPECT_TRUE(shape.everyRowEndsInCrLf);
    EXPECT_THAT(shape.mismatches, ::testing::IsEmpty());
}

} // namespace
} // namespace zv::test
