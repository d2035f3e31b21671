// The log definition tool on the loaded main window: its arithmetic, pages, limit and the file it
// generates, which then loads and downloads like any definition.

#include "log_rig.h"
#include "logging/frm_log_wizard.h"
#include "logging/log_definition_loader.h"
#include "logging/log_wizard_rules.h"
#include "monitor/monitor_fixture.h"
#include "platform/atomic_file.h"

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::ElementsAre;

TEST(LogWizardRules, LettersElementsAndKeys)
{
    const std::pair<int, const char*> letters[] = { { 0, "H" }, { 7, "H" }, { 1, "U" }, { 2, "U" },
        { 4, "U" }, { 8, "U" }, { 3, "S" }, { 5, "S" }, { 6, "STR" }, { 9, "STR" }, { 255, "STR" } };
    for (const auto& [type, letter] : letters)
        EXPECT_STREQ(wizardTypeLetter(type), letter) << type;
    EXPECT_EQ(wizardElement(2, 3, 8), 18);
    EXPECT_EQ(wizardElement(5, 1, 8), 5);
    EXPECT_EQ(wizardCellKey(" Cell Status ", 12), "Cell Status(12)");
    const auto key = parseWizardCellKey("Ra (x)(7)");
    ASSERT_TRUE(key);
    EXPECT_EQ(key->name, "Ra (x)");
    EXPECT_EQ(key->cell, 7);
    EXPECT_FALSE(parseWizardCellKey("Pack Voltage"));
    EXPECT_FALSE(parseWizardCellKey("Odd(x)"));
}

class LogWizardTest : public ::testing::Test, public MonitorRig {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(load());
        monitor->tabs.LoadTabs();
        wizard.show();
    }

    std::vector<std::string> sourceKeys() const
    {
        std::vector<std::string> keys;
        for (const auto& row : wizard.ListSource.rows())
            keys.push_back(row.key);
        return keys;
    }
    void setLevel(int level) { h.driver().Parameters.UserAccessLevel = level; }

    frmLogWizard wizard { LogWizardServices { *form, h.driver(), h.dialogs, h.settings, programFolder(),
        [this] { return h.driver().Parameters.UserAccessLevel; } } };
};

TEST_F(LogWizardTest, CellPagesListCellsInOrderAndTheLevelGuardsTheAdvancedPage)
{
    EXPECT_EQ(wizard.lblTab.caption(), "Cell Dynamic");
    EXPECT_EQ(wizard.lblCounter.caption(), "Max = 0/29");
    const auto keys = sourceKeys();
    const int perCell = wizard.ParametersInFile4;
    ASSERT_GT(perCell, 1);
    ASSERT_EQ(static_cast<int>(keys.size()), perCell * h.driver().nodes.Count());
    EXPECT_EQ(keys[0], "Voltage(1)");
    EXPECT_EQ(keys[1], "Temperature(1)");
    EXPECT_EQ(keys[static_cast<std::size_t>(perCell)], "Voltage(2)");

    wizard.turnPage(-1);
    EXPECT_EQ(wizard.lblTab.caption(), "Cell History");
    wizard.turnPage(-1);
    EXPECT_EQ(wizard.lblTab.caption(), "Cell Advanced");
    wizard.turnPage(-1);
    EXPECT_EQ(wizard.PageIndex, -3) << "below the first page stays there";

    setLevel(1);
    wizard.reset();
    wizard.turnPage(-1);
    wizard.turnPage(-1);
    EXPECT_EQ(wizard.lblTab.caption(), "Cell History");
    EXPECT_EQ(wizard.PageIndex, -2);
    for (int i = 0; i < 20; ++i)
        wizard.turnPage(1);
    EXPECT_NE(wizard.lblTab.caption(), "Advanced") << "level 1 never reaches it";
    setLevel(3);
    for (int i = 0; i < 20; ++i)
        wizard.turnPage(1);
    EXPECT_EQ(wizard.PageIndex, wizard.PageCount - 1) << "past the last page stays there";
}

