// Errors that tell the truth: a value its device file does not hold, pace and bounds out of their
// range, a busy device waited out without sending the request again, and the one deadline over a
// request that a dead link cannot stretch.

#include "core/setting_limits.h"
#include "core/settings_table.h"
#include "device_files/file_protocol.h"
#include "driver/file_transfer.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

TEST(HonestErrorsTest, APlaceBeyondTheEndOfItsFileIsAnErrorNotAValue)
{
    test::SimHarness sim;
    ASSERT_TRUE(sim.connect());
    auto& d = sim.driver();
    std::string text;
    ASSERT_TRUE(d.GetFile(4, text));
    auto& cells = d.nodes;
    ASSERT_GE(cells.Count(), 2);
    const auto lastCellVoltage = cells.Item(cells.Count())->NodeParameters.Item(1)->value;
    ASSERT_TRUE(lastCellVoltage.isNumber());

    // The same file cut in the middle of the cells: the cells beyond the cut hold no value.
    d.Transfer.spreadValues(4, text.substr(0, text.size() / 2));
    EXPECT_TRUE(cells.Item(1)->NodeParameters.Item(1)->value.isNumber())
        << "the first cell is still in the file";
    const auto& cut = cells.Item(cells.Count())->NodeParameters.Item(1)->value;
    ASSERT_TRUE(cut.isText());
    EXPECT_EQ(cut.text(), kValueOutsideFile);

    // An empty image holds nothing at all.
    d.Transfer.spreadValues(1, "");
    for (const auto& parameter : d.GatewayParameters) {
        if (parameter.FileNumber == 1) {
            EXPECT_EQ(parameter.value.text(), kValueOutsideFile) << parameter.ParameterName;
        }
    }
}

TEST(HonestErrorsTest, PaceAndBoundsOutsideTheirRangeAreRefusedByName)
{
    struct Case {
        const char* name;
        const char* stored;
        long expected;
        bool refused;
    };
    const Case cases[] {
        { "T_cmd_to_sts", "100000000", 1, true },
        { "T_cmd_to_sts", "3", 3, false },
        { "T_sts_to_sts", "-5", 5, true },
        { "T_sts_to_sts", "abc", 5, true },
        { "T_busy_limit", "2500", 2500, false },
        { "T_request_limit", "99", 15000, true },
        { "MAX_BLOCK_TRANSFER", "1e3", 128, true },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + "=" + c.stored);
        platform::MemorySettingsStore store;
        writeSetting(store, c.name, c.stored);
        const auto read = readBoundedSetting(store, c.name, test::programFolder());
        EXPECT_EQ(read.value, c.expected);
        EXPECT_EQ(!read.problem.empty(), c.refused);
        if (c.refused) {
            EXPECT_NE(read.problem.find(c.name), std::string::npos) << read.problem;
        }
    }

    // The driver takes the defaults and says so once, in the event log.
    test::SimHarness sim;
    writeSetting(sim.settings, "T_cmd_to_sts", "100000000");
    std::vector<std::string> events;
    sim.adjustServices = [&](CellWeftServices& services) {
        services.logEvent = [&](const std::string& line) { events.push_back(line); };
    };
    EXPECT_EQ(sim.driver().Files.settings().T_cmd_to_sts, 1);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_NE(events[0].find("T_cmd_to_sts"), std::string::npos);
}

TEST(HonestErrorsTest, ABusyDeviceIsWaitedOutWithoutSendingTheRequestAgain)
{
    test::SimHarness sim;
    ASSERT_TRUE(sim.connect());
    // Forty busy status reads: far more than the eleven attempts of a step.
    sim.pack->faults().busyPolls = 40;
    sim.port.clearWritten();
    std::string text;
    ASSERT_TRUE(sim.driver().GetFile(1, text));
    const std::string& written = sim.port.written();
    std::size_t requests = 0;
    for (auto at = written.find("/T~3C"); at != std::string::npos; at = written.find("/T~3C", at + 1))
        ++requests;
    EXPECT_EQ(requests, 1u) << "one request, its busy period waited out";
}

TEST(HonestErrorsTest, ADeadLinkEndsARequestWithinItsBoundAndSaysWhy)
{
    test::SimHarness sim;
    ASSERT_TRUE(sim.connect());
    std::vector<std::string> errors;
    sim.main().hooks.smbusError = [&](int, const std::string& text) { errors.push_back(text); };
    sim.replaceEndpoint(
        { zvsim::HlkOptions { zvsim::LinkFaults { .lostRate = 1.0 }, 1, sim.loop.milliseconds() } });
    (void)sim.driver().SMBus_Init();
    const auto start = sim.loop.milliseconds();
    std::string text;
    EXPECT_FALSE(sim.driver().GetFile(1, text));
    const auto took = sim.loop.milliseconds() - start;
    EXPECT_GE(took, 15000) << "the request tried for its whole bound";
    EXPECT_LE(took, 17000) << "and no longer";
    ASSERT_FALSE(errors.empty());
    EXPECT_NE(errors.back().find("request for file 1"), std::string::npos) << errors.back();
    EXPECT_NE(errors.back().find("Timeout waiting for response"), std::string::npos) << errors.back();
}

} // namespace
