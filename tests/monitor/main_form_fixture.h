#pragma once
// frmMain with its services: the driver on the in-process simulator, the application logs, the
// scripted dialogs and a desktop that records what it was asked to open.

#include "core/active_form.h"
#include "core/app_logs.h"
#include "monitor/frm_main.h"
#include "platform/desktop.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace zv::test {

class RecordingDesktop : public platform::Desktop {
public:
    bool openExternal(const std::string& pathOrUrl) override
    {
        opened.push_back(pathOrUrl);
        return starts;
    }
    std::vector<std::string> opened;
    bool starts = true;
};

// What frmMain is made with besides its own folder and desktop.
struct MainFormServices {
    explicit MainFormServices(zvsim::PackOptions pack = {})
        : h(pack)
    {
    }

    SimHarness h;
    ActiveForm activeForm;
    LogWindowContext logContext { h.settings,
        [] {
            return platform::ui::ScreenSize { 28800, 16200 };
        },
        programFolder() };
    AppLogs logs { h.globals, logContext, h.loop, activeForm };
};

class MainFormTest : public ::testing::Test, protected MainFormServices {
protected:
    // The window reads its program folder when it is made.
    frmMain& makeForm(const std::string& folder = programFolder())
    {
        made = std::make_unique<frmMain>(
            MainFormContext { h.globals, h.settings, h.dialogs, logs, folder, &desktop });
        activeForm.setMainForm(made.get());
        activeForm.set(made.get());
        return *made;
    }

    RecordingDesktop desktop;
    std::unique_ptr<frmMain> made;
};

} // namespace zv::test
