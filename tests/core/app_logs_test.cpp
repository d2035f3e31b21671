#include "core/app_logs.h"
#include "core/local_time.h"
#include "core/settings_table.h"
#include "fixed_clock.h"
#include "platform/testing/memory_settings_store.h"
#include "platform/ui/status_bar.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

namespace ui = platform::ui;

// A window with a status bar, standing in for frmMain or a tool window.
class FormWithStatus : public ui::Window {
public:
    explicit FormWithStatus(std::string name)
        : Window(std::move(name))
    {
        sbStatusBar.addPanel({ kInfoPanel });
        addControls({ &sbStatusBar });
    }
    ui::StatusBar* statusBar() override { return &sbStatusBar; }
    ui::StatusBar sbStatusBar { "sbStatusBar" };
};

class AppLogsTest : public ::testing::Test {
protected:
    AppLogsTest()
    {
        mainForm.show();
        active.setMainForm(&mainForm);
        active.set(&mainForm);
    }
    std::string stamp() const { return dateAndTime(clock.wallTime) + " : "; }

    AppGlobals globals;
    platform::MemorySettingsStore store;
    testing::FixedClock clock;
    ActiveForm active;
    FormWithStatus mainForm { "frmMain" };
    LogWindowContext context { store, [] { return ui::ScreenSize { 1920 * 15, 1080 * 15 }; }, "/opt/zv" };
    AppLogs logs { globals, context, clock, active };
};

TEST_F(AppLogsTest, LogEventGoesToStatusAndTopOfEventLog)
{
    logs.LogEvent("first");
    logs.LogEvent("second");
    EXPECT_EQ(mainForm.sbStatusBar.panelText("Info"), "second");
    EXPECT_EQ(logs.eventLog().txtEvent.text(), stamp() + "second\n" + stamp() + "first\n");
    EXPECT_FALSE(logs.eventLog().visible()); // logged in the background
}

TEST_F(AppLogsTest, GoneActiveFormHandsBackToTheMainForm)
{
    FormWithStatus tool("frmScript");
    tool.show();
    active.set(&tool);
    logs.LogEvent("in the tool");
    EXPECT_EQ(tool.sbStatusBar.panelText("Info"), "in the tool");

    tool.unload();
    logs.LogEvent("after closing");
    EXPECT_EQ(active.get(), &mainForm);
    EXPECT_EQ(tool.sbStatusBar.panelText("Info"), "in the tool");
    EXPECT_EQ(mainForm.sbStatusBar.panelText("Info"), ""); // that step was dropped
    EXPECT_EQ(logs.eventLog().txtEvent.text().rfind(stamp() + "after closing\n", 0), 0u);
    logs.LogEvent("next");
    EXPECT_EQ(mainForm.sbStatusBar.panelText("Info"), "next");
}

TEST_F(AppLogsTest, ReadWriteLoggingKeepsParameterTrafficOutOfTheEventLog)
{
    ASSERT_TRUE(globals.settings.ReadWriteLogging);
    logs.ReadWriteLog("Read Parameter:", "Cell Voltage", "", "3.912");
    EXPECT_EQ(mainForm.sbStatusBar.panelText("Info"), "Read Parameter: Cell Voltage  3.912");
    EXPECT_FALSE(logs.hasEventLog());

    globals.settings.ReadWriteLogging = false;
    logs.ReadWriteLog("Write Word:", "Pack Capacity", "12", "#Error");
    EXPECT_EQ(logs.eventLog().txtEvent.text(), stamp() + "Write Word: Pack Capacity 12 #Error\n");
}

TEST_F(AppLogsTest, EventLogCloseDiscardsTextAndStoresPlacement)
{
    logs.LogEvent("kept until closed");
    auto& window = logs.eventLog();
    window.show();
    window.userSetBounds({ 300, 450, 9000, 5000 });
    EXPECT_EQ(window.txtEvent.bounds(), (ui::Bounds { 0, 0, 8860, 4600 }));
    window.requestClose();
    EXPECT_FALSE(window.visible());
    EXPECT_EQ(window.txtEvent.text(), "");
    EXPECT_EQ(readSetting(store, "EventLogLeft", "/"), "300");
    EXPECT_EQ(readSetting(store, "EventLogTop", "/"), "450");
    EXPECT_EQ(readSetting(store, "EventLogWidth", "/"), "9000");
    EXPECT_EQ(readSetting(store, "EventLogHeight", "/"), "5000");

    logs.LogEvent("a new log");
    EXPECT_EQ(window.txtEvent.text(), stamp() + "a new log\n");
    EXPECT_EQ(window.bounds(), (ui::Bounds { 300, 450, 9000, 5000 })); // reopened where it was left
}