TEST_F(LogWizardTest, TwentyNinthAcceptedThirtiethRefusedAndLoggedRowsStayOffTheirPage)
{
    const auto keys = sourceKeys();
    ASSERT_GE(keys.size(), 31u);
    for (std::size_t i = 0; i < 29; ++i)
        wizard.ListSource.userDoubleClick(keys[i]);
    EXPECT_EQ(wizard.LoggedCount, 29);
    EXPECT_EQ(wizard.lblCounter.caption(), "Max = 29/29");
    EXPECT_FALSE(wizard.moveToLogged(keys[29])) << "the drop is refused as the double click is";
    wizard.ListSource.userDoubleClick(keys[29]);
    EXPECT_EQ(wizard.ListDestination.rowCount(), 29);
    EXPECT_TRUE(wizard.ListSource.row(keys[29]));

    // Away and back: the logged ones are not offered again.
    wizard.turnPage(1);
    wizard.turnPage(-1);
    EXPECT_FALSE(wizard.ListSource.row(keys[0]));
    EXPECT_TRUE(wizard.ListSource.row(keys[29]));

    // Back from the logged list: onto its own page, the counter down.
    wizard.ListDestination.userDoubleClick(keys[0]);
    EXPECT_EQ(wizard.LoggedCount, 28);
    EXPECT_TRUE(wizard.ListSource.row(keys[0]));
    wizard.turnPage(1);
    wizard.ListDestination.userDoubleClick(keys[1]);
    EXPECT_FALSE(wizard.ListSource.row(keys[1])) << "not on the tab page shown";
}

TEST_F(LogWizardTest, GeneratedFileLoadsAndDownloads)
{
    h.dialogs.answerMessage(platform::Answer::OK);
    wizard.generate();
    EXPECT_EQ(
        h.dialogs.lastShown().text, "Please add at least one parameter to the 'Logged Parameters' list.");

    wizard.ListSource.userDoubleClick("Temperature(3)");
    for (int i = 0; i < 20 && (wizard.PageIndex < 0 || wizard.ListSource.rowCount() == 0); ++i)
        wizard.turnPage(1); // the first gateway tab with parameters
    ASSERT_GE(wizard.ListSource.rowCount(), 1);
    const std::string gatewayKey = wizard.ListSource.rows().front().key;
    wizard.ListSource.userDoubleClick(gatewayKey);

    LogRig files;
    const std::string path = (files.folder / "wizard.dlog").string();
    h.dialogs.answerSaveFile(path);
    h.dialogs.answerMessage(platform::Answer::OK);
    wizard.generate();
    EXPECT_EQ(h.dialogs.lastShown().text, "A new log definition file has been created.");

    const auto* temperature = h.driver().nodes.Item(3)->NodeParameters.FindByName("Temperature");
    const auto* gateway = h.driver().GatewayParameters.FindByName(gatewayKey);
    ASSERT_TRUE(temperature && gateway);
    EXPECT_EQ(readWholeFile(path),
        "Tick\t0\t0\tU\r\nTemperature(3)\t4\t"
            + std::to_string(temperature->FileIndex + 2 * wizard.ParametersInFile4) + "\t"
            + wizardTypeLetter(temperature->SubBlockDataType) + "\r\n" + wizard.ListDestination.rows()[1].text
            + "\t" + std::to_string(gateway->FileNumber) + "\t" + std::to_string(gateway->FileIndex) + "\t"
            + wizardTypeLetter(gateway->SubBlockDataType) + "\r\n");

    LogDefinitionLoader loader({ h.driver(), h.dialogs, h.loop });
    EXPECT_TRUE(loader.LoadDynamicLogDefinition(path));
    EXPECT_EQ(h.driver().Directory.LogFile.FileCount, 3);
    EXPECT_EQ(h.driver().Directory.LogFile.Item("2")->FileLabel, "Temperature(3)");
}

} // namespace
} // namespace zv::test
