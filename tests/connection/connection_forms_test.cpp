// Every control of the three dialogs finds its widget in the Qt form, and the binder carries the
// user's clicks to the logic.

#include "connection/frm_comm_port.h"
#include "connection/frm_comm_port_error.h"
#include "connection/frm_smbus_address.h"
#include "connection_fixture.h"
#include "qt/binder.h"
#include "qt/connection_forms.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace zv;

namespace {

void ensureApplication()
{
    static int argc = 1;
    static char name[] = "test_connection";
    static char* argv[] = { name, nullptr };
    if (!QApplication::instance())
        new QApplication(argc, argv);
}

} // namespace

TEST(ConnectionForms, EveryControlHasItsWidget)
{
    ensureApplication();
    test::ConnectionFixture f;
    frmCommPortError error(f.services(), nullptr);
    frmCommPort port(f.services(), nullptr, nullptr);
    frmSMBusAddress address({ f.sim.globals, f.sim.dialogs, nullptr, nullptr, nullptr });
    qt::Binder binder;
    for (platform::ui::Window* window : std::initializer_list<platform::ui::Window*> { &error, &port, &address }) {
        auto form = qt::makeConnectionForm(window->name());
        ASSERT_NE(form, nullptr) << window->name();
        EXPECT_TRUE(form->isModal()) << window->name();
        EXPECT_EQ(binder.bind(*window, std::move(form)), std::vector<std::string> {}) << window->name();
    }
    EXPECT_EQ(qt::makeConnectionForm("frmMain"), nullptr);
}

TEST(ConnectionForms, TheUsersChoiceReachesTheLogic)
{
    ensureApplication();
    test::ConnectionFixture f(1, 2);
    f.present = { 2 };
    qt::Binder binder;
    frmCommPortError form(f.services(), [&](platform::ui::Window& window) {
        window.show();
        auto* widget = binder.widgetOf(window);
        ASSERT_TRUE(widget->isVisible());
        EXPECT_EQ(widget->windowTitle(), "Zentavia - Communications Error");
        EXPECT_EQ(widget->findChild<QLabel*>("lblErrorDescription")->text(), "8");
        auto* ports = widget->findChild<QComboBox*>("cmbCommPort");
        ASSERT_EQ(ports->count(), 2);
        ports->activated(1);
        widget->findChild<QPushButton*>("cmdConnect")->click();
        EXPECT_FALSE(widget->isVisible());
    });
    (void)binder.bind(form, qt::makeCommPortErrorForm());
    EXPECT_EQ(form.CommPortError(8), CommPortChoice::Connected);
    EXPECT_EQ(f.sim.driver().Link.SMBusCommPort, 2);
}
