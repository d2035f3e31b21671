#include "monitor_fixture.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using platform::Answer;
using platform::ui::ListView;
using test::MonitorRig;

class ParameterEditsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(rig.load());
        ASSERT_TRUE(rig.h.driver().GetAllValues());
        rig.monitor->tabs.LoadTabs();
        sleep = rig.h.driver().GatewayParameters.FindByName("Sleep Current");
        ASSERT_NE(sleep, nullptr);
        edits.hooks.editParameter = [this](clsSMBusParameter& p, int node) {
            edited.push_back(p.ParameterName + "@" + std::to_string(node));
            p.NewValue = typed;
            return EditResult { autoWrite };
        };
        rig.monitor->poll.actions[static_cast<std::size_t>(PendingCommand::Commit)] = [this] { ++commits; };
        rig.form->popupMenu = [this](platform::ui::MenuItem& menu) { popups.push_back(menu.name()); };
    }

    ListView& listOf(const clsSMBusParameter& p) { return rig.form->lvParameters.at(p.TabOrder); }
    std::string keyOf(const clsSMBusParameter& p)
    {
        for (const auto& row : listOf(p).rows())
            if (row.text == p.ParameterName + " ")
                return row.key;
        return {};
    }
    void doubleClick(const clsSMBusParameter& p)
    {
        rig.form->SSTab.setSelectedIndex(p.TabOrder);
        listOf(p).userDoubleClick(keyOf(p));
    }

    MonitorRig rig;
    ParameterEdits& edits = rig.monitor->edits;
    clsSMBusParameter* sleep = nullptr;
    std::vector<std::string> edited;
    DynamicValue typed;
    bool autoWrite = false;
    int commits = 0;
    std::vector<std::string> popups;
};

TEST_F(ParameterEditsTest, AnEditGoesBoldThenTheWriteReachesTheDeviceAndOffersTheCommit)
{
    const double before = sleep->value.number();
    typed = before + 3;
    doubleClick(*sleep);
    ASSERT_EQ(edited, std::vector<std::string> { "Sleep Current@0" });
    const std::string key = keyOf(*sleep);
    EXPECT_TRUE(listOf(*sleep).row(key)->bold);
    EXPECT_EQ(listOf(*sleep).row(key)->subItems.at(0), sleep->ToString(1, rig.h.driver().Parameters.display));
    EXPECT_TRUE(rig.form->PendingChanges);
    rig.monitor->tabs.LoadTabs();
    EXPECT_TRUE(listOf(*sleep).row(keyOf(*sleep))->bold) << "a reload keeps the waiting value bold";
    ASSERT_TRUE(rig.form->mnuWritePendingChanges.enabled());

    rig.form->mnuWritePendingChanges.click();
    EXPECT_FALSE(sleep->NewValue.hasContent());
    EXPECT_DOUBLE_EQ(sleep->value.number(), before + 3);
    EXPECT_FALSE(listOf(*sleep).row(keyOf(*sleep))->bold);
    EXPECT_FALSE(rig.form->PendingChanges);
    ASSERT_TRUE(rig.h.driver().Parameters.ParametersWritten);
    ASSERT_FALSE(rig.h.dialogs.notifications().empty());
    EXPECT_EQ(rig.h.dialogs.notifications().back().title, "Commit changes to flash");
    EXPECT_EQ(rig.h.dialogs.notifications().back().text,
        "Parameter changes are saved in RAM\r\nuntil you commit the changes to FLASH.\r\nYou can use the "
        "shortcut "
        "Ctrl C");
}

TEST_F(ParameterEditsTest, APendingRowShowsTheValueJustReadAndStaysBoldThroughThePollsRefresh)
{
    // The sample refreshes the parameters of multiplier 1, as live values are.
    sleep->OffsetMultiplier = 1;
    typed = sleep->value.number() + 3;
    doubleClick(*sleep);
    const auto& display = rig.h.driver().Parameters.display;
    const std::string edited = sleep->ToString(1, display);
    ASSERT_NE(edited.find(" (was "), std::string::npos) << edited;
    ListView& list = listOf(*sleep);
    const std::string key = keyOf(*sleep);
    list.setSubItem(key, 1, "stale");
    rig.monitor->tabs.refreshGatewayValues();
    EXPECT_EQ(list.row(key)->subItems.at(0), sleep->ToString(0, display)) << "the value just read";
    EXPECT_TRUE(list.row(key)->bold) << "the edit still waits";
}

