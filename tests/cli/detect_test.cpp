// detect and dir: the target as detection finds it, its directory, and every way detection stops.

#include "cli_fixture.h"

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

TEST_F(CliTest, DetectPrintsTheTargetThenTheDirectory)
{
    const auto result = run({ "detect" });
    ASSERT_EQ(result.status, 0) << result.err;
    const auto out = lines(result.out);
    ASSERT_GE(out.size(), 7u);
    EXPECT_EQ(out[0], "Target ID:     1001");
    EXPECT_EQ(out[1], "Target name:   ZK9460");
    EXPECT_EQ(out[2], "Cells:         8");
    EXPECT_EQ(out[3], "Access level:  3");
    EXPECT_EQ(out[4], "Firmware:      5000, build 12");
    EXPECT_EQ(out[5], "");
    EXPECT_THAT(out[6], HasSubstr("File  Name"));
    ASSERT_EQ(out.size(), 7u + 41u) << "every record the device gave, the one named Error too";
    EXPECT_THAT(
        out[7 + 27], ::testing::StartsWith("  27  Command      0x0020  0x0020      4      2       2"));
    EXPECT_THAT(out.back(), ::testing::StartsWith("  40  Error  "));
}

TEST_F(CliTest, TheExitOrderLeavesThePackReadyForTheNextRun)
{
    ASSERT_EQ(run({ "detect" }).status, 0);
    EXPECT_FALSE(sim.pack->commandSetOpen()) << "the command set is closed at the end";
    const auto again = run({ "dir" });
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(lines(again.out).size(), 42u);
}

TEST(CliDetect, FindsTheNameAndCellsOfAnotherTarget)
{
    CliRig rig({ .targetId = 0x1002, .cells = 12 });
    const auto result = rig.run({ "detect" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Target ID:     1002\nTarget name:   ZK9460S12\nCells:         12\n"));
}

TEST(CliDetect, ReportsAnUnknownTargetWithItsIdButStillListsItsDirectory)
{
    CliRig rig({ .targetId = 0x0ABC });
    const auto result = rig.run({ "detect" });
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err,
        HasSubstr("The attached device is reporting an unsupported target application.\nTargetID = 0ABC\n"
                  "Result code 0xEFFF"));
    EXPECT_EQ(rig.run({ "dir" }).status, 0);
}

TEST(CliDetect, StopsAtASealedTargetOrALoader)
{
    // Target 1003 is asked for its level before its configuration is read; the others are
    // judged by the level in their files.
    const std::pair<zvsim::PackOptions, const char*> cases[] {
        { { .targetId = 0x1003, .sealed = true }, "The target device is sealed!\nResult code 0x8004" },
        { { .level = 1 }, "The target device is sealed!\nResult code 0x8004" },
        { { .state = zvsim::PackState::SystemLoader },
            "The hardware needs to be (re)programmed.\nResult code 0xFA99" },
    };
    for (const auto& [options, message] : cases) {
        CliRig rig(options);
        const auto result = rig.run({ "detect" });
        EXPECT_EQ(result.status, 1) << message;
        EXPECT_THAT(result.err, HasSubstr(message));
        EXPECT_EQ(result.out, "");
    }
}

TEST(CliDetect, APasswordOpensASealedPackAsTheLoginDoes)
{
    struct Case {
        zvsim::PackOptions pack;
        std::vector<std::string> line;
        const char* environment; // ZENTAVIA_PASSWORD, or none
        int status;
        const char* said; // on stdout when it ran, else on stderr
    };
    const zvsim::PackOptions sealed { .sealed = true, .password = "opensesa" };
    const zvsim::PackOptions sealed1003 { .targetId = 0x1003, .sealed = true, .password = "opensesa" };
    const Case cases[] {
        { sealed, { "--password", "opensesa", "detect" }, nullptr, 0, "Access level:  2" },
        { sealed1003, { "--password", "opensesa", "detect" }, nullptr, 0, "Access level:  2" },
        { sealed, { "detect" }, "opensesa", 0, "Access level:  2" },
        { sealed, { "--password", "wrong", "detect" }, "opensesa", 1, "Invalid Password!" },
        { sealed, { "detect" }, nullptr, 1, "The target device is sealed!" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.line));
        if (c.environment)
            ::setenv("ZENTAVIA_PASSWORD", c.environment, 1);
        else
            ::unsetenv("ZENTAVIA_PASSWORD");
        CliRig rig(c.pack);
        const auto result = rig.run(c.line);
        ::unsetenv("ZENTAVIA_PASSWORD");
        EXPECT_EQ(result.status, c.status) << result.err;
        EXPECT_THAT(c.status == 0 ? result.out : result.err, HasSubstr(c.said));
    }
}

TEST_F(CliTest, ATargetAtAnotherAddressDoesNotAnswer)
{
    const auto result = run({ "--address", "0x0C", "detect" });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err,
        HasSubstr("Unable to connect to device\nPlease check power and the connections to the hardware.\n"
                  "Result code 0xFFFB"));
}

TEST_F(CliTest, LinkFailuresNameTheirCause)
{
    sim.port.setMissing(1);
    auto result = run({ "detect" });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("Communications with the hardware failed.\n"));

    sim.port.setMissing(1, false);
    sim.port.onOutput = nullptr; // an open port with nothing behind it
    result = run({ "--port", "1", "detect" });
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err,
        HasSubstr("The serial port was opened successifully, but the HLK dongle was not detected.\n\n"
                  "Possible causes:\n"));
}

TEST_F(CliTest, ADevicePathStandsInForTheConfiguredPortForThisRunOnly)
{
    const auto result = run({ "--port", "/dev/ttyPACK", "dir" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(sim.port.commPort(), 1);
    EXPECT_EQ(settings.value("Ports", "COM1"), "/dev/ttyPACK");
    EXPECT_EQ(sim.settings.value("Ports", "COM1"), "") << "the user's settings are not written";
}

} // namespace
} // namespace zv::test
