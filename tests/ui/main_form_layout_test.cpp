// The main window's widgets as the user meets them: menus, labels and panels bound by name follow
// their controls; a click on a tab shows that tab's list and reaches the control, also with hidden
// tabs before the clicked one; the status-bar panels share the window's width without running
// over each other.

#include "core/settings_table.h"
#include "monitor/monitor_fixture.h"
#include "qt/binder.h"
#include "qt/main_form.h"
#include "qt/status_panel_label.h"
#include "ui/widgets_app.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace zv::qt {
namespace {

namespace ui = platform::ui;

class MainFormLayout : public ::testing::Test {
protected:
    static void SetUpTestSuite() { test::ensureWidgets(); }

    // The pack's main window as start-up leaves it, with its tab captions from the target (tabs
    // without a caption hidden) and the live monitor's handlers; the plot not expanded, so that
    // the tabs show.
    MainFormLayout()
    {
        writeSetting(rig.h.settings, "ExpandedPlot", "0");
        EXPECT_TRUE(rig.load());
        EXPECT_TRUE(rig.h.driver().GetAllValues());
        rig.monitor->tabs.LoadTabs();
        unbound = binder.bind(window, makeMainForm(window));
        form()->resize(1280, 900);
        form()->show();
        QApplication::processEvents();
    }
    ~MainFormLayout() override { form()->hide(); }

    QWidget* form() { return binder.widgetOf(window); }
    [[nodiscard]] std::vector<int> visibleTabs() const
    {
        std::vector<int> shown;
        for (int tab = 0; tab < window.SSTab.tabCount(); ++tab)
            if (window.SSTab.tabs()[tab].visible)
                shown.push_back(tab);
        return shown;
    }
    QTabBar* bar() { return form()->findChild<QTabBar*>("SSTab"); }
    // The stack beside the bar: the widget that shows the list of the current tab.
    QStackedWidget* stack() { return bar()->parentWidget()->findChild<QStackedWidget*>(); }