TEST_F(ParameterEditsTest, ADoubleClickInTheBitListEditsTheSelectedBitEncodedRow)
{
    clsSMBusParameter* bits = nullptr;
    const auto& gateway = rig.h.driver().GatewayParameters;
    for (int i = 1; i <= gateway.Count() && !bits; ++i) {
        clsSMBusParameter* p = gateway.Item(i);
        if (p->SubBlockDataType == 0 && !keyOf(*p).empty() && listOf(*p).row(keyOf(*p))->icon == "readwrite")
            bits = p;
    }
    ASSERT_NE(bits, nullptr);
    rig.form->SSTab.setSelectedIndex(bits->TabOrder);
    rig.form->lvStatus.userDoubleClick("0bit");
    EXPECT_TRUE(edited.empty()) << "no row selected in the parameter list";

    listOf(*bits).userSelect(keyOf(*bits));
    ASSERT_FALSE(rig.form->lvStatus.rows().empty());
    typed = 1;
    rig.form->lvStatus.userDoubleClick(rig.form->lvStatus.rows().front().key);
    EXPECT_EQ(edited, std::vector<std::string> { bits->ParameterName + "@0" });
    EXPECT_TRUE(listOf(*bits).row(keyOf(*bits))->bold);

    listOf(*sleep).userSelect(keyOf(*sleep));
    rig.form->SSTab.setSelectedIndex(sleep->TabOrder);
    rig.form->lvStatus.userDoubleClick("0bit");
    EXPECT_EQ(edited.size(), 1u) << "a plain parameter is not edited from the bit list";
}

TEST_F(ParameterEditsTest, AutoWriteWritesAndCommitsAndACancelLeavesTheRowPlain)
{
    typed = DynamicValue();
    doubleClick(*sleep);
    EXPECT_FALSE(listOf(*sleep).row(keyOf(*sleep))->bold);
    EXPECT_FALSE(rig.form->PendingChanges);

    autoWrite = true;
    typed = sleep->value.number() + 1;
    doubleClick(*sleep);
    EXPECT_FALSE(sleep->NewValue.hasContent());
    EXPECT_EQ(commits, 1);
}

TEST_F(ParameterEditsTest, AWriteWhilePollingOffersTheCommitOnceTheTickHasRunIt)
{
    frmMain& form = *rig.form;
    for (auto* item : { &form.mnuCommit, &form.mnuParameters_commit })
        item->onClick = [] {};
    PollCycle& poll = rig.monitor->poll;
    form.mnuPollAllContinuously.click();
    ASSERT_FALSE(rig.h.driver().Parameters.ParametersWritten) << "as after a commit";

    typed = sleep->value.number() + 2;
    doubleClick(*sleep);
    form.mnuWritePendingChanges.click();
    EXPECT_TRUE(sleep->NewValue.hasContent()) << "the write waits for the tick";
    EXPECT_FALSE(form.mnuCommit.enabled());
    poll.tmrPollData_Timer();
    EXPECT_FALSE(sleep->NewValue.hasContent());
    ASSERT_TRUE(rig.h.driver().Parameters.ParametersWritten);
    EXPECT_TRUE(form.mnuCommit.enabled()) << "the exit's question and the entry agree";
    EXPECT_TRUE(form.mnuParameters_commit.enabled());
    EXPECT_EQ(rig.h.dialogs.notifications().back().title, "Commit changes to flash");

    // "Auto write value on Ok" while polling: the commit follows the write on the next tick.
    autoWrite = true;
    typed = sleep->value.number() + 1;
    doubleClick(*sleep);
    poll.tmrPollData_Timer();
    EXPECT_FALSE(sleep->NewValue.hasContent());
    EXPECT_EQ(commits, 0);
    poll.tmrPollData_Timer();
    EXPECT_EQ(commits, 1);
}

TEST_F(ParameterEditsTest, AWriteTheDeviceRefusesTellsTheUserWhy)
{
    const double before = sleep->value.number();
    rig.h.pack->model().access.setLevel(1); // the pack sealed again behind the window's back
    // Without a tray notifications land in the panel "Info", the commit hint among them.
    rig.h.dialogs.onNotify = [this](const std::string& title, const std::string& text) {
        rig.form->NotifyInStatusBar(title, text);
    };
    typed = before + 4;
    doubleClick(*sleep);
    rig.form->mnuWritePendingChanges.click();

    const std::string why = "Level 2 access is needed to approve the request";
    EXPECT_EQ(rig.info(), why);
    EXPECT_EQ(rig.form->FileAccessErrors, 2) << "the read back finds the refusal still standing";
    ASSERT_FALSE(rig.h.dialogs.notifications().empty());
    const auto& notice = rig.h.dialogs.notifications().front();
    EXPECT_EQ(notice.title, "File Access Error");
    EXPECT_EQ(
        notice.text, "Communication Errors: 1\r\n" + why + "\r\nFile " + std::to_string(sleep->FileNumber));
    EXPECT_NE(rig.logs.eventLog().txtEvent.text().find("Last Error Status: " + why), std::string::npos);
    EXPECT_DOUBLE_EQ(sleep->value.number(), before) << "the read back shows the device's value";

    rig.h.pack->model().access.setLevel(3);
    rig.h.pack->faults().forcedStatus = 15;
    (void)rig.h.driver().ReadParameter(sleep->ParameterName, 0);
    EXPECT_NE(rig.info().find("This file is read-only"), std::string::npos);
    EXPECT_EQ(rig.form->FileAccessErrors, 3) << "the count runs on";
}

