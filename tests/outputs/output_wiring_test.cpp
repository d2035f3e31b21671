// The output commands on the main window's menu: the entries become available and run their
// commands.

#include "../monitor/main_form_fixture.h"

#include "outputs/output_commands.h"
#include "platform/ui/list_view.h"
#include "platform/ui/tab_strip.h"

using namespace zv;

namespace {

class OutputWiringTest : public test::MainFormTest {
protected:
    OutputServices services()
    {
        OutputServices s { h.globals, h.settings, h.dialogs, h.loop, test::programFolder() };
        s.views = [this] {
            ParameterViews v;
            v.packTabs = &tabs;
            v.packLists = { &list };
            return v;
        };
        return s;
    }

    platform::ui::TabStrip tabs { "SSTab" };
    platform::ui::ListView list { "lvParameters" };
};

} // namespace

TEST_F(OutputWiringTest, EntriesBecomeAvailableAndRunTheirCommands)
{
    frmMain& form = makeForm();
    for (auto* item : { &form.mnuSaveAsReadOnly, &form.mnuPreferences, &form.mnuPrintLvParameters })
        EXPECT_FALSE(form.isWired(*item)) << item->name();

    std::vector<std::string> shown;
    OutputCommands commands(
        services(), [&](platform::ui::Window& window) { shown.push_back(window.name()); });
    wireOutputCommands(form, commands);
    for (auto* item : { &form.mnuSaveAsReadOnly, &form.mnuSaveAsWriteOnly, &form.mnuSaveAsAllParameters,
             &form.mnuPreferences, &form.mnuSaveCSVFile, &form.mnuPrintLvParameters })
        EXPECT_TRUE(item->enabled()) << item->name();

    form.mnuPreferences.click();
    EXPECT_EQ(shown, (std::vector<std::string> { "frmPreferences" }));

    // Print and CSV act on the shown tab; with no tab there is nothing to do.
    form.mnuPrintLvParameters.click();
    tabs.setTabs({ { "t0", "Pack Status" } });
    list.addRow({ "P1", "Current ", "readwrite", { "5 mA" } });
    h.dialogs.answerPrint(true);
    form.mnuPrintLvParameters.click();
    EXPECT_EQ(h.dialogs.lastShown().text, "Parameters - Pack Status");
    EXPECT_EQ(h.dialogs.lastShown().printedLines.back(), "Current\t5 mA");

    h.dialogs.answerSaveFile(std::nullopt);
    form.mnuSaveCSVFile.click();
    EXPECT_EQ(h.dialogs.lastShown().file.fileName, "Pack Status.csv");

    h.dialogs.answerSaveFile(std::nullopt);
    form.mnuSaveAsAllParameters.click();
    EXPECT_EQ(h.dialogs.lastShown().file.filter, "Pack Summary Files (*.csv)|*.csv|");
    EXPECT_EQ(h.dialogs.pendingAnswers(), 0u);
}
