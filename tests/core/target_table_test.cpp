#include "core/globals.h"
#include "core/target_table.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

constexpr const char* kIni
    = "[Setup]\nNumberOfTargets=2\n"
      "[T1]\nID=1001\nName=ZK9460\nMCFG=m.cfg\nCCFG=c.cfg\nAverageVoltages=0\nFS=4097\n"
      "[T2]\nID=1002\nName=ZK9460S12\nMCFG=m2.cfg\nAverageVoltages=1\nURL=u\nREF=r\n"
      "[T3]\nID=1003\nName=Beyond the count\n";

TEST(TargetTable, OnlyTheCountedRecordsTakePart)
{
    testing::TempFolder folder;
    const auto table = readTargetTable(folder.write("Zentavia.ini", kIni));
    EXPECT_EQ(table.size(), 2u);
    EXPECT_FALSE(findTargetById(table, "1003"));
    EXPECT_FALSE(findTargetById(table, "1001 ")) << "ids compare as text";
    EXPECT_EQ(findTargetByName(table, "ZK9460S12")->section, "T2");
    EXPECT_TRUE(
        readTargetTable(folder.write("empty.ini", "[Setup]\nNumberOfTargets=0\n[T1]\nID=1001\n")).empty());
    // A missing program file is said as such, not taken for an unknown target.
    EXPECT_EQ(targetTableProblem(folder.file("Zentavia.ini")), "");
    EXPECT_EQ(targetTableProblem(folder.file("gone.ini")),
        "The program file " + folder.file("gone.ini") + " was not found; the targets cannot be identified.");
}

TEST(TargetTable, TheMatchSetsTheTargetGlobalsAndFiles)
{
    testing::TempFolder folder;
    const auto target = findTargetById(readTargetTable(folder.write("Zentavia.ini", kIni)), "1002");
    ASSERT_TRUE(target);
    AppGlobals globals;
    applyTarget(globals, *target);
    EXPECT_EQ(globals.gTargetSection, "T2");
    EXPECT_EQ(globals.gTargetName, "ZK9460S12");
    EXPECT_EQ(globals.gTargetKey, "Software\\Norvale Systems\\Zentavia 3\\Settings\\Targets\\ZK9460S12");
    EXPECT_TRUE(globals.gAverageVoltages);
    EXPECT_EQ(globals.gTargetURL, "u");
    EXPECT_EQ(gatewayConfigFile(*target, "/opt/z"), "/opt/z/Configuration Files/ZK9460S12/m2.cfg");
}

TEST(TargetTable, IdTextIsTheLastFourHexDigits)
{
    EXPECT_EQ(targetIdText(0x1001), "1001");
    EXPECT_EQ(targetIdText(0xabc), "0ABC");
    EXPECT_EQ(targetIdText(0x12345), "2345");
}

} // namespace
} // namespace zv
