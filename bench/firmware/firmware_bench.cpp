// The shipped 6000 image downloaded over a real pseudo-terminal to zentavia-packsim
// --wire-pacing --state app-loader at 115200 baud: the time of each section's block transfer
// (request to the device's verdict) against the time its characters need on the wire, and the
// whole download with the two reset waits and the verification. Prints its figures.

#include "cli/cli_dialogs.h"
#include "cli/cli_session.h"
#include "firmware_loader/firmware_loader.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/testing/memory_settings_store.h"
#include "poll/counting_serial_port.h"
#include "support/child_process.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <vector>

namespace {

constexpr int kBaud = 115200;
constexpr double kBitsPerCharacter = 10.0;
constexpr int kPackSimStartMs = 10000;
const std::string kImage = std::string(ZENTAVIA_PROGRAM_FOLDER)
    + "/Configuration Files/ZK9470/Firmware/FW_0002_0000_6000_0719.enc";

double wallSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// One section's transfer: from its first progress report to the device's verdict.
struct Transfer {
    double startSeconds = 0;
    std::int64_t startCharacters = 0;
    double seconds = 0;
    std::int64_t characters = 0;
    bool accepted = false;
};

int run(const std::string& device)
{
    zv::platform::MemorySettingsStore settings;
    zv::platform::QtEventLoop loop;
    zv::platform::QtSerialPort port(settings);
    zv::bench::CountingSerialPort counting(port);
    zv::cli::CliDialogs dialogs(std::cerr);
    zv::cli::LinkOptions options;
    options.port = device;
    options.acceptLoader = true;
    zv::cli::CliSession session(
        { counting, loop, dialogs, settings, ZENTAVIA_PROGRAM_FOLDER, std::cerr }, options);

    std::vector<Transfer> transfers;
    zv::LoaderView view;
    view.progress = [&](int percent) {
        // DownloadImage resets the bar before each section.
        if (percent == 0 && (transfers.empty() || transfers.back().seconds > 0))
            transfers.push_back({ wallSeconds(), counting.charactersOnTheWire() });
    };
    zv::FirmwareLoader loader(
        { session.main(), session.mutableGlobals(), session.loop(), dialogs, ZENTAVIA_PROGRAM_FOLDER }, view);
    if (!loader.ConnectToTarget() || loader.LoadImage(kImage) != zv::LoadOutcome::Loaded) {
        std::printf("bench_firmware: the pack could not be reached or the image was refused\n");
        return 0;
    }
    // The verdict of a section ends its transfer (the loader passes the event on).
    zv::clsMain& main = session.main();
    auto verdict = std::move(main.hooks.firmwareDownloadComplete);
    main.hooks.firmwareDownloadComplete = [&](bool success) {
        if (!transfers.empty() && transfers.back().seconds == 0) {
            transfers.back().seconds = wallSeconds() - transfers.back().startSeconds;
            transfers.back().characters = counting.charactersOnTheWire() - transfers.back().startCharacters;
            transfers.back().accepted = success;
        }
        if (verdict)
            verdict(success);
    };

    const double start = wallSeconds();
    const std::int64_t startCharacters = counting.charactersOnTheWire();
    const zv::DownloadOutcome outcome = loader.downloadWithVerification();
    const double total = wallSeconds() - start;
    const auto allCharacters = counting.charactersOnTheWire() - startCharacters;

    std::printf("\nFirmware download of %s at %d baud, pack with wire pacing\n", kImage.c_str(), kBaud);
    double blockSeconds = 0;
    double blockWire = 0;
    for (std::size_t i = 0; i < transfers.size(); ++i) {
        const auto& t = transfers[i];
        const double wire = static_cast<double>(t.characters) * kBitsPerCharacter / kBaud;
        blockSeconds += t.seconds;
        blockWire += wire;
        std::printf(
            "  section %zu (%zu bytes): %.0f ms for %lld characters, on the wire %.0f ms, ratio %.2f%s\n",
            i + 1, loader.sections().at(i).bytes(), t.seconds * 1000, static_cast<long long>(t.characters),
            wire * 1000, wire > 0 ? t.seconds / wire : 0.0, t.accepted ? "" : " (refused)");
    }
    std::printf("  block transfers: %.0f ms, on the wire %.0f ms, ratio %.2f\n", blockSeconds * 1000,
        blockWire * 1000, blockWire > 0 ? blockSeconds / blockWire : 0.0);
    const double allWire = static_cast<double>(allCharacters) * kBitsPerCharacter / kBaud;
    std::printf(
        "  whole download with the reset waits and the verification: %.1f s (%lld characters, %.0f ms on "
        "the wire), %s\n",
        total, static_cast<long long>(allCharacters), allWire * 1000,
        outcome == zv::DownloadOutcome::Verified ? "verified" : "NOT verified");
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    zv::test::ChildProcess packsim(
        ZENTAVIA_PACKSIM, { "--pty", "--wire-pacing", "--target", "1003", "--state", "app-loader" });
    const auto line = packsim.waitForLine("HLK dongle on ", kPackSimStartMs);
    if (!line) {
        std::fprintf(stderr, "zentavia-packsim did not start: %s\n", packsim.errors().c_str());
        return 1;
    }
    try {
        return run(line->substr(line->find("/dev/")));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_firmware: %s\n", error.what());
        return 1;
    }
}
