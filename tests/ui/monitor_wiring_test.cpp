// The main window's monitor wiring: the windows it opens modally have their Qt forms, so the modal
// wait ends when the user answers; a window without a form fails loudly instead of waiting forever.

#include "../monitor/main_form_fixture.h"
#include "widgets_app.h"

#include "outputs/frm_preferences.h"
#include "platform/testing/virtual_event_loop.h"
#include "platform/ui/show_modal.h"
#include "qt/binder.h"
#include "qt/log_forms.h"
#include "qt/monitor_wiring.h"

#include <QWidget>

#include <stdexcept>

namespace zv::test {
namespace {

class MonitorWiringTest : public MainFormTest {
protected:
    void SetUp() override { ensureWidgets(); }

    qt::MonitorWiring& wire()
    {
        frmMain& form = makeForm();
        MonitorContext context { form, h.main(), h.globals, h.settings, h.dialogs, h.loop, programFolder(),
            [] { return true; }, nullptr };
        qt::MonitorWiringServices services { std::move(context), binder, [] {
                                                return platform::ui::ScreenSize { 28800, 16200 };
                                            } };
        services.bindWindow = [this](platform::ui::Window& window) {
            if (auto widget = qt::makeFormFor(window.name()))
                (void)binder.bind(window, std::move(widget));
        };
        wiring = std::make_unique<qt::MonitorWiring>(std::move(services));
        return *wiring;
    }

    qt::Binder binder;
    std::unique_ptr<qt::MonitorWiring> wiring;
};

TEST_F(MonitorWiringTest, PreferencesOpensItsFormAndTheModalWaitEndsWithOk)
{
    qt::MonitorWiring& w = wire();
    frmPreferences& preferences = w.outputs().preferences;
    ASSERT_NE(binder.widgetOf(preferences), nullptr) << "the window has its form";

    bool shownWhileWaiting = false;
    h.loop.post(1500, [&] {
        shownWhileWaiting = preferences.visible() && binder.widgetOf(preferences)->isVisible();
        preferences.cmdOK.click();
    });
    made->mnuPreferences.click();
    EXPECT_TRUE(shownWhileWaiting);
    EXPECT_FALSE(preferences.visible());
    EXPECT_GE(h.loop.milliseconds(), 1500);
}

TEST(ShowModal, AWindowWithoutAFormFailsLoudlyAndAnEndingProgramEndsTheWait)
{
    platform::VirtualEventLoop loop;
    platform::ui::Window lonely("frmLonely");
    const auto modal = platform::ui::eventLoopModal(loop);
    EXPECT_THROW(modal(lonely), std::logic_error);
    EXPECT_EQ(loop.milliseconds(), 0) << "no wait began";

    lonely.setChangeListener([](const platform::ui::ChangeEvent&) {});
    loop.post(2000, [&] { loop.setEnding(true); });
    modal(lonely);
    EXPECT_FALSE(lonely.visible()) << "the program ends: the window goes, the wait with it";
    EXPECT_EQ(loop.milliseconds(), 2000);
}

} // namespace
} // namespace zv::test
