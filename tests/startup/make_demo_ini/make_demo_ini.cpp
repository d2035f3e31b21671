// zentavia-make-demo-ini PATH: writes the demo capture of a simulated pack (target 1001) to PATH
// through the application's own detection and capture. data/demo.ini is made with it.

#include "core/active_form.h"
#include "startup/demo_capture.h"
#include "startup/target_detection.h"
#include "support/sim_harness.h"

#include <iostream>

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::cerr << "usage: zentavia-make-demo-ini PATH\n";
        return 2;
    }
    zv::test::SimHarness sim;
    sim.globals.gINIFile = zv::test::programFolder() + "/Zentavia.ini";
    zv::ActiveForm activeForm;
    zv::frmSplash splash(sim.loop, {});
    zv::DetectionHooks hooks;
    hooks.showMainForm = [] {};
    zv::TargetDetection detection(
        { sim.globals, sim.loop, sim.dialogs, sim.settings, zv::test::programFolder(), activeForm, splash },
        hooks);
    detection.setMain(&sim.main());
    if (sim.driver().SMBus_Init() != 0 || detection.DetectTarget(false) != zv::detect::kLoaded) {
        std::cerr << "zentavia-make-demo-ini: the simulated pack did not load\n";
        return 1;
    }
    sim.globals.gDemoFile = argv[1];
    if (!zv::GenerateDemoINI(sim.driver(), sim.globals, {})) {
        std::cerr << "zentavia-make-demo-ini: the capture failed\n";
        return 1;
    }
    std::cout << "demo capture of target " << sim.globals.gTargetID << " written to " << argv[1] << "\n";
    return 0;
}
