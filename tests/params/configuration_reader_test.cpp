// The configuration readers on small files written by the test.

#include "params/config_line.h"
#include "params/configuration_reader.h"
#include "platform/testing/scripted_dialogs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <tuple>

namespace zv {
namespace {

namespace fs = std::filesystem;
using platform::Answer;
using platform::Icon;

// Columns 0 to 12, optional labels, then LoggingType, TabOrder, FileNumber, FileIndex.
std::string line(const std::string& name, const std::string& number, const std::string& levels = "1\t2",
    const std::string& scaling = "0.001\t-10.5\t3000", const std::string& fileNumber = "4")
{
    std::string labels;
    for (int i = 1; i <= 16; ++i) {
        labels += "\t\"Bit " + std::to_string(i) + "\"";
    }
    return name + "\t" + levels + "\t" + number + "\t0\t0\t1\t0\t2\t" + scaling + "\t\"mV\"" + labels
        + "\t1\t3\t" + fileNumber + "\t7";
}

class ConfigurationReaderTest : public ::testing::Test {
protected:
    ConfigurationReaderTest()
    {
        folder = fs::temp_directory_path() / ("zv_config_" + std::to_string(::getpid()) + "_" + testName());
        fs::create_directories(folder);
        reader.GatewayConfigFileName = (folder / "Master.cfg").string();
        reader.NodeConfigFileName = (folder / "Cell.cfg").string();
        reader.AlarmConfigFileName = (folder / "Alarm.cfg").string();
        auto& file4 = directory.Add("f0");
        (void)file4;
        for (int i = 1; i <= 4; ++i) {
            directory.Add("f" + std::to_string(i));
        }
        directory.fileEntry(4)->FileAccess = 0x53; // read 3, write 5
    }
    ~ConfigurationReaderTest() override { fs::remove_all(folder); }

    static std::string testName() { return ::testing::UnitTest::GetInstance()->current_test_info()->name(); }

    void write(const std::string& path, const std::string& text)
    {
        std::ofstream(path, std::ios::binary) << text;
    }

