// The Qt form of the preferences dialog binds every control, and the user's clicks reach them.

#include "core/globals.h"
#include "outputs/frm_preferences.h"
#include "outputs/output_services.h"
#include "platform/testing/memory_settings_store.h"
#include "platform/testing/scripted_dialogs.h"
#include "platform/testing/virtual_event_loop.h"
#include "qt/binder.h"
#include "qt/log_forms.h"

#include "ui/widgets_app.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>

#include <gtest/gtest.h>

namespace zv::qt {

TEST(PreferencesForm, EveryControlFindsItsWidgetAndClicksReachThem)
{
    test::ensureWidgets();
    AppGlobals globals;
    platform::MemorySettingsStore store;
    platform::ScriptedDialogs dialogs;
    platform::VirtualEventLoop loop;
    OutputServices services { globals, store, dialogs, loop, "/app" };
    frmPreferences preferences(services);
    Binder binder;
    const auto unbound = binder.bind(preferences, makeFormFor(preferences.name()));
    EXPECT_TRUE(unbound.empty()) << unbound.front();
    preferences.show();

    QWidget* form = binder.widgetOf(preferences);
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->isModal());
    EXPECT_EQ(form->windowTitle(), "Zentavia - Preferences");
    auto* alarm = form->findChild<QCheckBox*>("chkAlarmMode");
    EXPECT_EQ(alarm->text(), "Alarm Mode");
    alarm->click();
    EXPECT_EQ(preferences.chkAlarmMode.value(), 1);
    const auto radios = form->findChildren<QRadioButton*>();
    ASSERT_EQ(radios.size(), 2);
    EXPECT_TRUE(radios[0]->isChecked()) << "Celsius";
    radios[1]->click();
    EXPECT_EQ(preferences.optTemperatureUnits.listIndex(), 1);
    EXPECT_EQ(form->findChild<QLabel*>("shpColor3")->palette().color(QPalette::WindowText),
        QColor(0xF0, 0xF8, 0xFF));
}

} // namespace zv::qt
