#include "platform/ui/choice_controls.h"
#include "platform/ui/list_view.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/status_bar.h"
#include "platform/ui/tab_strip.h"
#include "platform/ui/window.h"

#include <gtest/gtest.h>

namespace zv::platform::ui {
namespace {

struct Recorder {
    std::vector<ChangeEvent> events;
    void watch(Control& c)
    {
        c.setChangeListener([this](const ChangeEvent& e) { events.push_back(e); });
    }
};

TEST(Controls, ChangesAreReportedOnlyWhenValuesChange)
{
    Label lblStatus("lblStatus");
    Recorder r;
    r.watch(lblStatus);
    lblStatus.setCaption("Initializing communications...");
    lblStatus.setCaption("Initializing communications...");
    lblStatus.setVisible(true); // already visible
    lblStatus.setEnabled(false);
    ASSERT_EQ(r.events.size(), 2u);
    EXPECT_EQ(r.events[0].what, Change::Caption);
    EXPECT_EQ(r.events[1].what, Change::Enabled);
}

TEST(Controls, UserActionsNeedAnEnabledVisibleControl)
{
    int clicks = 0;
    MenuItem mnuCommit("mnuCommit");
    Button cmdOK("cmdOK");
    mnuCommit.onClick = [&] { ++clicks; };
    cmdOK.onClick = [&] { ++clicks; };
    mnuCommit.setEnabled(false);
    cmdOK.setVisible(false);
    mnuCommit.click();
    cmdOK.click();
    EXPECT_EQ(clicks, 0);
    mnuCommit.setEnabled(true);
    mnuCommit.click();
    EXPECT_EQ(clicks, 1);

    TextBox txtNewValue("txtNewValue");
    int edits = 0;
    txtNewValue.onChange = [&] { ++edits; };
    txtNewValue.userEdit("12");
    txtNewValue.setLocked(true);
    txtNewValue.userEdit("13");
    EXPECT_EQ(txtNewValue.text(), "12");
    EXPECT_EQ(edits, 1);
}

TEST(ListView, KeyedRowsUpdateInPlace)
{
    ListView lvCells("lvCells");
    Recorder r;
    r.watch(lvCells);
    lvCells.addRow({ "c1", "Cell 1" });
    lvCells.addRow({ "c2", "Cell 2" });
    EXPECT_THROW(lvCells.addRow({ "c1", "again" }), std::invalid_argument);
    r.events.clear();

    lvCells.setSubItem("c2", 2, "3.912");
    lvCells.setSubItem("c2", 2, "3.912"); // the same value: nothing to redraw
    lvCells.setBold("c1", true);
    EXPECT_EQ(lvCells.row("c2")->subItems, (std::vector<std::string> { "", "3.912" }));
    ASSERT_EQ(r.events.size(), 2u);
    EXPECT_EQ(r.events[0].detail, "c2");
    EXPECT_EQ(r.events[1].detail, "c1");
    EXPECT_THROW(lvCells.setText("c9", "x"), std::out_of_range);

    lvCells.setSelectedKey("c2");
    lvCells.removeRow("c1");
    EXPECT_EQ(lvCells.row("c2")->text, "Cell 2");
    EXPECT_EQ(lvCells.selectedKey(), "c2");
    lvCells.removeRow("c2");
    EXPECT_EQ(lvCells.selectedKey(), "");
    EXPECT_EQ(lvCells.rowCount(), 0);
}

TEST(ListView, UserEventsCarryTheRowKey)
{
    ListView lvParameters("lvParameters");
    lvParameters.setCheckBoxes(true);
    lvParameters.addRow({ "Pack Voltage", "Pack Voltage" });
    std::vector<std::string> seen;
    lvParameters.onDblClick = [&](const std::string& key) { seen.push_back("dbl " + key); };
    lvParameters.onItemCheck
        = [&](const std::string& key, bool on) { seen.push_back(key + (on ? " on" : " off")); };
    lvParameters.userDoubleClick("Pack Voltage");
    lvParameters.userCheck("Pack Voltage", true);
    lvParameters.userDoubleClick("missing");
    EXPECT_EQ(seen, (std::vector<std::string> { "dbl Pack Voltage", "Pack Voltage on" }));
    EXPECT_TRUE(lvParameters.row("Pack Voltage")->checked);
    EXPECT_EQ(lvParameters.selectedKey(), "Pack Voltage");
}

TEST(ListView, SelectAllOnlyOnAMultiSelectListAndTheSelectionFollowsTheRows)
{
    ListView list("lvParameters(0)");
    for (const char* key : { "P1", "P2", "P3" })
        list.addRow({ key, key });
    int changes = 0;
    list.setChangeListener([&](const ChangeEvent& e) { changes += e.what == Change::Selection; });
    list.setSelectedKey("P2");
    list.selectAll();
    EXPECT_EQ(list.selectedKeys(), std::vector<std::string> { "P2" }) << "a single-select list keeps one row";

    list.setMultiSelect(true);
    list.selectAll();
    EXPECT_EQ(list.selectedKeys(), (std::vector<std::string> { "P1", "P2", "P3" }));
    EXPECT_EQ(list.selectedKey(), "P2") << "the focus stays where it was";
    list.removeRow("P2");
    EXPECT_EQ(list.selectedKeys(), (std::vector<std::string> { "P1", "P3" }));
    EXPECT_EQ(list.selectedKey(), "P3");
    list.userSetSelection({ "P3", "missing", "P1", "P3" });
    EXPECT_EQ(list.selectedKeys(), (std::vector<std::string> { "P1", "P3" })) << "row order, no repeats";
    list.userSelect("P1");
    EXPECT_EQ(list.selectedKeys(), std::vector<std::string> { "P1" }) << "a click selects its row alone";
    EXPECT_GE(changes, 3);

    list.selectAll();
    list.setMultiSelect(false);
    EXPECT_EQ(list.selectedKeys(), std::vector<std::string> { "P1" });
    list.clear();
    list.selectAll();
    EXPECT_TRUE(list.selectedKeys().empty());
    EXPECT_EQ(list.selectedKey(), "");
}

TEST(Controls, TabsListsPanelsAndProgress)
{
    TabStrip tabCells("tabCells");
    tabCells.setTabs({ { "a", "Voltages" }, { "b", "Temperatures" } });
    tabCells.setTabVisible(1, false);
    int clicks = 0;
    tabCells.onClick = [&] { ++clicks; };
    tabCells.userSelect(1); // a hidden tab cannot be clicked
    EXPECT_EQ(tabCells.selectedIndex(), 0);
    EXPECT_EQ(clicks, 0);

    ComboBox cboPort("cboPort");
    cboPort.setItems({ "COM1", "COM2" });
    cboPort.setListIndex(5);
    EXPECT_EQ(cboPort.selectedText(), "");
    cboPort.userSelect(1);
    EXPECT_EQ(cboPort.selectedText(), "COM2");

    StatusBar bar("sbStatusBar");
    bar.addPanel({ "Info" });
    EXPECT_THROW(bar.addPanel({ "Info" }), std::invalid_argument);
    EXPECT_THROW(bar.setPanelText("Nope", "x"), std::out_of_range);

    ProgressBar pb("pbProgress");
    pb.setValue(150);
    EXPECT_EQ(pb.value(), 100);
    pb.setRange(0, 50);
    EXPECT_EQ(pb.value(), 50);
}

TEST(Window, LoadShowUnloadAndCloseRequest)
{
    struct Probe : Window {
        Probe()
            : Window("frmProbe")
        {
        }
        std::vector<std::string> calls;
        bool keep = false;
        void handleLoad() override { calls.push_back("load"); }
        void handleUnload() override { calls.push_back("unload"); }
        void handleResize() override { calls.push_back("resize"); }
        bool handleCloseRequest() override { return !keep; }
    } w;
    EXPECT_FALSE(w.visible());
    w.show();
    w.show();
    w.setBounds({ 0, 0, 100, 100 });
    w.setBounds({ 10, 10, 100, 100 }); // a move is no resize
    w.keep = true;
    w.requestClose();
    EXPECT_TRUE(w.loaded());
    w.keep = false;
    w.requestClose();
    EXPECT_FALSE(w.loaded());
    EXPECT_FALSE(w.visible());
    EXPECT_EQ(w.calls, (std::vector<std::string> { "load", "resize", "unload" }));
}

} // namespace
} // namespace zv::platform::ui
