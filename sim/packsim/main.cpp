// zentavia-packsim: a simulated pack served as an HLK dongle on a pseudo-terminal and/or as a USB
// adapter on a Unix socket, until SIGINT or SIGTERM.

#include "device/pack.h"
#include "frontends/hex_bytes.h"
#include "frontends/hlk_dongle.h"
#include "frontends/pty_frontend.h"
#include "frontends/serve_loop.h"
#include "frontends/usb_socket_server.h"
#include "packsim/packsim_options.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <vector>

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int)
{
    stopRequested = 1;
}

void installStopHandlers()
{
    struct sigaction action { };
    action.sa_handler = requestStop; // without SA_RESTART, so that poll() returns at once
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

zvsim::TraceSink printingTrace(const char* channel, const std::function<std::int64_t()>& nowMs)
{
    return [channel, nowMs](zvsim::TraceDirection direction, std::string_view text) {
        std::printf("%10.3f %s %s %s\n", static_cast<double>(nowMs()) / 1000.0, channel,
            direction == zvsim::TraceDirection::In ? "<-" : "->", zvsim::printable(text).c_str());
        std::fflush(stdout);
    };
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string_view> args(argv + 1, argv + argc);
    const zvsim::PackSimArgs parsed = zvsim::parsePackSimArgs(args);
    if (!parsed.error.empty()) {
        std::fprintf(stderr, "zentavia-packsim: %s\n", parsed.error.c_str());
        return 2;
    }
    const zvsim::PackSimOptions& options = parsed.options;
    if (options.help) {
        std::fputs(zvsim::packSimUsage().c_str(), stdout);
        return 0;
    }

    const auto start = std::chrono::steady_clock::now();
    const std::function<std::int64_t()> nowMs = [start] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
            .count();
    };

    auto pack = zvsim::makePack(options.pack);
    pack->setFaults(options.faults.device);
    std::fputs(zvsim::describePack(options).c_str(), stdout);

    zvsim::HlkOptions dongleOptions;
    dongleOptions.faults = options.faults.link;
    dongleOptions.seed = options.pack.seed;
    dongleOptions.anyBaud = options.anyBaud;
    zvsim::HlkDongle dongle(*pack, dongleOptions);
    zvsim::PtyFrontEnd pty(dongle, options.wirePacing);
    zvsim::UsbAdapter usb(*pack, { options.faults.link, options.pack.seed + 1u, 0 });
    zvsim::UsbSocketServer usbServer(usb);
    std::vector<zvsim::Servable*> servables;

    if (options.pty) {
        if (const auto error = pty.open(); !error.empty()) {
            std::fprintf(stderr, "zentavia-packsim: %s\n", error.c_str());
            return 1;
        }
        if (!options.link.empty())
            if (const auto error = pty.makeLink(options.link); !error.empty()) {
                std::fprintf(stderr, "zentavia-packsim: %s\n", error.c_str());
                return 1;
            }
        std::printf("  HLK dongle on %s%s%s\n", pty.devicePath().c_str(),
            options.link.empty() ? "" : " linked as ", options.link.c_str());
        if (options.trace)
            dongle.setTrace(printingTrace("pty", nowMs));
        servables.push_back(&pty);
    }
    if (!options.usbSocket.empty()) {
        if (const auto error = usbServer.listen(options.usbSocket); !error.empty()) {
            std::fprintf(stderr, "zentavia-packsim: %s\n", error.c_str());
            return 1;
        }
        std::printf("  USB adapter on %s\n", options.usbSocket.c_str());
        if (options.trace)
            usbServer.setTrace(printingTrace("usb", nowMs));
        servables.push_back(&usbServer);
    }
    std::printf("Running; stop with Ctrl-C.\n");
    std::fflush(stdout);

    installStopHandlers();
    while (!stopRequested) {
        if (!zvsim::serveOnce(servables, nowMs, 100)) {
            std::perror("zentavia-packsim: poll");
            return 1;
        }
        if ((options.pty && !pty.isOpen()) || (!options.usbSocket.empty() && !usbServer.isOpen())) {
            std::printf("The pack has been pulled: its front ends are closed.\n");
            return 0;
        }
    }
    std::printf("Stopped.\n");
    return 0;
}
