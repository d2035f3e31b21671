// Parameter access against the simulated pack: levels, capture, the commit flag, look-ups.

#include "support/sim_harness.h"

#include <gtest/gtest.h>

#include <set>

using namespace zv;

namespace {

class ParameterAccessTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(sim.connect()); }

    // The files a GetAllValues pass requested, from the dongle traffic.
    std::set<int> filesRead()
    {
        std::set<int> files;
        const std::string& w = sim.port.written();
        for (auto at = w.find("/T~3C~06~00~"); at != std::string::npos; at = w.find("/T~3C~06~00~", at + 1))
            files.insert(std::stoi(w.substr(at + 12, 2), nullptr, 16));
        return files;
    }

    test::SimHarness sim;
};

} // namespace

TEST_F(ParameterAccessTest, TheUserLevelDecidesWhichFilesAreRead)
{
    auto& d = sim.driver();
    d.Parameters.UserAccessLevel = 0;
    auto* protection = d.GatewayParameters.FindByName("Over Temperature Limit");
    protection->value = DynamicValue("kept");
    sim.port.clearWritten();
    ASSERT_TRUE(d.GetAllValues());
    for (const int file : filesRead())
        EXPECT_EQ(d.Directory.DirectoryElements.fileEntry(file)->readLevel(), 0u) << "file " << file;
    EXPECT_EQ(protection->value, DynamicValue("kept")) << "a level 1 file is not read at level 0";

    d.Parameters.UserAccessLevel = 3;
    ASSERT_TRUE(d.GetAllValues());
    EXPECT_TRUE(protection->value.isNumber());
}

TEST_F(ParameterAccessTest, CaptureReadsFilesWithoutParametersButNotTheDataImage)
{
    auto& d = sim.driver();
    d.Parameters.UserAccessLevel = 3;
    std::set<std::string> keys;
    ASSERT_TRUE(d.GetAllValues([&](const std::string& key, const std::string&) { keys.insert(key); }));
    EXPECT_TRUE(keys.count("File33")) << "the safety log has no parameters but is captured";
    EXPECT_FALSE(keys.count("File34"));
    EXPECT_TRUE(keys.count("File1"));
}

TEST_F(ParameterAccessTest, OnlyCommittedFilesSetTheCommitFlag)
{
    auto& d = sim.driver();
    auto* cells = d.GatewayParameters.FindByName("Expected Number Of Cells");
    auto* entry = d.Directory.DirectoryElements.fileEntry(cells->FileNumber);
    ASSERT_TRUE(entry->FileType() & 0x400);
    entry->setFileType(entry->FileType() & ~0x400u); // as a file written straight to flash
    cells->NewValue = DynamicValue(8.0);
    ASSERT_TRUE(d.WriteParameter("Expected Number Of Cells", 0));
    EXPECT_FALSE(d.Parameters.ParametersWritten);
    entry->setFileType(entry->FileType() | 0x400u);
    cells->NewValue = DynamicValue(8.0);
    ASSERT_TRUE(d.WriteParameter("Expected Number Of Cells", 0));
    EXPECT_TRUE(d.Parameters.ParametersWritten);
}

TEST_F(ParameterAccessTest, FindParameterByNameOrPlace)
{
    auto& d = sim.driver();
    EXPECT_EQ(d.FindParameter("no such parameter", 0).parameter, nullptr);
    const auto byName = d.FindParameter("expected number of cells", 0);
    ASSERT_NE(byName.parameter, nullptr);
    const auto byPlace = d.FindParameter(std::to_string(byName.fileNumber), 0, byName.fileIndex);
    EXPECT_EQ(byPlace.parameter, byName.parameter);
    const auto cell = d.FindParameter("Voltage", 3);
    ASSERT_NE(cell.parameter, nullptr);
    EXPECT_EQ(cell.parameter, d.nodes.Item(1)->NodeParameters.FindByName("Voltage"))
        << "node 1 stands for all";
}

TEST_F(ParameterAccessTest, ReadAllDropsEditsNotYetWrittenWhereAPollKeepsThem)
{
    auto& d = sim.driver();
    d.Parameters.UserAccessLevel = 3;
    auto* cells = d.GatewayParameters.FindByName("Expected Number Of Cells");
    auto* voltage = d.GatewayParameters.FindByName("Pack Voltage");
    clsSMBusParameter* cellSetting = nullptr;
    for (auto& parameter : d.nodes.Item(2)->NodeParameters)
        if (parameter.FileNumber == 6 && !cellSetting)
            cellSetting = &parameter;
    ASSERT_TRUE(cells && voltage && cellSetting);
    for (auto* parameter : { cells, voltage, cellSetting })
        parameter->NewValue = DynamicValue(7.0);

    std::string text;
    ASSERT_TRUE(d.GetFile(voltage->FileNumber, text));
    EXPECT_EQ(voltage->NewValue, DynamicValue(7.0)) << "a poll leaves an edit in place";

    ASSERT_TRUE(d.GetAllValues());
    for (auto* parameter : { cells, voltage, cellSetting })
        EXPECT_TRUE(parameter->NewValue.isEmpty()) << parameter->ParameterName;
    EXPECT_TRUE(cells->value.isNumber());
}