TEST_F(AppLogsTest, WindowsOpenWithDefaultsAndStayOnScreen)
{
    auto& modem = logs.modemLog();
    modem.show();
    EXPECT_EQ(modem.bounds(), (ui::Bounds { 0, 0, 7000, 4000 }));
    EXPECT_EQ(modem.rtfEvent.bounds(), (ui::Bounds { 0, 0, 6860, 3600 }));
    modem.unload();

    const int screenHeight = 1080 * 15;
    writeSetting(store, "ModemLogTop", std::to_string(screenHeight * 9 / 10 + 15));
    writeSetting(store, "ModemLogLeft", "-20");
    writeSetting(store, "EventLogTop", std::to_string(screenHeight * 9 / 10));
    writeSetting(store, "EventLogLeft", "1500");
    modem.show();
    EXPECT_EQ(modem.bounds().top, 0);
    EXPECT_EQ(modem.bounds().left, 0);
    logs.eventLog().show();
    EXPECT_EQ(logs.eventLog().bounds().top, screenHeight * 9 / 10);
    EXPECT_EQ(logs.eventLog().bounds().left, 1500);
}

TEST_F(AppLogsTest, ModemLogCloseBoxHidesAndKeepsText)
{
    auto& modem = logs.modemLog();
    modem.show();
    logs.log_ModemEvent("/V", true);
    modem.requestClose();
    EXPECT_FALSE(modem.visible());
    EXPECT_TRUE(modem.loaded());
    modem.show();
    EXPECT_EQ(modem.rtfEvent.text(), "\n/V");
}

TEST_F(AppLogsTest, HiddenModemLogKeepsNothingAndCostsNothing)
{
    logs.log_ModemEvent("never created", false);
    EXPECT_FALSE(logs.hasModemLog());
    auto& modem = logs.modemLog();
    int changes = 0;
    modem.rtfEvent.setChangeListener([&](const ui::ChangeEvent&) { ++changes; });
    logs.log_ModemEvent("while hidden", false);
    EXPECT_EQ(modem.rtfEvent.text(), "");
    EXPECT_EQ(changes, 0);
}

class ModemLogTest : public AppLogsTest {
protected:
    ModemLogTest() { logs.modemLog().show(); }
    const std::vector<ui::TextRun>& runs() { return logs.modemLog().rtfEvent.runs(); }
};

TEST_F(ModemLogTest, DongleColoursMnemonicsAndLineBreaks)
{
    logs.log_ModemEvent("/W16 0F\r", true);
    logs.log_ModemEvent("", false);
    logs.log_ModemEvent(std::string("OK\r\n\x01\x02\x03\x04\x05\x06\x07\x17\x1b\x00\t!", 16), false);
    ASSERT_EQ(runs().size(), 2u);
    EXPECT_EQ(runs()[0].color, kModemSentColor);
    EXPECT_EQ(runs()[0].text, "\n/W16 0F<CR>");
    EXPECT_EQ(runs()[1].color, kModemReceivedColor);
    EXPECT_EQ(runs()[1].text, "\n\nOK<CR><LF><SOH><STX><ETX><EOT><ENQ><ACK><BEL><ETB><ESC><NUL>\t!");
    EXPECT_FALSE(logs.modemLog().lastTransmitted());
}

TEST_F(ModemLogTest, AdapterPrefixesAndStatusReadColours)
{
    globals.gTransport = kTransportUsbAdapter;
    const auto last = [&] { return runs().back(); };
    logs.log_ModemEvent("0B 3C 11 22", true);
    EXPECT_EQ(last().text, "\n<< 0B 3C 11 22");
    EXPECT_EQ(last().color, kModemSentColor);
    logs.log_ModemEvent("0B 3D 00 00 ", false);
    EXPECT_EQ(last().text, "\n>> 0B 3D 00 00 ");
    EXPECT_EQ(last().color, kModemAdapterReceivedColor);
    logs.log_ModemEvent("0B 3D 01 00", false);
    EXPECT_EQ(last().color, kModemReceivedColor);
    logs.log_ModemEvent("0B 3F 12 34", false);
    EXPECT_EQ(last().color, kModemAdapterReceivedColor);
    logs.log_ModemEvent("", false); // the prefix alone still shows
    EXPECT_TRUE(last().text.ends_with("0B 3F 12 34\n>> ")) << last().text;
}

} // namespace
} // namespace zv
