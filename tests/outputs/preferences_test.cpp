// The preferences dialog: what it shows, what OK stores and reads back, the refresh of the main
// window, and Cancel storing nothing.

#include "core/globals.h"
#include "core/registry.h"
#include "outputs/frm_preferences.h"
#include "outputs/output_services.h"
#include "platform/testing/memory_settings_store.h"
#include "platform/testing/scripted_dialogs.h"
#include "platform/testing/virtual_event_loop.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

class PreferencesTest : public ::testing::Test {
protected:
    PreferencesTest()
    {
        s.monitor.resetXY = [this] { steps.push_back("ResetXY"); };
        s.monitor.readSelected = [this] { steps.push_back("Parameters_ReadSelected"); };
        s.monitor.loadTabs = [this] { steps.push_back("LoadTabs"); };
        s.monitor.requestRefresh = [this] { steps.push_back("refresh"); };
        globals.settings = readStartupSettings(store, "/app");
        form.load();
    }

    std::string stored(const char* name) const { return store.value(std::string(kMainKey), name); }

    AppGlobals globals;
    platform::MemorySettingsStore store;
    platform::ScriptedDialogs dialogs;
    platform::VirtualEventLoop loop;
    OutputServices s { globals, store, dialogs, loop, "/app" };
    std::vector<std::string> steps;
    frmPreferences form { s };
};

} // namespace

TEST_F(PreferencesTest, ShowsTheSettingsInUse)
{
    EXPECT_EQ(form.caption(), "Zentavia - Preferences");
    EXPECT_EQ(form.optTemperatureUnits.items(), (std::vector<std::string> { "Celsius", "Kelvin" }));
    EXPECT_EQ(form.optTemperatureUnits.listIndex(), 0);
    EXPECT_EQ(form.chkReadWrite.caption(), "Disable Read and Write logging");
    EXPECT_EQ(form.chkReadWrite.value(), 1);
    EXPECT_EQ(form.chkStaticLog.value(), 1);
    EXPECT_EQ(form.chkChargerMode.value(), 1);
    EXPECT_EQ(form.chkAlarmMode.value(), 0);
    EXPECT_EQ(form.color(2), 0xFFF8F0u) << "the default \"&HFFF8F0\"";
    EXPECT_EQ(form.shpColor[2].foreColor(), 0xFFF8F0u);
}

TEST_F(PreferencesTest, OkStoresTheEightSettingsAndRefreshesTheMainWindow)
{
    form.optTemperatureUnits.userSelect(1);
    form.chkReadWrite.userClick();
    form.chkStaticLog.userClick();
    form.chkChargerMode.userClick();
    form.chkAlarmMode.userClick();
    dialogs.answerColor(0x0000FF);
    form.picColor[0].click();
    EXPECT_EQ(dialogs.lastShown().initialColor, 0u);
    dialogs.answerColor(0x00FF00);
    form.picColor[1].click();
    dialogs.answerColor(std::nullopt);
    form.picColor[2].click();
    EXPECT_EQ(form.shpColor[0].foreColor(), 0x0000FFu);

    form.cmdOK.click();
    EXPECT_FALSE(form.loaded());
    EXPECT_EQ(stored("TemperatureUnits"), "0");
    EXPECT_EQ(stored("ReadWriteLogging"), "0");
    EXPECT_EQ(stored("StaticDataCapture"), "0");
    EXPECT_EQ(stored("ChargerMode"), "0");
    EXPECT_EQ(stored("AlarmMode"), "1");
    EXPECT_EQ(stored("ForeColor1"), "255");
    EXPECT_EQ(stored("ForeColor2"), "65280");
    EXPECT_EQ(stored("AlternateRowColor"), "16775408") << "a cancelled colour dialog keeps the colour";

    // The program goes on with the new values.
    const StartupSettings& now = globals.settings;
    EXPECT_EQ(now.TemperatureUnits, 0);
    EXPECT_FALSE(now.ReadWriteLogging);
    EXPECT_FALSE(now.StaticDataCapture);
    EXPECT_EQ(now.ChargerMode, 0);
    EXPECT_EQ(now.AlarmMode, 1);
    EXPECT_EQ(now.ForeColor1, 0x0000FFu);
    EXPECT_EQ(now.ForeColor2, 0x00FF00u);
    EXPECT_EQ(now.AlternateRowColor, 0xFFF8F0u);
    EXPECT_EQ(steps, (std::vector<std::string> { "ResetXY", "Parameters_ReadSelected", "LoadTabs" }));

    // Shown again it starts from the new values; during a poll the refresh flag is set too.
    form.load();
    EXPECT_EQ(form.optTemperatureUnits.listIndex(), 1);
    EXPECT_EQ(form.chkAlarmMode.value(), 1);
    globals.PollingActive = true;
    steps.clear();
    form.cmdOK.click();
    EXPECT_EQ(steps.back(), "refresh");
}

TEST_F(PreferencesTest, CancelStoresNothing)
{
    form.chkAlarmMode.userClick();
    dialogs.answerColor(0x123456);
    form.picColor[0].click();
    form.cmdCancel.click();
    EXPECT_FALSE(form.loaded());
    EXPECT_EQ(stored("AlarmMode"), "");
    EXPECT_EQ(stored("ForeColor1"), "");
    EXPECT_EQ(globals.settings.AlarmMode, 0);
    EXPECT_TRUE(steps.empty());

    form.load();
    EXPECT_EQ(form.chkAlarmMode.value(), 0) << "the dialog shows the stored settings again";
    EXPECT_EQ(form.color(0), 0u);
}
