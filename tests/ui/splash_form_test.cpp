// The splash form binds every control of frmSplash, and its buttons reach the logic window.

#include "platform/testing/virtual_event_loop.h"
#include "qt/binder.h"
#include "qt/splash_form.h"
#include "startup/frm_splash.h"
#include "ui/widgets_app.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace zv::qt {
namespace {

TEST(SplashForm, EveryControlFindsItsWidgetAndTheFaultScreenShowsItsButtons)
{
    test::ensureWidgets();
    platform::VirtualEventLoop loop;
    frmSplash splash(loop, "Version 3.0.0");
    Binder binder;
    const auto unbound = binder.bind(splash, makeSplashForm());
    EXPECT_TRUE(unbound.empty()) << unbound.front();
    splash.show();

    QWidget* form = binder.widgetOf(splash);
    ASSERT_NE(form, nullptr);
    auto* restart = form->findChild<QPushButton*>("btnRestart");
    ASSERT_NE(restart, nullptr);
    EXPECT_FALSE(restart->isVisible());

    splash.showFault(StartupFault::UnableToConnect);
    EXPECT_TRUE(restart->isVisible());
    EXPECT_EQ(form->findChild<QLabel*>("lblStatus")->text().toStdString(),
        "Unable to connect to device\r\nPlease check power and the connections to the hardware.");

    bool restarted = false;
    splash.btnRestart.onClick = [&] { restarted = true; };
    restart->click();
    EXPECT_TRUE(restarted);

    splash.showTargetChoice("unsupported", { "ZK9460", "ZK9470" });
    EXPECT_EQ(form->findChild<QComboBox*>("cmbTarget")->count(), 2);
}

} // namespace
} // namespace zv::qt
