// zentavia-cli against zentavia-packsim on a pseudo-terminal: the real programs, the real serial
// port, detect end to end. The one test that takes real time; it waits only on the children.

#include "support/child_process.h"

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
