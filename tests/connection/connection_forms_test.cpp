// Every control of the three dialogs finds its widget in the Qt form.

#include "connection/frm_comm_port.h"
#include "connection/frm_comm_port_error.h"
#include "connection/frm_smbus_address.h"
#include "connection_fixture.h"
#include "qt/binder.h"
#include "qt/connection_forms.h"

#include "ui/widgets_app.h"

#include <gtest/gtest.h>

using namespace zv;

TEST(ConnectionForms, EveryControlHasItsWidget)
{
    test::ensureWidgets();
    test::ConnectionFixture f;
    frmCommPortError error(f.services(), nullptr);
    frmCommPort port(f.services(), nullptr, nullptr);
    frmSMBusAddress address({ f.sim.globals, f.sim.dialogs, nullptr, nullptr, nullptr });
    qt::Binder binder;
    for (platform::ui::Window* window :
        std::initializer_list<platform::ui::Window*> { &error, &port, &address }) {
        auto form = qt::makeConnectionForm(window->name());
        ASSERT_NE(form, nullptr) << window->name();
        EXPECT_TRUE(form->isModal()) << window->name();
        EXPECT_EQ(binder.bind(*window, std::move(form)), std::vector<std::string> {}) << window->name();
    }
    EXPECT_EQ(qt::makeConnectionForm("frmMain"), nullptr);
}
