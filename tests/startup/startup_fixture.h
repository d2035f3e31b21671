#pragma once
// The start-up against the in-process pack: the splash, the detection and the start sequence
// with hooks that record what the main window and the other windows were asked to do.

#include "core/active_form.h"
#include "startup/start_application.h"
#include "support/sim_harness.h"

#include <string>
#include <vector>

namespace zv::test {

class StartupFixture {
public:
    explicit StartupFixture(zvsim::PackOptions options = {})
        : sim(options)
    {
        sim.globals.gINIFile = programFolder() + "/Zentavia.ini";
        sim.globals.gDemoFile = programFolder() + "/demo.ini";
    }

    DetectionHooks hooks()
    {
        DetectionHooks h;
        h.mainFormLoaded = [this] { return mainShown; };
        h.showMainForm = [this] {
            mainShown = true;
            calls.push_back("showMainForm");
        };
        h.hideMainForm = [this] {
            mainShown = false;
            calls.push_back("hideMainForm");
        };
        h.loadMainForm = [this] { calls.push_back("loadMainForm"); };
        h.openLogin = [this] { calls.push_back("openLogin"); };
        h.openBootStrapLoader = [this] { calls.push_back("openBootStrapLoader"); };
        return h;
    }

    DetectionServices services()
    {
        return { sim.globals, sim.loop, sim.dialogs, sim.settings, programFolder(), activeForm, splash };
    }

    // The detection on the harness's driver.
    TargetDetection& detection()
    {
        if (!detection_) {
            detection_ = std::make_unique<TargetDetection>(services(), hooks());
            detection_->setMain(&sim.main());
        }
        return *detection_;
    }

    [[nodiscard]] bool called(const std::string& name) const
    {
        return std::find(calls.begin(), calls.end(), name) != calls.end();
    }

    SimHarness sim;
    ActiveForm activeForm;
    frmSplash splash { sim.loop, "Version 3.0.0" };
    bool mainShown = false;
    std::vector<std::string> calls;

private:
    std::unique_ptr<TargetDetection> detection_;
};

} // namespace zv::test
