#include "monitor/list_values.h"
#include "monitor/live_rows.h"
#include "monitor/panel_sizes.h"
#include "monitor_fixture.h"

#include <gtest/gtest.h>

#include <array>

namespace zv {
namespace {

using platform::ui::ListView;
using test::MonitorRig;
using test::MonitorTarget;

int visibleGatewayParameters(clsCellWeft& driver, int level)
{
    int count = 0;
    for (const auto& p : driver.GatewayParameters)
        count += p.ReadPrivilegeLevel <= level && p.TabOrder < 11 ? 1 : 0;
    return count;
}

class ListsForTarget : public ::testing::TestWithParam<MonitorTarget> { };

TEST_P(ListsForTarget, LoadFillsCellsTabsAndParameterLists)
{
    MonitorRig rig(GetParam());
    ASSERT_TRUE(rig.load());
    frmMain& f = *rig.form;
    auto& driver = rig.h.driver();
    const int cells = driver.nodes.Count();
    ASSERT_GT(cells, 0);

    // One checked row per cell, then "n/a".
    ASSERT_EQ(f.lvNodes.rowCount(), cells + 1);
    EXPECT_TRUE(f.lvNodes.checkBoxes());
    EXPECT_EQ(f.lvNodes.rows().front().key, "n1");
    EXPECT_EQ(f.lvNodes.rows().front().icon, "Node");
    EXPECT_TRUE(f.lvNodes.rows().front().checked);
    EXPECT_EQ(f.lvNodes.rows().back().text, "n/a");
    EXPECT_EQ(f.lvGateway.columns().at(2).header, "Max Temp");
    EXPECT_EQ(f.lvGateway.rows().at(0).key, "gateway");
    EXPECT_EQ(f.fraStatus.caption(), "Bit Encoded Data");

    EXPECT_EQ(f.SSTab1.tabs().at(1).caption, "Cell Config");
    EXPECT_EQ(f.SSTab.tabs().at(0).caption, "Dynamic");
    EXPECT_EQ(f.SSTab.tabs().at(10).caption, "Advanced");
    EXPECT_EQ(f.cmbPollRate.listCount(), 20);
    EXPECT_EQ(f.cmbPollRate.items().back(), "20 Sec");
    EXPECT_EQ(f.cmbPollRate.selectedText(), "2 Sec");

    ASSERT_TRUE(driver.GetAllValues());
    rig.monitor->tabs.LoadTabs();
    int rows = 0;
    for (const auto& list : f.lvParameters)
        rows += list.rowCount();
    EXPECT_EQ(rows, visibleGatewayParameters(driver, 3));
    const auto& first = f.lvParameters[0].rows().at(0);
    EXPECT_EQ(first.key, "P1");
    EXPECT_EQ(first.text.back(), ' ');
    EXPECT_FALSE(first.subItems.at(0).empty());
    EXPECT_TRUE(f.lvParameters[0].columns().at(1).header.starts_with("Value [Static Data Captured @ "));
    EXPECT_TRUE(f.SSTab.tabs().at(10).visible);

    rig.monitor->tabs.NodeGrid_Load(cells);
    EXPECT_EQ(f.lvProperties[0].columns().at(0).header, "Cell " + std::to_string(cells));
    EXPECT_GT(f.lvProperties[0].rowCount(), 0);
    EXPECT_EQ(f.lvProperties[0].rows().at(0).text, "Voltage ");
}

INSTANTIATE_TEST_SUITE_P(Targets, ListsForTarget, ::testing::Values(MonitorTarget {}, test::kTarget1002),
    [](const auto& info) { return info.param.id; });

TEST(ParameterTabs, LowLevelSeesOnlyLocksAndNoAdvancedTabAndStripedRows)
{
    MonitorRig rig({}, 1);
    ASSERT_TRUE(rig.load());
    frmMain& f = *rig.form;
    rig.h.globals.settings.AlternateRowColor = 0xABCDEF;
    rig.monitor->tabs.LoadTabs();
    bool anyRow = false;
    for (const auto& list : f.lvParameters) {
        for (std::size_t i = 0; i < list.rows().size(); ++i) {
            anyRow = true;
            EXPECT_EQ(list.rows()[i].icon, "lock") << list.rows()[i].text;
            EXPECT_EQ(list.rows()[i].backColor, i % 2 ? 0xABCDEF : 0xFFFFFF);
        }
    }
    EXPECT_TRUE(anyRow);
    EXPECT_FALSE(f.SSTab.tabs().at(10).visible);
}

TEST(LiveRows, CellStatusColoursHighBeforeLowAndNorthBeforeSouth)
{
    MonitorRig rig;
    ASSERT_TRUE(rig.load());
    auto& driver = rig.h.driver();
    const DisplaySettings& display = driver.Parameters.display;
    ListView& nodes = rig.form->lvNodes;
    const std::array<long, 4> words { 4 | 8 | 1 | 2, 8 | 32 | 2, 16, 0 };
    for (std::size_t i = 0; i < words.size(); ++i) {
        auto& p = driver.nodes.Item(static_cast<int>(i) + 1)->NodeParameters;
        p.Item(1)->value = 3700;
        p.Item(2)->value = 2981;
        p.Item(6)->value = static_cast<double>(words[i]);
    }
    showCellRows(nodes, driver.nodes, display);

    const auto style = [&](const char* key, int column) { return nodes.row(key)->subStyles.at(column - 1); };
    EXPECT_EQ(nodes.row("n1")->subItems.at(0), "3700 mV");
    EXPECT_EQ(style("n1", 1), (platform::ui::SubItemStyle { "ErrorHi", 0x0000FF }));
    EXPECT_EQ(nodes.row("n1")->subItems.at(2), "North");
    EXPECT_EQ(style("n1", 3).icon, "pNorth");
    EXPECT_EQ(style("n2", 1).icon, "ErrorLo");
    EXPECT_EQ(style("n2", 2).icon, "ErrorLo");
    EXPECT_EQ(nodes.row("n2")->subItems.at(2), "South");
    EXPECT_EQ(style("n3", 2), (platform::ui::SubItemStyle { "ErrorHi", 0x0000FF }));
    EXPECT_EQ(style("n3", 1), (platform::ui::SubItemStyle { "", 0x000000 }));
    EXPECT_EQ(nodes.row("n4")->subItems.at(2), "None");
    EXPECT_EQ(style("n4", 3).icon, "");
}

TEST(PanelSizes, CellColumnsShareTheWidthAndTheLastTakesTheRest)
{
    ListView list("lvNodes");
    list.setColumns({ { "Cell" }, { "Voltage" }, { "Temp" }, { "Pump" } });
    spreadColumns(list, 1003);
    std::vector<int> widths;
    for (const auto& column : list.columns())
        widths.push_back(column.widthTwips);
    EXPECT_EQ(widths, (std::vector<int> { 250, 250, 250, 253 }));
}

TEST(PanelSizes, CollapseFoldsThePanelAwayAndBack)
{
    MonitorRig rig;
    frmMain& f = *rig.form;
    f.cmdCollapseCells.click();
    EXPECT_FALSE(f.lvNodes.visible());
    EXPECT_FALSE(f.lvProperties[2].visible());
    EXPECT_EQ(f.cmdCollapseCells.caption(), "Expand Panel");
    EXPECT_TRUE(f.lvGateway.visible());
    f.cmdCollapseCells.click();
    EXPECT_TRUE(f.lvNodes.visible());
    EXPECT_EQ(f.cmdCollapseCells.caption(), "Collapse Panel");
}

TEST(ListValues, ErrorAndEmptyValuesStayAndBitEncodedShowsHex)
{
    clsSMBusParameter p;
    DisplaySettings display;
    p.SubBlockDataType = 2;
    p.value = "#Error";
    EXPECT_EQ(storedValueText(p, display, 1), "#Error");
    p.value = DynamicValue();
    EXPECT_EQ(storedValueText(p, display, 1), "");
    p.value = 300;
    p.EngineeringUnitsString = "K";
    EXPECT_EQ(tabValueMode(p), 0);
    p.EngineeringUnitsString = "mV";
    EXPECT_EQ(tabValueMode(p), 1);
    p.SubBlockDataType = 0;
    EXPECT_EQ(storedValueText(p, display, 1), p.ToString(3, display));
    p.NewValue = "";
    EXPECT_FALSE(hasNewValue(p));
    p.NewValue = "0x10";
    EXPECT_EQ(editedValueText(p, display), p.ToString(4, display));
}

} // namespace
} // namespace zv
