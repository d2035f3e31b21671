// The Qt forms of the calibration windows: every control finds its widget, and the entry rules
// reach the typed keys.

#include "calibration/calibration_mode.h"
#include "calibration/frm_470_cal.h"
#include "calibration/frm_calibration.h"
#include "qt/binder.h"
#include "qt/calibration_forms.h"
#include "support/sim_harness.h"
#include "ui/widgets_app.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace zv::test {
namespace {

TEST(CalibrationForms, EveryControlBindsAndTheKeysFollowTheRules)
{
    ensureWidgets();
    SimHarness h;
    ASSERT_TRUE(h.connect());
    CalibrationMode mode(h.driver(), h.dialogs, {});
    frmCalibration calibration({ h.driver(), h.globals, h.loop, mode });
    frm470Cal wizard({ h.driver(), h.loop, mode });
    qt::Binder binder;
    for (platform::ui::Window* window :
        { static_cast<platform::ui::Window*>(&calibration), static_cast<platform::ui::Window*>(&wizard) }) {
        auto form = qt::makeCalibrationFormFor(*window);
        ASSERT_NE(form, nullptr) << window->name();
        EXPECT_TRUE(form->isModal());
        EXPECT_EQ(binder.bind(*window, std::move(form)), std::vector<std::string> {}) << window->name();
    }

    // Letters do not reach txtAmps; Enter presses its button. The pack is not in calibration mode
    // here, so it refuses the step.
    auto* amps = binder.widgetOf(calibration)->findChild<QLineEdit*>("txtAmps");
    ASSERT_NE(amps, nullptr);
    for (const QString& key : { QString("a"), QString("-"), QString("5") }) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, key);
        QCoreApplication::sendEvent(amps, &press);
    }
    EXPECT_EQ(calibration.txtAmps.text(), "-5");
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(amps, &enter);
    EXPECT_EQ(calibration.txtStatus.text(), "Sending current gain calibration data [-5 mA]... failed\n");

    // The wizard's Actual fields take digits and "-" only.
    auto* actual = binder.widgetOf(wizard)->findChild<QLineEdit*>("txtVoltageCalLow(3)");
    ASSERT_NE(actual, nullptr);
    for (const QString& key : { QString("3"), QString("."), QString("9") }) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, key);
        QCoreApplication::sendEvent(actual, &press);
    }
    EXPECT_EQ(wizard.txtVoltageCalLow[3]->text(), "39");
}

} // namespace
} // namespace zv::test
