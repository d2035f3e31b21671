// save-config, set, commit, load-config, export-xml and the data-set commands against the
// in-process pack, and their command-line errors.

#include "cli_fixture.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

class PackCommandsTest : public CliTest {
protected:
    PackCommandsTest() { fs::create_directories(folder); }
    ~PackCommandsTest() override { fs::remove_all(folder); }
    std::string path(const std::string& name) const { return (folder / name).string(); }
    zvsim::PackModel& pack() { return sim.pack->model(); }

    fs::path folder = fs::temp_directory_path() / ("zv_pack_commands_" + std::to_string(::getpid()));
};

TEST_F(PackCommandsTest, ASavedConfigurationBringsAChangedValueBack)
{
    auto result = run({ "save-config", path("pack.dat") });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Saved 11 files of the pack configuration to " + path("pack.dat")));
    EXPECT_THAT(result.out, HasSubstr("  file 10 Protection: 22 bytes\n"));

    result = run({ "set", "Cell Over Voltage Limit", "4100" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Cell Over Voltage Limit: 4100 mV (written; commit to keep it)\n");
    ASSERT_EQ(run({ "commit" }).out, "Committed RAM to flash.\n");
    pack().files.restart();
    EXPECT_EQ(pack().files.get("Cell Over Voltage Limit"), 4100u) << "committed to flash";

    result = run({ "load-config", path("pack.dat") });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out,
        "Loaded 11 files from " + path("pack.dat")
            + ", committed, initialized; target ZK9460 detected again with 8 cells.\n");
    pack().files.restart();
    EXPECT_EQ(pack().files.get("Cell Over Voltage Limit"), 4250u);
}

TEST_F(PackCommandsTest, SetWritesTheChosenCellOnly)
{
    const auto result = run({ "set", "Balance Threshold", "33", "--node", "3" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Balance Threshold: 33 mV (written; commit to keep it)\n");
    EXPECT_EQ(pack().files.get("Balance Threshold", 3), 33u);
    EXPECT_EQ(pack().files.get("Balance Threshold", 1), 20u);
    EXPECT_EQ(pack().files.get("Balance Threshold", 4), 20u);
}

TEST_F(PackCommandsTest, DataSetAndExportCommands)
{
    ASSERT_EQ(run({ "save-dataset", path("set.ppcsv") }).status, 0);
    pack().files.set("Charging Current", 1000);
    auto result = run({ "load-dataset", path("set.ppcsv") });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Loaded the data-set " + path("set.ppcsv") + " and committed it.\n");
    EXPECT_THAT(result.err, HasSubstr("Chemistry File Missing: The chemistry file 0100.chem"));
    EXPECT_NE(pack().files.get("Charging Current"), 1000u);

    ASSERT_EQ(run({ "save-config", path("pack.dat") }).status, 0);
    result = run({ "export-xml", path("pack.dat") });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Exported 11 files to " + path("pack.xml") + "; the read-back matches.\n");
    EXPECT_TRUE(fs::exists(path("pack.xml")));
}

TEST_F(PackCommandsTest, TheShippedExamplesLoad)
{
    const std::string shipped = programFolder() + "/Pack Configurations/";
    struct Case {
        std::string file;
        int deviceFile;
        std::vector<std::uint8_t> firstBytes;
    };
    for (const auto& c :
        std::vector<Case> { { shipped + "ZK9460 thermistor map.tmap", 14, { 0x10, 0x0E, 0x80, 0x0C } },
            { programFolder() + "/Auxiliary/ZK9460 Ra override.aux", 15, { 28, 0, 33, 0 } },
            { shipped + "ZK9460 SBData map.sbd", 39, { 9, 0, 1, 9, 1, 8 } } }) {
        auto& bytes = pack().files.bytes(c.deviceFile);
        std::fill(bytes.begin(), bytes.end(), 0xEE);
        const auto result = run({ "load-config", c.file });
        ASSERT_EQ(result.status, 0) << c.file << result.err;
        EXPECT_EQ(result.out.substr(0, 12), "Loaded 1 fil");
        EXPECT_TRUE(
            std::equal(c.firstBytes.begin(), c.firstBytes.end(), pack().files.bytes(c.deviceFile).begin()))
            << c.file;
    }
    pack().files.set("Charging Current", 1000);
    const auto result = run({ "load-dataset", shipped + "ZK9460 defaults.ppcsv" });
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(pack().files.get("Charging Current"), 2500u);
}

TEST_F(PackCommandsTest, FailuresEndWithTheFlowsOwnMessage)
{
    std::ofstream(path("broken.dat")) << "not a pack";
    std::ofstream(path("cell.ppcsv"))
        << "# a cell's value would zero the other cells' sections\r\nBalance Threshold,mV,20\r\n";
    struct Case {
        std::vector<std::string> line;
        int status;
        std::string err;
    };
    const std::vector<Case> cases {
        { { "load-config", path("broken.dat") }, 1,
            "Invalid file format: An error has occurred while reading the file" },
        { { "load-config", path("pack.txt") }, 1,
            "Invalid File Extension: The file pack.txt has the wrong extension." },
        { { "export-xml", path("pack.txt") }, 1, "Invalid File Extension" },
        { { "load-dataset", path("missing.ppcsv") }, 1, "The data-set was not loaded." },
        { { "load-dataset", path("cell.ppcsv") }, 1,
            "Error Parsing File: An error has occurred while parsing the 'ppcsv' file on line number 2." },
        { { "set", "No Such Parameter", "1" }, 1, "There is no parameter named \"No Such Parameter\"." },
        { { "set", "Cell Over Voltage Limit" }, 2,
            "Usage: zentavia-cli [options] set NAME VALUE [--node N]" },
        { { "save-config", "a.dat", "--relearn" }, 2, "--relearn belongs to load-config." },
        { { "commit", "--node", "2" }, 2, "--node belongs to get and set." },
    };
    for (const auto& c : cases) {
        const auto result = run(c.line);
        EXPECT_EQ(result.status, c.status) << c.line[0];
        EXPECT_THAT(result.err, HasSubstr(c.err)) << c.line[0];
    }
}

} // namespace
} // namespace zv::test
