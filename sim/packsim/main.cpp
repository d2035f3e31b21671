// zentavia-packsim: a simulated pack served as an HLK dongle on a pseudo-terminal and/or as a USB
// adapter on a Unix socket, until SIGINT or SIGTERM.

#include "frontends/hex_bytes.h"
#include "packsim/packsim_options.h"
#include "packsim/packsim_session.h"

#include <sys/prctl.h>

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

zvsim::TraceSink printingTrace(const char* channel, const std::function<std::int64_t()>& nowUs)
{
    return [channel, nowUs](zvsim::TraceDirection direction, std::string_view text) {
        std::printf("%10.6f %s %s %s\n", static_cast<double>(nowUs()) / 1e6, channel,
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
    if (parsed.options.help) {
        std::fputs(zvsim::packSimUsage().c_str(), stdout);
        return 0;
    }

    const auto start = std::chrono::steady_clock::now();
    const std::function<std::int64_t()> nowUs = [start] {
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start)
            .count();
    };
    zvsim::PackSimSession session(parsed.options, nowUs);
    if (const auto error = session.start(); !error.empty()) {
        std::fprintf(stderr, "zentavia-packsim: %s\n", error.c_str());
        return 1;
    }
    if (parsed.options.trace)
        session.setTrace([&](const char* channel) { return printingTrace(channel, nowUs); });
    std::fputs((zvsim::describePack(parsed.options) + session.whereItAnswers()).c_str(), stdout);
    std::printf("Running; stop with Ctrl-C.\n");
    std::fflush(stdout);

    installStopHandlers();
    // Paced replies wake the loop on their microsecond, not up to 50 us later.
    ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    while (!stopRequested) {
        if (!session.serveOnce(100)) {
            std::perror("zentavia-packsim: poll");
            return 1;
        }
        if (session.pulled()) {
            std::printf("The pack has been pulled: its front ends are closed.\n");
            return 0;
        }
    }
    std::printf("Stopped.\n");
    return 0;
}
