// The BootStrap Loader form binds every control of frmBootStrapLoader; on a pack in its
// application loader the widgets show the title suffix, the verification and the buttons' states.

#include "firmware_loader/frm_boot_strap_loader.h"
#include "qt/binder.h"
#include "qt/loader_form.h"
#include "qt/status_panel_label.h"
#include "support/sim_harness.h"
#include "ui/widgets_app.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>

#include <gtest/gtest.h>

namespace zv::qt {
namespace {

TEST(LoaderForm, EveryControlFindsItsWidgetAndTheLoaderStateShows)
{
    test::ensureWidgets();
    zvsim::PackOptions options;
    options.targetId = 0x1003;
    options.state = zvsim::PackState::AppLoader;
    test::SimHarness sim(options);
    sim.globals.gINIFile = test::programFolder() + "/Zentavia.ini";
    ASSERT_TRUE(sim.openLink());
    frmBootStrapLoader loader(
        { LoaderServices { sim.main(), sim.globals, sim.loop, sim.dialogs, test::programFolder() },
            sim.settings });
    Binder binder;
    const auto unbound = binder.bind(loader, makeBootStrapLoaderForm());
    EXPECT_TRUE(unbound.empty()) << unbound.front();
    loader.show();

    QWidget* form = binder.widgetOf(loader);
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->windowTitle().toStdString(), "Zentavia BootStrap Loader [System]");
    EXPECT_EQ(form->findChild<QLabel*>("lblAppFFileVersion")->text().toStdString(), "0");
    EXPECT_EQ(form->findChild<QLabel*>("lblFile")->text().toStdString(), "n/a");
    EXPECT_FALSE(form->findChild<QPushButton*>("cmdDownload")->isEnabled());
    EXPECT_FALSE(form->findChild<QAction*>("mnuDownload")->isEnabled());
    EXPECT_TRUE(form->findChild<QPushButton*>("cmdLoadImage")->isEnabled());
    EXPECT_FALSE(form->findChild<QWidget*>("chkPreserve")->isVisible()) << "target 1003";
    const auto* status = form->findChild<QStatusBar*>("sbStatusBar");
    ASSERT_NE(status, nullptr);
    bool shown = false;
    for (auto* child : status->findChildren<QWidget*>())
        if (const auto* panel = dynamic_cast<const StatusPanelLabel*>(child))
            shown = shown || panel->text() == "Application memory failed to verify";
    EXPECT_TRUE(shown) << "the Info panel";
}

} // namespace
} // namespace zv::qt
