// The tab strips of the main window as the user meets them: a click on a tab shows that tab's
// list and reaches the control, also with hidden tabs before the clicked one.

#include "core/app_logs.h"
#include "monitor/frm_main.h"
#include "platform/testing/memory_settings_store.h"
#include "platform/testing/scripted_dialogs.h"
#include "platform/testing/virtual_event_loop.h"
#include "qt/binder.h"
#include "qt/main_form.h"
#include "ui/widgets_app.h"

#include <QApplication>
#include <QMouseEvent>
#include <QStackedWidget>
#include <QTabBar>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace zv::qt {
namespace {

namespace ui = platform::ui;

class MainFormTabs : public ::testing::Test {
protected:
    static void SetUpTestSuite() { test::ensureWidgets(); }

    MainFormTabs()
    {
        std::vector<ui::Tab> tabs;
        for (int i = 0; i < 11; ++i)
            tabs.push_back({ "T" + std::to_string(i), i == 2 || i == 5 ? "" : "Tab " + std::to_string(i),
                i != 2 && i != 5 });
        window.SSTab.setTabs(tabs);
        window.SSTab.onClick = [this] { window.CurrentTab = window.SSTab.selectedIndex(); };
        binder.bind(window, makeMainForm(window));
        form()->resize(1280, 900);
        form()->show();
        QApplication::processEvents();
    }
    ~MainFormTabs() override { form()->hide(); }

    QWidget* form() { return binder.widgetOf(window); }
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

    AppGlobals globals;
    platform::MemorySettingsStore store;
    platform::VirtualEventLoop loop;
    platform::ScriptedDialogs dialogs;
    ActiveForm active;
    AppLogs logs { globals,
        { store,
            [] {
                return ui::ScreenSize { 28800, 16200 };
            },
            "/opt/zv" },
        loop, active };
    Binder binder;
    frmMain window { { globals, store, dialogs, logs, "/opt/zv" } };
};

TEST_F(MainFormTabs, AClickOnATabShowsItsListAndSetsTheCurrentTab)
{
    ASSERT_TRUE(bar());
    ASSERT_EQ(stack()->count(), 11);
    for (int tab : { 3, 10, 0, 6 }) {
        SCOPED_TRACE(tab);
        ASSERT_TRUE(bar()->isTabVisible(tab));
        click(tab);
        EXPECT_EQ(window.CurrentTab, tab);
        EXPECT_EQ(window.SSTab.selectedIndex(), tab);
        EXPECT_EQ(bar()->currentIndex(), tab);
        EXPECT_EQ(stack()->currentWidget()->objectName().toStdString(), window.lvParameters[tab].name());
    }
}

TEST_F(MainFormTabs, TheProgramsChoiceOfTabMovesTheBarAndTheStack)
{
    window.SSTab.setSelectedIndex(7);
    EXPECT_EQ(bar()->currentIndex(), 7);
    EXPECT_EQ(stack()->currentIndex(), 7);
    window.SSTab.setTabVisible(7, false); // the shown tab hidden: the bar moves on, so does the control
    EXPECT_EQ(stack()->currentIndex(), bar()->currentIndex());
    EXPECT_EQ(window.SSTab.selectedIndex(), bar()->currentIndex());
}

} // namespace
} // namespace zv::qt