    fs::path folder;
    platform::ScriptedDialogs dialogs;
    ParameterList gateway;
    NodeList nodes;
    DirectoryElements directory;
    ConfigurationReader reader { dialogs, gateway, nodes, directory };
};

TEST_F(ConfigurationReaderTest, GatewayFileColumnsQuotesAndRunningNumbers)
{
    write(reader.GatewayConfigFileName, line("Voltage", "0x09") + "\r\n" + line("Status", "0x16") + "\r\n");
    ASSERT_EQ(reader.readConfig(kGatewayConfigFile), kConfigRead);
    ASSERT_EQ(gateway.Count(), 2);
    const auto& p = *gateway.Item(1);
    EXPECT_EQ(p.ParameterName, "Voltage");
    EXPECT_EQ(p.ParameterNumber, "0x09");
    EXPECT_EQ(p.ReadPrivilegeLevel, 1);
    EXPECT_EQ(p.WritePrivilegeLevel, 2);
    EXPECT_EQ(p.VScale, 1);
    EXPECT_EQ(p.SubBlockDataType, 2);
    EXPECT_DOUBLE_EQ(p.SubBlockDataScaling, 0.001);
    EXPECT_DOUBLE_EQ(p.LowerWriteLimit, -10.5);
    EXPECT_DOUBLE_EQ(p.UpperWriteLimit, 3000);
    EXPECT_EQ(p.EngineeringUnitsString, "mV");
    ASSERT_EQ(p.BitString.Count(), 16);
    EXPECT_EQ(p.BitString.Item(16)->data, "Bit 16");
    EXPECT_EQ(p.LoggingType, 1);
    EXPECT_EQ(p.TabOrder, 3);
    EXPECT_EQ(p.FileNumber, 4);
    EXPECT_EQ(p.FileIndex, 7);
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(ConfigurationReaderTest, CommentsSetTheVersionOrAreIgnored)
{
    write(reader.GatewayConfigFileName,
        "# 12\n#NextNode\n" + line("A", "1") + "\n#\t7\t\n#not a number\n" + line("B", "2") + "\n");
    ASSERT_EQ(reader.readConfig(kGatewayConfigFile), kConfigRead);
    EXPECT_EQ(reader.ConfigVersion, 7);
    EXPECT_EQ(gateway.Count(), 2);
    EXPECT_EQ(gateway.Item(2)->ParameterName, "B");
}

TEST_F(ConfigurationReaderTest, QuotesAtBothEndsGoAndAllQuoteLabelsBecomeEmpty)
{
    EXPECT_EQ(stripQuotes("\"mV\""), "mV");
    EXPECT_EQ(stripQuotes("\"\"\"\""), "");
    EXPECT_EQ(stripQuotes("\"5\" cells\""), "5\" cells");
    std::string text = line("A", "1");
    text.replace(text.find("\"Bit 3\""), 7, "\"\"\"\"");
    write(reader.GatewayConfigFileName, text);
    ASSERT_EQ(reader.readConfig(kGatewayConfigFile), kConfigRead);
    EXPECT_EQ(gateway.Item(1)->BitString.Item(3)->data, "");
    EXPECT_EQ(gateway.Item(1)->BitString.Count(), 16) << "empty labels are entries too";
}

TEST_F(ConfigurationReaderTest, ParameterAbove0x23TakesLevelsFromItsDirectoryEntry)
{
    write(reader.GatewayConfigFileName, line("Keeps", "0x23") + "\n" + line("Takes", "0x24") + "\n");
    ASSERT_EQ(reader.readConfig(kGatewayConfigFile), kConfigRead);
    EXPECT_EQ(gateway.Item(1)->ReadPrivilegeLevel, 1);
    EXPECT_EQ(gateway.Item(1)->WritePrivilegeLevel, 2);
    EXPECT_EQ(gateway.Item(2)->ReadPrivilegeLevel, 3);
    EXPECT_EQ(gateway.Item(2)->WritePrivilegeLevel, 5);
}

TEST_F(ConfigurationReaderTest, MissingDirectoryEntryIsResultThreeWithoutABox)
{
    write(reader.GatewayConfigFileName, line("Orphan", "0x40", "1\t2", "1\t0\t1", "9") + "\n");
    EXPECT_EQ(reader.readConfig(kGatewayConfigFile), kConfigObjectMissing);
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(ConfigurationReaderTest, DecimalCommaLocaleReadsInvariantNumbers)
{
    reader.locale.decimalSeparator = ',';
    write(reader.GatewayConfigFileName, line("A", "1") + "\n");
    ASSERT_EQ(reader.readConfig(kGatewayConfigFile), kConfigRead);
    EXPECT_DOUBLE_EQ(gateway.Item(1)->SubBlockDataScaling, 0.001);
    EXPECT_DOUBLE_EQ(gateway.Item(1)->LowerWriteLimit, -10.5);
}

TEST_F(ConfigurationReaderTest, DamagedLinesAreResultFourWithTheirErrorBox)
{
    struct Case {
        std::string text;
        bool packParameterMode;
        const char* title;
        Icon icon;
        std::string message;
    };
    const Case cases[] {
        { line("A", "1") + "\nShort\t1\t2\n", false, "Error", Icon::Critical,
            "Error Description: Subscript out of range in " + reader.GatewayConfigFileName
                + ", line 2: \"Short\t1\t2\"\r\nError Number: 9" },
        { line("A", "1").substr(0, line("A", "1").rfind('\t')) + "\n", false, "Error", Icon::Critical,
            "Error Description: Subscript out of range in " + reader.GatewayConfigFileName + ", line 1: \""
                + line("A", "1").substr(0, 60) + "...\"\r\nError Number: 9" }, // 32 columns: no FileIndex
        { "Unit\t1\t2\t0x10\t0\t0\t1\t0\t2\t1\t0\t10\tmV\n", false, "Error", Icon::Critical,
            "Error Description: Subscript out of range in " + reader.GatewayConfigFileName
                + ", line 1: \"Unit\t1\t2\t0x10\t0\t0\t1\t0\t2\t1\t0\t10\tmV\"\r\nError Number: 9" }, // 13
                                                                                                      // columns
        { line("A", "1", "1\t2", "abc\t0\t1") + "\n", true, "File Error", Icon::None,
            "Error reading the select file. Please select a valid configuration file" },
        { line("A", "1", "256\t2") + "\n", false, "Error", Icon::Critical,
            "Error Description: Overflow in " + reader.GatewayConfigFileName + ", line 1: \""
                + line("A", "1", "256\t2").substr(0, 60) + "...\"\r\nError Number: 6" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        reader.packParameterMode = c.packParameterMode;
        write(reader.GatewayConfigFileName, c.text);
        dialogs.answerMessage(Answer::OK);
        EXPECT_EQ(reader.readConfig(kGatewayConfigFile), kConfigFailed);
        EXPECT_EQ(dialogs.lastShown().title, c.title);
        EXPECT_EQ(dialogs.lastShown().icon, c.icon);
        EXPECT_EQ(dialogs.lastShown().text, c.message);
    }
    EXPECT_EQ(dialogs.shown().size(), std::size(cases)) << "one box a failure";
}

TEST_F(ConfigurationReaderTest, MissingFileShowsTheCriticalBoxWithoutTitle)
{
    reader.packParameterMode = true;
    dialogs.answerMessage(Answer::OK);
    EXPECT_EQ(reader.readConfig(kBothConfigFiles), kConfigFailed);
    ASSERT_EQ(dialogs.shown().size(), 1U) << "the cell file is not tried after a failed gateway file";
    EXPECT_EQ(dialogs.lastShown().title, "");
    EXPECT_EQ(dialogs.lastShown().icon, Icon::Critical);
    EXPECT_EQ(dialogs.lastShown().text,
        "A required configuration file was not found\r\n" + reader.GatewayConfigFileName
            + "\r\nPlease contact Norvale Systems.");
}

TEST_F(ConfigurationReaderTest, CellFileFillsNodeOneAndCopiesToTheOthers)
{
    nodes.Add();
    nodes.Add();
    nodes.Add();
    nodes.Item(3)->NodeParameters.Add("1").ParameterName = "stale";
    write(reader.NodeConfigFileName, line("Cell Voltage", "0x50") + "\n" + line("Cell Temp", "0x51") + "\n");
    EXPECT_EQ(reader.readConfig(kCellConfigFile), kConfigReadCopiesFollow);
    for (int n = 1; n <= 3; ++n) {
        const auto& list = nodes.Item(n)->NodeParameters;
        ASSERT_EQ(list.Count(), 2) << "node " << n;
        EXPECT_EQ(list.Item(2)->ParameterName, "Cell Temp");
        EXPECT_EQ(list.Item(1)->ReadPrivilegeLevel, 1) << "cell parameters keep their columns";
    }
}

TEST_F(ConfigurationReaderTest, CellFileWithOneNodeIsResultZeroAndWithoutNodesThree)
{
    write(reader.NodeConfigFileName, line("Cell Voltage", "0x50") + "\n");
    EXPECT_EQ(reader.readConfig(kCellConfigFile), kConfigObjectMissing);
    nodes.Add();
    EXPECT_EQ(reader.readConfig(kCellConfigFile), kConfigRead);
    EXPECT_EQ(nodes.Item(1)->NodeParameters.Count(), 1);
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(ConfigurationReaderTest, WriteThenReadGivesTheSameModel)
{
    nodes.Add();
    write(reader.GatewayConfigFileName,
        line("Voltage", "0x09") + "\n" + line("Remaining", "0x10", "0\t0", "0.1\t0\t65535") + "\n");
    write(reader.NodeConfigFileName, line("Cell Voltage", "0x50") + "\n");
    ASSERT_EQ(reader.ReadConfigurationFiles(), kConfigRead);
    const ParameterList gatewayBefore = gateway;
    const ParameterList cellBefore = nodes.Item(1)->NodeParameters;

    ASSERT_EQ(reader.writeConfig(kBothConfigFiles), kConfigRead);
    dialogs.answerMessage(Answer::OK);
    EXPECT_EQ(reader.ReadConfigurationFiles(), kConfigFailed)
        << "a written file has no place in a device file (columns 29 to 32)";
    for (const auto& path : { reader.GatewayConfigFileName, reader.NodeConfigFileName }) {
        std::ifstream in(path, std::ios::binary);
        std::string text, written;
        while (std::getline(in, text))
            written += text.substr(0, text.size() - 1) + "\t1\t3\t4\t7\r\n";
        in.close();
        write(path, written);
    }
    ASSERT_EQ(reader.ReadConfigurationFiles(), kConfigRead);

    const auto fields = [](const clsSMBusParameter& p) {
        std::vector<std::string> labels;
        for (const auto& label : p.BitString)
            labels.push_back(label.data);
        return std::tuple(p.ParameterName, p.ParameterNumber, p.ReadPrivilegeLevel, p.WritePrivilegeLevel,
            p.OffsetMultiplier, p.DataType, p.VScale, p.IPscale, p.SubBlockDataType, p.SubBlockDataScaling,
            p.LowerWriteLimit, p.UpperWriteLimit, p.EngineeringUnitsString, labels);
    };
    const auto same = [&](const ParameterList& before, const ParameterList& after) {
        ASSERT_EQ(before.Count(), after.Count());
        for (int i = 1; i <= before.Count(); ++i)
            EXPECT_EQ(fields(*before.Item(i)), fields(*after.Item(i))) << "parameter " << i;
    };
    same(gatewayBefore, gateway);
    same(cellBefore, nodes.Item(1)->NodeParameters);
}

TEST_F(ConfigurationReaderTest, CellFileWrittenWithNextNodeBetweenNodes)
{
    nodes.Add();
    nodes.Add();
    nodes.Item(1)->NodeParameters.Add("1").ParameterName = "One";
    nodes.Item(2)->NodeParameters.Add("1").ParameterName = "Two";
    ASSERT_EQ(reader.writeConfig(kCellConfigFile), kConfigRead);
    std::ifstream in(reader.NodeConfigFileName, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text,
        "One\t0\t0\t1\t0\t0\t0\t0\t0\t0\t0\t0\t\r\n#NextNode\r\nTwo\t0\t0\t1\t0\t0\t0\t0\t0\t0\t0\t0\t\r\n");
}

TEST_F(ConfigurationReaderTest, AlarmLinesThatCountAndLinesThatDoNot)
{
    write(reader.AlarmConfigFileName,
        "' comment\r\n// 1,1\r\n  3,-2  \r\n4,-1\r\n5 , "
        "6\r\n16,1\r\n7,16\r\n8,x\r\n9\r\n\r\n10,11,12\r\n0,15\r\n");
    ASSERT_TRUE(reader.ReadAlarmConfiguration());
    AlarmMapTable expected;
    expected.fill(-1);
    expected[3] = -2;
    expected[5] = 6;
    expected[0] = 15;
    EXPECT_EQ(reader.AlarmMap, expected);
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(ConfigurationReaderTest, AlarmFileMissingResetsTheMapAndShowsTheBox)
{
    reader.AlarmMap.fill(3);
    reader.packParameterMode = true;
    dialogs.answerMessage(Answer::OK);
    EXPECT_FALSE(reader.ReadAlarmConfiguration());
    EXPECT_EQ(reader.AlarmMap[0], -1);
    EXPECT_EQ(dialogs.lastShown().text,
        "A required configuration file was not found\r\n" + reader.AlarmConfigFileName
            + "\r\nPlease contact Norvale Systems.");

    fs::create_directories(reader.AlarmConfigFileName);
    dialogs.answerMessage(Answer::OK);
    EXPECT_FALSE(reader.ReadAlarmConfiguration());
    EXPECT_EQ(dialogs.lastShown().title, "Error") << "the /pp box is for parameter files only";
}

} // namespace
} // namespace zv
