// Every control of frmSafeDisconnect finds its widget in the Qt form, and its close box keeps it.

#include "commands/frm_safe_disconnect.h"
#include "platform/testing/virtual_event_loop.h"
#include "qt/binder.h"
#include "qt/commands_forms.h"
#include "ui/widgets_app.h"

#include <gtest/gtest.h>

namespace zv::test {
namespace {

TEST(CommandsForms, SafeDisconnectBindsAndCannotBeClosedByTheUser)
{
    ensureWidgets();
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
