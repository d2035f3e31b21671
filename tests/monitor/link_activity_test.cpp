// The main window's view of the link while it works: the progress bar of a read of all
// parameters, and the "HLK" panel's activity that goes back to "Idle" once the line is quiet.

#include "monitor_fixture.h"

#include "platform/event_loop.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(LinkActivity, ReadAllShowsItsProgressAndTheLinkLightGoesIdleAfterwards)
{
    test::MonitorRig rig;
    ASSERT_TRUE(rig.load());
    frmMain& f = *rig.form;
    std::vector<std::string> captions;
    std::vector<std::string> pictures;
    f.picProgress.setChangeListener([&](const platform::ui::ChangeEvent& e) {
        if (e.what == platform::ui::Change::Caption && !f.picProgress.caption().empty())
            captions.push_back(f.picProgress.caption());
    });
    f.sbStatusBar.setChangeListener([&](const platform::ui::ChangeEvent&) {
        const auto& panels = f.sbStatusBar.panels();
        for (const auto& panel : panels)
            if (panel.key == kHlkPanel && (pictures.empty() || pictures.back() != panel.picture))
                pictures.push_back(panel.picture);
    });

    ASSERT_TRUE(rig.monitor->edits.Parameters_ReadAll());
    ASSERT_GT(captions.size(), 2u);
    EXPECT_EQ(captions.back(), "Reading Parameters 100 %");
    const std::string middle = captions[captions.size() / 2];
    EXPECT_EQ(middle.rfind("Reading Parameters ", 0), 0u) << middle;
    EXPECT_NE(middle, captions.back());
    EXPECT_FALSE(f.picProgress.visible()) << "StartAndStopProgress hides the bar at 100";
    EXPECT_EQ(f.picProgress.value(), 0);

    EXPECT_EQ(f.sbStatusBar.panelText(kHlkPanel), "Communicating");
    EXPECT_NE(std::find(pictures.begin(), pictures.end(), "netBoth"), pictures.end());
    EXPECT_TRUE(rig.h.main().RXActivity && rig.h.main().TXActivity);
    rig.h.loop.advance(kCommStatusMs + 10);
    EXPECT_EQ(f.sbStatusBar.panelText(kHlkPanel), "Idle");
    EXPECT_EQ(pictures.back(), "netNone");
    EXPECT_FALSE(rig.h.main().RXActivity || rig.h.main().TXActivity);
    EXPECT_FALSE(rig.monitor->activity.tmrCommStatus().enabled());
}

TEST(LinkActivity, ALostLinkKeepsItsPanelWhenTheLineGoesQuiet)
{
    test::MonitorRig rig;
    ASSERT_TRUE(rig.load());
    std::string text;
    (void)rig.h.driver().GetFile(5, text);
    rig.form->sbStatusBar.setPanelPicture(kHlkPanel, "netTimeout");
    rig.form->sbStatusBar.setPanelText(kHlkPanel, "Lost Comms");
    rig.h.loop.advance(kCommStatusMs + 10);
    EXPECT_EQ(rig.form->sbStatusBar.panelText(kHlkPanel), "Lost Comms");
    EXPECT_FALSE(rig.monitor->activity.tmrCommStatus().enabled());
}

} // namespace
} // namespace zv
