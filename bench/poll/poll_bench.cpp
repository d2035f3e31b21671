// One poll sample (files 1, 4 and 5) of a 12- and a 16-cell pack against zentavia-packsim
// --wire-pacing, over the HLK dongle on a pseudo-terminal at 115200 baud and over the USB
// adapter on its socket. For each: the sample's time (median), the time its traffic needs on the
// wire (10 bits a character on the serial line; SMBus transactions at 100 kHz behind the
// adapter), the waits the file protocol must sleep, the two ratios, and the process's CPU share.
// The honest bound is the wire time plus those waits: the goal is a ratio of 1.05 or less to it.

#include "cli/cli_dialogs.h"
#include "cli/cli_session.h"
#include "counting_links.h"
#include "counting_serial_port.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/testing/memory_settings_store.h"
#include "support/child_process.h"
#include "usb/usb_adapter_factory.h"

#include <QCoreApplication>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <vector>

namespace {

constexpr int kBaud = 115200;
constexpr double kBitsPerCharacter = 10.0;
constexpr int kWarmUpSamples = 3;
constexpr int kSamples = 40;
constexpr int kPackSimStartMs = 10000;

double cpuSeconds()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double wallSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

struct Config {
    const char* transport;
    bool usb;
    int cells;
};

struct Figures {
    double sampleMs = 0;
    double wireMs = 0;
    double waitsMs = 0;
    double cpuShare = 0;
};

// The application's driver connected to the pack through one transport.
class PollRig {
public:
    PollRig(const Config& config, const std::string& where)
        : port_(settings_)
        , counting_(port_)
        , loop_(qtLoop_)
        , dialogs_(std::cerr)
        , session_({ counting_, loop_, dialogs_, settings_, ZENTAVIA_PROGRAM_FOLDER, std::cerr,
                       [this](const std::string& setting) {
                           return std::make_unique<zv::bench::CountingUsbAdapter>(
                               zv::makeUsbAdapter(setting), busUs_);
                       } },
              config.usb ? zv::cli::LinkOptions { .usbDevice = "socket:" + where }
                         : zv::cli::LinkOptions { .port = where })
        , usb_(config.usb)
    {
        session_.detect();
    }

    // One sample as the poll takes it: the dynamic data, the cells, the state.
    void sample()
    {
        std::string text;
        auto& driver = session_.driver();
        for (const int file : { 1, 4, 5 })
            if (!driver.GetFile(file, text))
                throw std::runtime_error("file " + std::to_string(file) + " could not be read");
    }

    // Microseconds of traffic on the wire so far.
    [[nodiscard]] double wireUs() const
    {
        if (usb_)
            return static_cast<double>(busUs_);
        return static_cast<double>(counting_.charactersOnTheWire()) * kBitsPerCharacter / kBaud * 1e6;
    }
    [[nodiscard]] double waitedMs() const { return static_cast<double>(loop_.waitedMs()); }
    [[nodiscard]] int cells() { return session_.driver().nodes.Count(); }

private:
    zv::platform::MemorySettingsStore settings_;
    zv::platform::QtEventLoop qtLoop_;
    zv::platform::QtSerialPort port_;
    zv::bench::CountingSerialPort counting_;
    zv::bench::CountingEventLoop loop_;
    std::int64_t busUs_ = 0;
    zv::cli::CliDialogs dialogs_;
    zv::cli::CliSession session_;
    bool usb_;
};

Figures measure(PollRig& rig)
{
    for (int i = 0; i < kWarmUpSamples; ++i)
        rig.sample();
    std::vector<double> samples;
    const double wire = rig.wireUs();
    const double waited = rig.waitedMs();
    const double cpu = cpuSeconds();
    const double wall = wallSeconds();
    for (int i = 0; i < kSamples; ++i) {
        const double start = wallSeconds();
        rig.sample();
        samples.push_back((wallSeconds() - start) * 1000);
    }
    Figures figures;
    figures.cpuShare = (cpuSeconds() - cpu) / (wallSeconds() - wall) * 100;
    std::nth_element(samples.begin(), samples.begin() + kSamples / 2, samples.end());
    figures.sampleMs = samples[kSamples / 2];
    figures.wireMs = (rig.wireUs() - wire) / kSamples / 1000;
    figures.waitsMs = (rig.waitedMs() - waited) / kSamples;
    return figures;
}

bool run(const Config& config)
{
    const std::string socket = "/tmp/zv-bench-poll-" + std::to_string(::getpid()) + ".sock";
    std::vector<std::string> arguments { "--wire-pacing", "--target", "1002", "--cells",
        std::to_string(config.cells) };
    if (config.usb)
        arguments.insert(arguments.end(), { "--usb-socket", socket });
    else
        arguments.push_back("--pty");
    zv::test::ChildProcess packsim(ZENTAVIA_PACKSIM, arguments);
    const auto line = packsim.waitForLine(config.usb ? "USB adapter on " : "HLK dongle on ", kPackSimStartMs);
    if (!line) {
        std::fprintf(stderr, "zentavia-packsim did not start: %s\n", packsim.errors().c_str());
        return false;
    }
    try {
        PollRig rig(config, config.usb ? socket : line->substr(line->find("/dev/")));
        const Figures f = measure(rig);
        const double bound = f.wireMs + f.waitsMs;
        std::printf("%-8s %5d %9.1f %8.1f %8.1f %8.2f %8.2f %6.1f\n", config.transport, rig.cells(),
            f.sampleMs, f.wireMs, f.waitsMs, f.sampleMs / f.wireMs, f.sampleMs / bound, f.cpuShare);
        std::fflush(stdout);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_poll: %s\n", error.what());
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    std::printf("Poll sample (files 1, 4, 5), median of %d; dongle at %d baud, USB adapter's SMBus at "
                "100 kHz\n",
        kSamples, kBaud);
    std::printf("%-8s %5s %9s %8s %8s %8s %8s %6s\n", "link", "cells", "sample", "wire", "waits", "/wire",
        "/bound", "CPU %");
    std::printf("%-8s %5s %9s %8s %8s %8s %8s %6s\n", "", "", "ms", "ms", "ms", "", "", "");
    const Config configs[] { { "dongle", false, 12 }, { "dongle", false, 16 }, { "usb", true, 12 },
        { "usb", true, 16 } };
    bool ok = true;
    for (const auto& config : configs)
        ok = run(config) && ok;
    std::printf("bound = wire + waits (T_cmd_to_sts and T_sts_to_sts); goal: /bound at most 1.05\n");
    return ok ? 0 : 1;
}
