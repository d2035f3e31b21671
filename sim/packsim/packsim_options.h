#pragma once
// The command line of zentavia-packsim.

#include "device/pack_options.h"
#include "frontends/link_faults.h"

#include <span>
#include <string>
#include <string_view>

namespace zvsim {

struct PackSimOptions {
    PackOptions pack;
    FaultPlan faults;
    bool pty = false; // serve the HLK dongle on a pseudo-terminal
    std::string link; // also make this symbolic link to the pseudo-terminal
    std::string usbSocket; // serve the USB adapter on this Unix socket
    bool wirePacing = false;
    bool anyBaud = false;
    bool trace = false;
    bool help = false;
};

struct PackSimArgs {
    PackSimOptions options;
    std::string error; // empty when the command line was understood
};

// The arguments after the program name. Without --pty and --usb-socket the pseudo-terminal is served.
[[nodiscard]] PackSimArgs parsePackSimArgs(std::span<const std::string_view> args);

[[nodiscard]] std::string packSimUsage();

// What the simulator is about to be: target, cells, level, state, address, faults, pacing.
[[nodiscard]] std::string describePack(const PackSimOptions& options);

} // namespace zvsim
