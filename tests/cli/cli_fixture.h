#pragma once
// zentavia-cli runs against the in-process pack simulator on the virtual clock: the command line
// in, what went to stdout and stderr and the exit status out.

#include "cli/cli_runner.h"
#include "cli/cli_settings_store.h"
#include "support/sim_harness.h"
#include "usb/sim_usb_adapter.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace zv::test {

struct CliRun {
    int status = -1;
    std::string out;
    std::string err;
};

// The pack and the seams of one or more runs.
class CliRig {
public:
    explicit CliRig(zvsim::PackOptions options = {})
        : sim(options)
    {
        // The directory cache of these runs lives and dies with the rig.
        std::filesystem::remove_all(cacheHome);
        ::setenv("XDG_CACHE_HOME", cacheHome.c_str(), 1);
    }
    ~CliRig()
    {
        std::error_code error;
        std::filesystem::remove_all(cacheHome, error);
    }
    CliRig(const CliRig&) = delete;
    CliRig& operator=(const CliRig&) = delete;

    CliRun run(const std::vector<std::string>& arguments, const std::string& home = programFolder())
    {
        std::vector<std::string> line { "zentavia-cli" };
        line.insert(line.end(), arguments.begin(), arguments.end());
        std::ostringstream out;
        std::ostringstream err;
        CliRun result;
        const auto adapter = [this](const std::string& setting) {
            usbSetting = setting;
            return std::make_unique<SimUsbAdapter>(usbSim, sim.loop, usbScript);
        };
        result.status = cli::runCli(line, { sim.port, sim.loop, settings, home, out, err, adapter });
        result.out = out.str();
        result.err = err.str();
        return result;
    }

    const std::filesystem::path cacheHome
        = std::filesystem::temp_directory_path() / ("zv-cli-cache-" + std::to_string(::getpid()));
    SimHarness sim;
    // As zentavia-cli has it: the user's settings below, this run's own values on top.
    cli::CliSettingsStore settings { sim.settings };
    // The USB adapter in front of the same pack, and the setting it was made from.
    zvsim::UsbAdapter usbSim { *sim.pack };
    SimUsbScript usbScript;
    std::string usbSetting;
};

class CliTest : public ::testing::Test, public CliRig { };

} // namespace zv::test
