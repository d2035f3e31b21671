#pragma once
// The main window with the live monitor on the in-process pack simulator, loaded as start-up
// leaves it: target found, cells built, LoadMainForm run.

#include "main_form_fixture.h"
#include "monitor/monitor.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace zv::test {

struct MonitorTarget {
    std::uint16_t packId = 0x1001;
    std::string id = "1001";
    std::string name = "ZK9460";
    std::string section = "T1";
    int cells = 0; // 0: the target's own count
};

inline const MonitorTarget kTarget1002 { 0x1002, "1002", "ZK9460S12", "T2" };

class MonitorRig : public MainFormServices {
public:
    explicit MonitorRig(const MonitorTarget& target = {}, int level = 3)
        : MainFormServices(packOptions(target, level))
        , target_(target)
    {
        form = std::make_unique<frmMain>(
            MainFormContext { h.globals, h.settings, h.dialogs, logs, programFolder(), &desktop });
        activeForm.setMainForm(form.get());
        activeForm.set(form.get());
        monitor = std::make_unique<Monitor>(MonitorContext { *form, h.main(), h.globals, h.settings,
            h.dialogs, h.loop, programFolder(), [this] { return activeForm.get() == form.get(); } });
        // No process priority change from a test.
        monitor->poll.setHighPriority = [this](bool high) { highPriority = high; };
    }

    // Start-up's part: the target and its cells, then LoadMainForm.
    [[nodiscard]] bool load()
    {
        if (!h.connect(target_.name))
            return false;
        AppGlobals& g = h.globals;
        g.gTargetID = target_.id;
        g.gTargetName = target_.name;
        g.gTargetSection = target_.section;
        g.gINIFile = programFolder() + "/Zentavia.ini";
        g.gNodeCount = static_cast<std::uint8_t>(h.driver().nodes.Count());
        form->LoadMainForm(h.main());
        return true;
    }

    void failDevice(bool on) { h.pack->faults().noAckRate = on ? 1.0 : 0.0; }
    [[nodiscard]] std::string info() const { return form->sbStatusBar.panelText(kInfoPanel); }

    RecordingDesktop desktop;
    std::unique_ptr<frmMain> form;
    std::unique_ptr<Monitor> monitor;
    bool highPriority = false;

private:
    static zvsim::PackOptions packOptions(const MonitorTarget& target, int level)
    {
        zvsim::PackOptions options;
        options.targetId = target.packId;
        options.level = level;
        options.cells = target.cells;
        return options;
    }
    MonitorTarget target_;
};

} // namespace zv::test
