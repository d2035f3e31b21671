#pragma once
// The port dialogs wired to the driver and the in-process simulator, with a fake port prober and
// the dongle on one chosen port only.

#include "connection/port_dialog_services.h"
#include "support/sim_harness.h"

#include <functional>
#include <set>
#include <vector>

namespace zv::test {

class ConnectionFixture {
public:
    // The driver starts on currentPort; only donglePort has a dongle behind it.
    explicit ConnectionFixture(int currentPort = 1, int donglePort = 1)
    {
        sim.globals.settings.CommPort = currentPort;
        auto toDongle = std::move(sim.port.onOutput);
        sim.port.onOutput = [this, donglePort, toDongle = std::move(toDongle)](const std::string& bytes) {
            if (sim.port.commPort() == donglePort)
                toDongle(bytes);
        };
    }

    PortDialogServices services()
    {
        return { sim.driver(), sim.globals, sim.settings, sim.dialogs, programFolder(),
            [this](int port) {
                probed.push_back(port);
                return present.count(port) > 0;
            },
            [this](bool busy) { busyPointer.push_back(busy); }, errors };
    }

    // Shows the window and runs the test's actions as the user's while it is open.
    platform::ui::ShowModal whileShown(std::function<void()> actions)
    {
        return [this, actions = std::move(actions)](platform::ui::Window& window) {
            window.show();
            ++shownCount;
            actions();
        };
    }

    SimHarness sim;
    std::set<int> present;
    std::vector<int> probed;
    std::vector<bool> busyPointer;
    ErrorHandler* errors = nullptr;
    int shownCount = 0;
};

} // namespace zv::test
