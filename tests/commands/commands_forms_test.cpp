// Every control of frmSafeDisconnect finds its widget in the Qt form, and its close box keeps it.

#include "commands/frm_safe_disconnect.h"
#include "platform/testing/virtual_event_loop.h"
#include "qt/binder.h"
#include "qt/commands_forms.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace zv::test {
namespace {

void ensureApplication()
{
    static int argc = 1;
    static char name[] = "test_commands";
    static char* argv[] = { name, nullptr };
    if (!QApplication::instance())
        new QApplication(argc, argv);
}

TEST(CommandsForms, SafeDisconnectBindsAndCannotBeClosedByTheUser)
{
    ensureApplication();
    platform::VirtualEventLoop loop;
    frmSafeDisconnect window({ loop, [] { return true; }, {} });
    auto form = qt::makeCommandsFormFor(window.name());
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->isModal());
    EXPECT_FALSE(form->windowFlags().testFlag(Qt::WindowCloseButtonHint));
    qt::Binder binder;
    EXPECT_EQ(binder.bind(window, std::move(form)), std::vector<std::string> {});
    window.show();
    window.requestClose();
    EXPECT_TRUE(window.visible());
    EXPECT_EQ(qt::makeCommandsFormFor("frmMain"), nullptr);
}

} // namespace
} // namespace zv::test
