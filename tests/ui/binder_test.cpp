#include "core/app_logs.h"
#include "platform/testing/memory_settings_store.h"
#include "platform/testing/virtual_event_loop.h"
#include "platform/ui/list_view.h"
#include "platform/ui/simple_controls.h"
#include "qt/binder.h"
#include "qt/file_filter.h"
#include "qt/log_forms.h"
#include "ui/widgets_app.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace zv::qt {
namespace {

namespace ui = platform::ui;

// A small window with one control of each kind the test drives.
class Probe : public ui::Window {
public:
    Probe()
        : Window("frmProbe")
    {
        addControls({ &lblStatus, &txtNewValue, &cmdOK, &lvCells, &mnuCommit, &lblMissing });
    }
    ui::Label lblStatus { "lblStatus" };
    ui::TextBox txtNewValue { "txtNewValue" };
    ui::Button cmdOK { "cmdOK" };
    ui::ListView lvCells { "lvCells" };
    ui::MenuItem mnuCommit { "mnuCommit" };
    ui::Label lblMissing { "lblMissing" };
};

std::unique_ptr<QWidget> probeForm()
{
    auto form = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(form.get());
    const auto add = [&](QWidget* w, const char* name) {
        w->setObjectName(name);
        layout->addWidget(w);
    };
    add(new QLabel, "lblStatus");
    add(new QLineEdit, "txtNewValue");
    add(new QPushButton, "cmdOK");
    add(new QTreeWidget, "lvCells");
    auto* commit = new QAction(form.get());
    commit->setObjectName("mnuCommit");
    form->addAction(commit);
    return form;
}

class BinderTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { test::ensureWidgets(); }
    template <typename W> W* widget(const char* name) { return binder.widgetOf(probe)->findChild<W*>(name); }
    Binder binder;
    Probe probe;
};

TEST_F(BinderTest, ControlChangesReachTheirWidgets)
{
    const auto unbound = binder.bind(probe, probeForm());
    EXPECT_EQ(unbound, std::vector<std::string> { "lblMissing" });

    probe.lblStatus.setCaption("Searching for HLK dongle on COM3...");
    EXPECT_EQ(widget<QLabel>("lblStatus")->text(), "Searching for HLK dongle on COM3...");

    probe.lvCells.setColumns({ { "Cell" }, { "Voltage" } });
    probe.lvCells.addRow({ "c1", "Cell 1" });
    probe.lvCells.addRow({ "c2", "Cell 2" });
    probe.lvCells.setSubItem("c2", 1, "3.912");
    probe.lvCells.setBold("c2", true);
    probe.lvCells.removeRow("c1");
    auto* tree = widget<QTreeWidget>("lvCells");
    ASSERT_EQ(tree->topLevelItemCount(), 1);
    EXPECT_EQ(tree->topLevelItem(0)->text(0), "Cell 2");
    EXPECT_EQ(tree->topLevelItem(0)->text(1), "3.912");
    EXPECT_TRUE(tree->topLevelItem(0)->font(0).bold());
    EXPECT_EQ(tree->headerItem()->text(1), "Voltage");

    auto* commit = binder.widgetOf(probe)->findChild<QAction*>("mnuCommit");
    probe.mnuCommit.setCaption("Commit");
    probe.mnuCommit.setEnabled(false);
    EXPECT_EQ(commit->text(), "Commit");
    EXPECT_FALSE(commit->isEnabled());
    probe.mnuCommit.setVisible(false);
    EXPECT_FALSE(commit->isVisible());
}

