// The level passwords dialog against the simulated pack: the rows up to the user's level, one
// row edited at a time, the records written back, and a read that fails.

#include "access_rig.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

std::vector<std::uint8_t> record(const test::AccessRig& rig, int index)
{
    const auto& bytes = rig.sim.pack->model().files.bytes(16);
    return { bytes.begin() + index * 8, bytes.begin() + index * 8 + 8 };
}

std::vector<std::uint8_t> recordOf(std::string_view text)
{
    const PasswordBytes bytes = passwordBytes(text);
    return { bytes.begin(), bytes.end() };
}

class UserAccessLevelTest : public ::testing::Test {
protected:
    void open(int level)
    {
        rig = std::make_unique<test::AccessRig>(test::packOptions(0x1001, false, level));
        rig->connect("ZK9460");
        rig->level() = level;
        auto& hooks = rig->access.mainWindow();
        hooks.IsTheDeviceWired = [] { return true; };
        hooks.SetMousePointer = [this](int pointer) { pointers.push_back(pointer); };
        hooks.showModal = [this](platform::ui::Window& window) {
            modal = window.name();
            window.show();
        };
        rig->access.mnuAccessLevel_Click();
    }
    frmUserAccessLevel& form() { return rig->access.userAccessLevel(); }
    [[nodiscard]] int rowsShown()
    {
        int rows = 0;
        for (int i = 0; i < kPasswordRows; ++i) {
            const bool shown = form().lvlLevel[i].visible();
            EXPECT_EQ(form().txtPassword[i].visible(), shown);
            EXPECT_EQ(form().cmdEdit[i].visible(), shown);
            rows += shown;
        }
        return rows;
    }

    std::unique_ptr<test::AccessRig> rig;
    std::string modal;
    std::vector<int> pointers;
};

} // namespace

TEST_F(UserAccessLevelTest, LevelTwoSeesAndRewritesItsOwnAndTheLowerPassword)
{
    open(2);
    EXPECT_EQ(modal, "frmUserAccessLevel");
    EXPECT_EQ(form().caption(), "Zentavia - User Access Level Password List");
    EXPECT_EQ(rowsShown(), 2);
    EXPECT_EQ(form().lvlLevel[1].caption(), "Level 2");
    EXPECT_EQ(form().txtPassword[0].text(), "user");
    EXPECT_EQ(form().txtPassword[1].text(), "engineer");

    form().cmdEdit[1].click();
    EXPECT_FALSE(form().txtPassword[0].enabled());
    EXPECT_TRUE(form().txtPassword[1].enabled());
    form().txtPassword[1].userEdit("longer than eight");
    form().cmdEdit[0].click();
    EXPECT_FALSE(form().txtPassword[1].enabled()) << "one row at a time";
    form().txtPassword[0].userEdit("");

    const auto level3 = record(*rig, 2);
    form().btnOk.click();
    EXPECT_EQ(record(*rig, 0), std::vector<std::uint8_t>(8, 0)) << "an empty field is eight zeros, not unset";
    EXPECT_EQ(record(*rig, 1), recordOf("longer t"));
    EXPECT_EQ(record(*rig, 2), level3) << "nothing above the user's level is written";
    EXPECT_EQ(pointers, (std::vector<int> { 11, 0 }));
    EXPECT_EQ(rig->tabLoads, 1) << "the level is read again";
    EXPECT_FALSE(form().loaded());

    ASSERT_TRUE(LoginWithPassword(rig->access.services(), passwordBytes("longer t")));
    EXPECT_EQ(rig->packLevel(), 2) << "the new password opens level 2";
}

TEST_F(UserAccessLevelTest, LevelThreeSeesAllThreeAndCancelWritesNothing)
{
    open(3);
    EXPECT_EQ(rowsShown(), 3);
    EXPECT_EQ(form().txtPassword[2].text(), "") << "the unset record reads as an empty text";
    const auto before = rig->sim.pack->model().files.bytes(16);
    form().cmdEdit[2].click();
    form().txtPassword[2].userEdit("top");
    form().btnCancel.click();
    EXPECT_FALSE(form().loaded());
    EXPECT_EQ(rig->sim.pack->model().files.bytes(16), before);
    EXPECT_EQ(rig->tabLoads, 0);
}

TEST_F(UserAccessLevelTest, ReadFailureDisablesOkUntilTheNextOpening)
{
    open(2);
    form().btnCancel.click();
    rig->sim.pack->faults().forcedStatus = 3;
    rig->sim.dialogs.answerMessage(platform::Answer::OK);
    rig->access.mnuAccessLevel_Click();
    const auto& box = rig->sim.dialogs.lastShown();
    EXPECT_EQ(box.text, "Cannot read device");
    EXPECT_EQ(box.title, "Error");
    EXPECT_EQ(box.icon, platform::Icon::Critical);
    EXPECT_FALSE(form().btnOk.enabled());
    EXPECT_EQ(rowsShown(), 0);

    form().btnCancel.click();
    rig->access.mnuAccessLevel_Click();
    EXPECT_TRUE(form().btnOk.enabled());
    EXPECT_EQ(rowsShown(), 2);
}