    void click(int tab)
    {
        const QPointF at = bar()->tabRect(tab).center();
        const QPointF global = bar()->mapToGlobal(at);
        QMouseEvent press(
            QEvent::MouseButtonPress, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QMouseEvent release(
            QEvent::MouseButtonRelease, at, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(bar(), &press);
        QApplication::sendEvent(bar(), &release);
        QApplication::processEvents();
    }

    test::MonitorRig rig;
    frmMain& window = *rig.form;
    Binder binder;
    std::vector<std::string> unbound;
};

TEST_F(MainFormLayout, MenusPanelsAndLabelsBindByNameAndFollowTheirControls)
{
    // Where the desktop has no tray (as under the offscreen platform) the tray icon stays unbound.
    EXPECT_TRUE(unbound.empty() || unbound == std::vector<std::string> { "trayIcon" });
    QStringList titles;
    for (const QAction* action : static_cast<QMainWindow*>(form())->menuBar()->actions())
        titles << action->text();
    EXPECT_EQ(titles.join(","), "File,Logging,Commands,Advanced,Configure,Utilities,Help");
    auto* dataSet = form()->findChild<QMenu*>("mnuDataSet");
    ASSERT_TRUE(dataSet);
    EXPECT_EQ(dataSet->actions().size(), 3);
    EXPECT_FALSE(dataSet->menuAction()->isEnabled()) << "nothing in it is built yet";
    EXPECT_TRUE(form()->findChild<QAction*>("mnuSep2")->isSeparator());
    EXPECT_TRUE(form()->findChild<QMenu*>("mnuParameters")) << "pop-up, not on the bar";

    window.mnuView.setVisible(false);
    EXPECT_FALSE(form()->findChild<QMenu*>("mnuView")->menuAction()->isVisible());
    window.mnuInformationOnline.setCaption("ZK9460 Information Online");
    EXPECT_EQ(form()->findChild<QAction*>("mnuInformationOnline")->text(), "ZK9460 Information Online");
    form()->findChild<QAction*>("mnuEventLog")->trigger();
    EXPECT_TRUE(rig.logs.eventLog().visible());
    EXPECT_EQ(form()->findChild<QLabel*>("lblCONFIG_BIT")->text(), "Configured");
    window.sbStatusBar.setPanelText("HLK", "Lost Comms");
    EXPECT_EQ(dynamic_cast<StatusPanelLabel*>(form()->findChild<QWidget*>("HLK"))->text(), "Lost Comms");
    // Painted text reaches the accessibility bus as each panel's name and description.
    window.sbStatusBar.setPanelText("Polling", "Polling Active");
    for (const char* panel : { "HLK", "Polling", "Access" }) {
        QAccessibleInterface* reader
            = QAccessible::queryAccessibleInterface(form()->findChild<QWidget*>(panel));
        ASSERT_TRUE(reader) << panel;
        EXPECT_EQ(reader->text(QAccessible::Name), window.sbStatusBar.panelText(panel).c_str()) << panel;
        EXPECT_EQ(reader->text(QAccessible::Description), window.sbStatusBar.panelText(panel).c_str())
            << panel;
        EXPECT_FALSE(reader->text(QAccessible::Name).isEmpty()) << panel;
    }
    EXPECT_EQ(form()->windowTitle().toStdString(), window.caption());
    rig.logs.eventLog().unload();
}

TEST_F(MainFormLayout, AClickOnATabShowsItsListAndSetsTheCurrentTab)
{
    ASSERT_TRUE(bar());
    ASSERT_EQ(stack()->count(), 11);
    std::vector<int> shown = visibleTabs();
    ASSERT_GT(shown.size(), 2u);
    std::reverse(shown.begin(), shown.end());
    shown.push_back(shown.back());
    for (int tab : shown) {
        SCOPED_TRACE(tab);
        ASSERT_TRUE(bar()->isTabVisible(tab));
        click(tab);
        EXPECT_EQ(window.CurrentTab, tab);
        EXPECT_EQ(window.SSTab.selectedIndex(), tab);
        EXPECT_EQ(bar()->currentIndex(), tab);
        EXPECT_EQ(stack()->currentWidget()->objectName().toStdString(), window.lvParameters[tab].name());
    }
}

TEST_F(MainFormLayout, RowsRebuiltAfterBindingReachTheTrees)
{
    rig.monitor->tabs.LoadTabs();
    for (const auto& list : window.lvParameters) {
        auto* tree = form()->findChild<QTreeWidget*>(QString::fromStdString(list.name()));
        ASSERT_TRUE(tree) << list.name();
        EXPECT_EQ(tree->topLevelItemCount(), list.rowCount()) << list.name();
    }
    EXPECT_GT(window.lvParameters[0].rowCount(), 0);
}

TEST_F(MainFormLayout, KeysAndTheProgramMoveBarStackAndControlTogether)
{
    std::vector<int> shown = visibleTabs();
    ASSERT_GT(shown.size(), 2u);
    const auto inStep = [this] {
        EXPECT_EQ(stack()->currentIndex(), bar()->currentIndex());
        EXPECT_EQ(window.SSTab.selectedIndex(), bar()->currentIndex());
    };
    window.SSTab.setSelectedIndex(shown[1]);
    EXPECT_EQ(bar()->currentIndex(), shown[1]);
    inStep();

    bar()->setFocus();
    QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QApplication::sendEvent(bar(), &right);
    EXPECT_EQ(window.CurrentTab, shown[2]) << "a tab chosen with the keys is a click for the control";
    inStep();

    window.SSTab.setTabVisible(shown[2], false); // the shown tab hidden: all three move on
    EXPECT_NE(bar()->currentIndex(), shown[2]);
    inStep();
}

TEST_F(MainFormLayout, StatusPanelsNeverOverlapAndElideWhatDoesNotFit)
{
    const std::string longInfo = "Last Hardware Poll 123456 Sample(s) Ago.";
    window.sbStatusBar.setPanelText("Info", longInfo);
    window.sbStatusBar.setPanelPicture("Polling", "Polling");
    for (int width : { 800, 1280, 640 }) {
        SCOPED_TRACE(width);
        form()->resize(width, 700);
        QApplication::processEvents();
        auto* bar = form()->findChild<QStatusBar*>("sbStatusBar");
        ASSERT_TRUE(bar);
        QRect previous;
        for (const auto& panel : window.sbStatusBar.panels()) {
            auto* label = dynamic_cast<StatusPanelLabel*>(
                bar->findChild<QWidget*>(QString::fromStdString(panel.key)));
            ASSERT_TRUE(label) << panel.key;
            const QRect at = label->geometry();
            EXPECT_GE(at.left(), previous.right()) << panel.key << " runs over the panel before it";
            EXPECT_LE(at.right(), bar->width()) << panel.key << " runs out of the bar";
            EXPECT_GT(at.width(), 0);
            previous = at;
        }
        auto* info = dynamic_cast<StatusPanelLabel*>(bar->findChild<QWidget*>("Info"));
        ASSERT_TRUE(info);
        EXPECT_EQ(info->text().toStdString(), longInfo) << "the full text stays with the panel";
        if (width == 640) {
            EXPECT_TRUE(info->shownText().endsWith(QChar(0x2026))) << info->shownText().toStdString();
        }
    }
    form()->resize(1280, 700);
    QApplication::processEvents();
    auto* alarms = dynamic_cast<StatusPanelLabel*>(form()->findChild<QWidget*>("Alarms"));
    ASSERT_TRUE(alarms);
    EXPECT_EQ(alarms->shownText(), alarms->text()) << "the spring panel shows all at 1280 px";
}

} // namespace
} // namespace zv::qt
