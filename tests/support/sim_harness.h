#pragma once
// The application's driver wired to the in-process pack simulator on the virtual clock: what the
// driver writes to its serial port reaches the simulated dongle, and the dongle's replies arrive
// at the virtual time they are due.

#include "core/globals.h"
#include "device/pack.h"
#include "driver/cls_main.h"
#include "frontends/inprocess_endpoint.h"
#include "platform/serial_settings.h"
#include "platform/testing/memory_serial_port.h"
#include "platform/testing/memory_settings_store.h"
#include "platform/testing/scripted_dialogs.h"
#include "platform/testing/virtual_event_loop.h"

#include <functional>
#include <memory>
#include <string>

namespace zv::test {

inline std::string programFolder()
{
    return ZENTAVIA_BINARY_DIR "/bin";
}

class SimHarness {
public:
    explicit SimHarness(
        zvsim::PackOptions packOptions = {}, zvsim::InProcessEndpoint::Options linkOptions = {})
        : pack(zvsim::makePack(packOptions))
    {
        globals.SMBusWriteAddress = static_cast<std::uint8_t>(packOptions.address7 << 1);
        replaceEndpoint(linkOptions);
        port.onOutput = [this](const std::string& bytes) {
            if (const auto line = platform::parseSerialSettings(port.settings()))
                endpoint->setLineBaud(line->baud);
            endpoint->write(bytes);
        };
        ticker = loop.createTimer();
        ticker->setInterval(100);
        ticker->onTick = [this] {
            endpoint->tick();
            if (endpoint->pulled() && port.portOpen())
                port.pull();
        };
        ticker->setEnabled(true);
    }

    // The driver, made on first use so that a test can set globals and settings first.
    clsMain& main()
    {
        if (!main_) {
            CellWeftServices services { port, loop, dialogs, settings, globals, programFolder() };
            services.readWriteLog = [this](std::string_view kind, std::string_view name,
                                        std::string_view number, std::string_view value) {
                readWriteLines.push_back(std::string(kind) + " " + std::string(name) + " "
                    + std::string(number) + " " + std::string(value));
            };
            if (adjustServices)
                adjustServices(services);
            main_ = std::make_unique<clsMain>(std::move(services), dialogs);
        }
        return *main_;
    }
    clsCellWeft& driver() { return main().CellWeft(); }

    // A new dongle in front of the same pack, its replies due on the virtual clock.
    void replaceEndpoint(const zvsim::InProcessEndpoint::Options& linkOptions)
    {
        endpoint = std::make_unique<zvsim::InProcessEndpoint>(
            *pack, [this] { return loop.milliseconds(); },
            [this](std::string bytes, std::int64_t dueMs) {
                loop.post(static_cast<int>(std::max<std::int64_t>(0, dueMs - loop.milliseconds())),
                    [this, bytes = std::move(bytes)] { port.deliver(bytes); });
            },
            linkOptions);
    }

    // What start-up does before the main window: link up, command set open, scaling, directory,
    // the target's configuration and its cells. False at the first step that fails.
    [[nodiscard]] bool connect(const std::string& target = "ZK9460")
    {
        if (!openLink() || !loadTarget(target))
            return false;
        driver().Parameters.UserAccessLevel = driver().Bus.GetAccessLevel();
        return true;
    }

    // The first steps of connect(): link up, device unlocked, command set open.
    [[nodiscard]] bool openLink()
    {
        auto& d = driver();
        return d.SMBus_Init() == 0 && d.Bus.UnlockDevice() == 0 && d.Bus.EnableUlmarCommandSet();
    }

    // The steps of connect() after the command set is open: scaling, directory, configuration, cells.
    [[nodiscard]] bool loadTarget(const std::string& target = "ZK9460")
    {
        auto& d = driver();
        if (!d.GetScaling() || !d.GetDir())
            return false;
        const std::string folder = programFolder() + "/Configuration Files/" + target + "/";
        d.Config.GatewayConfigFileName = folder + target + "_Master.cfg";
        d.Config.NodeConfigFileName = folder + target + "_Cell.cfg";
        return d.readConfig(1) == 0 && d.RebuildLAN(true) && d.readConfig(2) <= 2;
    }

    platform::VirtualEventLoop loop;
    platform::MemorySerialPort port;
    platform::ScriptedDialogs dialogs;
    platform::MemorySettingsStore settings;
    AppGlobals globals;
    std::unique_ptr<zvsim::Pack> pack;
    std::unique_ptr<zvsim::InProcessEndpoint> endpoint;
    std::unique_ptr<platform::Timer> ticker;
    std::vector<std::string> readWriteLines;
    // Changes the driver's services before the driver is made (another transport, for instance).
    std::function<void(CellWeftServices&)> adjustServices;

private:
    std::unique_ptr<clsMain> main_;
};

} // namespace zv::test
