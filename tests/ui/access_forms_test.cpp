// The login and level password forms bind every control, and what the user types reaches them.

#include "access/frm_login.h"
#include "access/frm_user_access_level.h"
#include "access/login.h"
#include "qt/binder.h"
#include "qt/log_forms.h"
#include "support/sim_harness.h"
#include "ui/widgets_app.h"

#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace zv::qt {

TEST(AccessForms, EveryControlFindsItsWidget)
{
    test::ensureWidgets();
    test::SimHarness sim;
    sim.globals.gTargetID = "1001";
    UserAccess access({ sim.main(), sim.globals, sim.dialogs, busCommandLock(sim.driver().Bus) }, {});
    Binder binder;
    std::vector<std::string> unbound;
    access.onWindowCreated = [&](platform::ui::Window& window) {
        auto names = binder.bind(window, makeFormFor(window.name()));
        unbound.insert(unbound.end(), names.begin(), names.end());
    };
    (void)access.userAccessLevel();
    access.OpenLogin();
    EXPECT_TRUE(unbound.empty()) << unbound.front();

    QWidget* form = binder.widgetOf(access.login());
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->isModal());
    EXPECT_EQ(form->windowTitle(), "Zentavia - Device Sealed");
    auto* password = form->findChild<QLineEdit*>("txtPassword");
    EXPECT_EQ(password->maxLength(), kPasswordLength);
    password->setText("engineer");
    Q_EMIT password->textEdited(password->text());
    EXPECT_EQ(access.login().txtPassword.text(), "engineer");
    form->findChild<QPushButton*>("btnCancel")->click();
    EXPECT_FALSE(form->isVisible());
}

} // namespace zv::qt