TEST_F(BinderTest, UserActionsComeBackAsEvents)
{
    (void)binder.bind(probe, probeForm());
    std::vector<std::string> events;
    probe.cmdOK.onClick = [&] { events.push_back("cmdOK"); };
    probe.mnuCommit.onClick = [&] { events.push_back("mnuCommit"); };
    probe.txtNewValue.onChange = [&] { events.push_back("typed " + probe.txtNewValue.text()); };
    probe.lvCells.onDblClick = [&](const std::string& key) { events.push_back("dbl " + key); };
    probe.lvCells.addRow({ "c7", "Cell 7" });

    widget<QPushButton>("cmdOK")->click();
    binder.widgetOf(probe)->findChild<QAction*>("mnuCommit")->trigger();
    auto* edit = widget<QLineEdit>("txtNewValue");
    edit->setFocus();
    edit->insert("4.2"); // as typed
    auto* tree = widget<QTreeWidget>("lvCells");
    Q_EMIT tree->itemDoubleClicked(tree->topLevelItem(0), 0);

    probe.txtNewValue.setText("set by the program"); // not taken for typing
    EXPECT_EQ(edit->text(), "set by the program");
    EXPECT_EQ(events, (std::vector<std::string> { "cmdOK", "mnuCommit", "typed 4.2", "dbl c7" }));
}

// Counts the paints of the widget it watches.
class PaintCounter : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return QObject::eventFilter(watched, event);
    }
    int paints = 0;
};

TEST_F(BinderTest, AWindowIsPaintedWhenShowReturnsBeforeAnyWaitRunsEvents)
{
    (void)binder.bind(probe, probeForm());
    PaintCounter counter;
    binder.widgetOf(probe)->installEventFilter(&counter);
    probe.lblStatus.setCaption("Initializing... Please Wait!");
    probe.show();
    EXPECT_GE(counter.paints, 1) << "the splash is not an unpainted frame during the wait that follows";
    probe.hide();
}

TEST_F(BinderTest, ReleasesTheWidgetWithItsWindow)
{
    auto window = std::make_unique<Probe>();
    (void)binder.bind(*window, probeForm());
    QPointer<QWidget> form = binder.widgetOf(*window);
    window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(form.isNull());
}

TEST(LogForms, CloseBoxesAndColouredText)
{
    test::ensureWidgets();
    AppGlobals globals;
    platform::MemorySettingsStore store;
    platform::VirtualEventLoop loop;
    ActiveForm active;
    AppLogs logs(globals, { store, [] { return ui::ScreenSize { 28800, 16200 }; }, "/opt/zv" }, loop, active);
    Binder binder;
    logs.onWindowCreated = [&](ui::Window& w) { (void)binder.bind(w, makeFormFor(w.name())); };

    auto& modem = logs.modemLog();
    modem.show();
    QWidget* modemForm = binder.widgetOf(modem);
    ASSERT_NE(modemForm, nullptr);
    EXPECT_TRUE(modemForm->isVisible());
    EXPECT_EQ(modemForm->geometry().width(), 7000 / 15);
    logs.log_ModemEvent("/V\r", true);
    logs.log_ModemEvent("V1.3", false);
    auto* rtf = modemForm->findChild<QTextEdit*>("rtfEvent");
    EXPECT_EQ(rtf->toPlainText(), "\n/V<CR>\nV1.3");
    QTextCursor cursor(rtf->document());
    cursor.movePosition(QTextCursor::End);
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(255, 0, 0));

    modemForm->close(); // the close box hides; the text stays
    EXPECT_FALSE(modemForm->isVisible());
    EXPECT_FALSE(modem.visible());
    EXPECT_EQ(rtf->toPlainText(), "\n/V<CR>\nV1.3");

    logs.LogEvent("hello");
    auto& events = logs.eventLog();
    events.show();
    QWidget* eventForm = binder.widgetOf(events);
    eventForm->close(); // really closes: the text goes
    EXPECT_FALSE(events.loaded());
    EXPECT_EQ(events.txtEvent.text(), "");
}

TEST(FileFilter, ConvertsToQtFilters)
{
    EXPECT_EQ(toQtFilter("Text (*.txt)|*.txt|All Files (*.*)|*.*"), "Text (*.txt);;All Files (*)");
    EXPECT_EQ(toQtFilter("Log Definitions|*.dlog;*.slog"), "Log Definitions (*.dlog *.slog)");
    EXPECT_EQ(toQtFilter(""), "");
}

} // namespace
} // namespace zv::qt
