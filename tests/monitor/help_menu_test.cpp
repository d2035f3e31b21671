#include "core/temp_folder.h"
#include "main_form_fixture.h"
#include "monitor/help_links.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace zv {
namespace {

using platform::Answer;

std::vector<std::string> captions(const MenuNode& menu)
{
    std::vector<std::string> texts;
    for (const auto& child : menu.children)
        texts.push_back(
            child.item->name() + "=" + child.item->caption() + (child.item->visible() ? "" : " (hidden)"));
    return texts;
}

const MenuNode& subMenu(const std::vector<MenuNode>& nodes, const std::string& name)
{
    const MenuNode* found = nullptr;
    forEachMenuNode(nodes, [&](const MenuNode& n) {
        if (n.item->name() == name)
            found = &n;
    });
    return *found;
}

class HelpMenuTest : public test::MainFormTest {
protected:
    testing::TempFolder folder;
    std::string documents = folder.file("Documentation");
};

TEST_F(HelpMenuTest, DocumentsAndUtilitiesComeFromTheFolders)
{
    std::filesystem::create_directories(documents);
    for (const char* name :
        { "Documentation/Guide.pdf", "Documentation/addmenu.txt", "Documentation/Release Notes.txt",
            "ToolA.exe", "toolb.exe", "Other.EXE", "uninst.exe", "readme.txt" })
        folder.write(name, "x");
    std::filesystem::create_directories(folder.file("Documentation/Archive"));
    frmMain& form = makeForm(folder.path().string());

    EXPECT_EQ(captions(subMenu(form.menuBar(), "mnuHelp")),
        (std::vector<std::string> { "mnuHelp_Contents=How to Add Help Documents",
            "mnuHelp_Contents(1)=Guide.pdf", "mnuHelp_Contents(2)=Release Notes.txt",
            "mnuHelp_Contents(3)=addmenu.txt (hidden)", "mnuHelp_Contents(4)=-",
            "mnuPP=Norvale Systems Online", "mnuInformationOnline=Information Online",
            "mnuTechnicalReferenceManual=Technical Reference Manual Online", "mnuAboutSep=-",
            "mnuAbout=About Zentavia" }));
    EXPECT_EQ(captions(subMenu(form.menuBar(), "mnuAddOns")),
        (std::vector<std::string> { "mnuAddUtility=ToolA", "mnuAddUtility(1)=toolb" }));

    form.mnuHelp_Contents.click();
    static_cast<platform::ui::MenuItem*>(form.findControl("mnuHelp_Contents(2)"))->click();
    static_cast<platform::ui::MenuItem*>(form.findControl("mnuAddUtility(1)"))->click();
    EXPECT_EQ(desktop.opened,
        (std::vector<std::string> {
            documents + "/addmenu.txt", documents + "/Release Notes.txt", folder.file("toolb.exe") }));
}

TEST_F(HelpMenuTest, WithoutUtilitiesTheOneEntryReadsEmptyAndDoesNothing)
{
    frmMain& form = makeForm(folder.path().string());
    EXPECT_EQ(form.mnuAddUtility.caption(), "Empty");
    EXPECT_TRUE(form.mnuAddOns.enabled()) << "the menu opens to show that there is nothing";
    EXPECT_TRUE(form.mnuAddUtility.enabled());
    form.mnuAddUtility.click();
    EXPECT_TRUE(desktop.opened.empty());
    EXPECT_TRUE(h.dialogs.shown().empty());
    // The Help list still closes with its separator.
    EXPECT_EQ(subMenu(form.menuBar(), "mnuHelp").children[1].item->caption(), "-");
}

TEST_F(HelpMenuTest, AFileThatCannotBeOpenedIsExplained)
{
    frmMain& form = makeForm(folder.path().string());
    h.dialogs.answerMessage(Answer::OK);
    h.dialogs.answerMessage(Answer::OK);
    form.mnuHelp_Contents.click(); // addmenu.txt is missing, and its folder too
    EXPECT_EQ(h.dialogs.lastShown().title, "File Error");
    EXPECT_EQ(h.dialogs.lastShown().text, "The specified path was not found.");
    EXPECT_EQ(form.sbStatusBar.panelText("Info"), "The specified path was not found.");
    EXPECT_TRUE(desktop.opened.empty());

    std::filesystem::create_directories(documents);
    folder.write("Documentation/addmenu.txt", "x");
    desktop.starts = false;
    form.mnuHelp_Contents.click();
    EXPECT_EQ(h.dialogs.lastShown().text.rfind("There is no application associated", 0), 0u);
}

TEST_F(HelpMenuTest, TheShippedProgramFolderHasTheDocumentOfTheFirstEntry)
{
    frmMain& form = makeForm();
    form.mnuHelp_Contents.click();
    ASSERT_EQ(desktop.opened.size(), 1u) << (h.dialogs.shown().empty() ? "" : h.dialogs.lastShown().text);
    EXPECT_TRUE(std::filesystem::is_regular_file(desktop.opened[0])) << desktop.opened[0];
    EXPECT_TRUE(h.dialogs.shown().empty());
}

TEST_F(HelpMenuTest, TargetLinksAndTheMissingDocumentQuestion)
{
    frmMain& form = makeForm();
    h.globals.gTargetName = "ZK9460";
    h.globals.gTargetURL = "https://zentavia.example/targets/ZK9460";
    form.mnuInformationOnline.click();
    form.mnuPP.click();
    EXPECT_EQ(desktop.opened,
        (std::vector<std::string> { "https://zentavia.example/targets/ZK9460", kMakerHomePage }));

    desktop.opened.clear();
    h.dialogs.answerMessage(Answer::No);
    h.dialogs.answerMessage(Answer::Yes);
    form.OpenRefLink(); // no reference manual for this target
    EXPECT_TRUE(desktop.opened.empty());
    form.OpenRefLink();
    EXPECT_EQ(desktop.opened, (std::vector<std::string> { kMakerHomePage }));
    const auto& box = h.dialogs.lastShown();
    EXPECT_EQ(box.title, "Information Not Found");
    EXPECT_EQ(box.buttons, platform::Buttons::YesNo);
    EXPECT_EQ(box.icon, platform::Icon::Question);
    EXPECT_EQ(
        box.text.rfind(
            "The requested documentation for ZK9460 is not available in this version of Zentavia.\r\n", 0),
        0u);
    EXPECT_TRUE(box.text.ends_with("\r\n\r\nWould you like to check now?"));

    desktop.starts = false;
    h.dialogs.answerMessage(Answer::OK);
    form.mnuPP.click();
    EXPECT_EQ(h.dialogs.lastShown().title, "Error");
    EXPECT_EQ(h.dialogs.lastShown().text.rfind("Error: ", 0), 0u);
}

} // namespace
} // namespace zv