TEST_F(ParameterEditsTest, LockedRowsAndAWiredRefusalStopTheWay)
{
    const auto* locked = rig.h.driver().GatewayParameters.FindByName("Pack Voltage");
    ASSERT_NE(locked, nullptr);
    doubleClick(*locked);
    EXPECT_TRUE(edited.empty());

    edits.hooks.isTheDeviceWired = [] { return false; };
    typed = sleep->value.number() + 2;
    doubleClick(*sleep);
    rig.form->mnuWritePendingChanges.click();
    EXPECT_TRUE(sleep->NewValue.hasContent()) << "not wired: nothing written";
}

TEST_F(ParameterEditsTest, AFailedReadOfAllAsksAbortRetryIgnore)
{
    rig.failDevice(true);
    rig.h.dialogs.answerMessage(Answer::Abort);
    EXPECT_FALSE(edits.Parameters_ReadAll());
    const auto& box = rig.h.dialogs.lastShown();
    EXPECT_EQ(box.title, "Error Reading Data");
    EXPECT_EQ(box.text,
        "An error has occurred while reading the parameters.\r\nThe data displayed may not reflect any "
        "recent "
        "changes.\r\nWhat would you like to do?");
    EXPECT_EQ(box.buttons, platform::Buttons::AbortRetryIgnore);

    int reloads = 0;
    edits.hooks.reload = [&] {
        ++reloads;
        rig.failDevice(false);
    };
    rig.h.dialogs.answerMessage(Answer::Retry);
    EXPECT_TRUE(edits.Parameters_ReadAll());
    EXPECT_EQ(reloads, 1);
    EXPECT_EQ(rig.form->lvGateway.rows().at(0).text, "Online");
    EXPECT_GT(rig.form->lvParameters[0].rowCount(), 0);
}

TEST_F(ParameterEditsTest, ACellClickLoadsItsPropertiesAndAParameterClickLeavesTheCell)
{
    ListView& nodes = rig.form->lvNodes;
    nodes.userSelect("n2");
    EXPECT_EQ(rig.h.globals.CurrentNode, 2);
    EXPECT_EQ(rig.form->lvProperties[0].columns().at(0).header, "Cell 2");

    ListView& parameters = rig.form->lvParameters[0];
    parameters.userSelect(parameters.rows().front().key);
    EXPECT_EQ(rig.h.globals.CurrentNode, 0);
}

TEST_F(ParameterEditsTest, RightClickOffersWhatTheRowAllowsAndEditAndRevertActOnThatRow)
{
    ListView& list = listOf(*sleep);
    const std::string key = keyOf(*sleep);
    list.userMouseUp(key, false);
    EXPECT_EQ(rig.info(), "Sleep Current: Right click and select 'Info' for more information");
    EXPECT_TRUE(popups.empty());

    list.userMouseUp(key, true);
    ASSERT_EQ(popups, std::vector<std::string> { "mnuParameters" });
    EXPECT_TRUE(rig.form->mnuParameters_EditThis.enabled());
    EXPECT_FALSE(rig.form->mnuParameters_Revert.enabled()) << "nothing pending on this row";

    list.setSelectedKey(key);
    typed = sleep->value.number() + 4;
    rig.form->mnuParameters_EditThis.click();
    EXPECT_EQ(edited.size(), 1u);
    list.userMouseUp(key, true);
    ASSERT_TRUE(rig.form->mnuParameters_Revert.enabled());
    rig.form->mnuParameters_Revert.click();
    EXPECT_FALSE(sleep->NewValue.hasContent());
    EXPECT_FALSE(list.row(key)->bold);
    EXPECT_FALSE(rig.form->PendingChanges);
    EXPECT_EQ(list.selectedKey(), key);

    rig.form->lvNodes.userMouseUp("n1", true);
    EXPECT_EQ(popups.back(), "mnulvNodes");
}

TEST_F(ParameterEditsTest, SelectAllTakesEveryRowOfTheGatewayListAndTheRightClickThenOffersTheListMenu)
{
    ListView& list = listOf(*sleep);
    const std::string key = keyOf(*sleep);
    list.userSelect(key);
    list.userMouseUp(key, true);
    ASSERT_TRUE(rig.form->mnuSelectAll.enabled());
    rig.form->mnuSelectAll.click();
    EXPECT_EQ(static_cast<int>(list.selectedKeys().size()), list.rowCount());
    EXPECT_EQ(list.selectedKey(), key);

    list.userMouseUp(key, true);
    EXPECT_EQ(popups, (std::vector<std::string> { "mnuParameters", "mnuParametersPopup" }));

    ListView& cells = rig.form->lvProperties.at(0);
    rig.form->lvNodes.userSelect("n1");
    ASSERT_GT(cells.rowCount(), 1);
    cells.userMouseUp(cells.rows().front().key, true);
    EXPECT_FALSE(rig.form->mnuSelectAll.enabled()) << "the property lists stay single-select";
    EXPECT_FALSE(cells.multiSelect());
}

} // namespace
} // namespace zv
