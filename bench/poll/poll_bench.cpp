// One poll sample (files 1, 4 and 5 of a 12-cell pack) over a real pseudo-terminal against
// zentavia-packsim --wire-pacing at 115200 baud: its time against the time its characters need
// on the wire, and the process CPU time over 60 samples as a share of the wall time.

#include "cli/cli_dialogs.h"
#include "cli/cli_session.h"
#include "counting_serial_port.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/testing/memory_settings_store.h"
#include "support/child_process.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>

namespace {

constexpr int kBaud = 115200;
constexpr double kBitsPerCharacter = 10.0;
constexpr int kCpuSamples = 60;
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

// The pack on its pseudo-terminal and the application's driver connected to it.
class PollRig {
public:
    explicit PollRig(const std::string& device)
        : port_(settings_)
        , counting_(port_)
        , dialogs_(std::cerr)
        , session_({ counting_, loop_, dialogs_, settings_, ZENTAVIA_PROGRAM_FOLDER, std::cerr },
              zv::cli::LinkOptions { .port = device })
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

    [[nodiscard]] std::int64_t characters() const { return counting_.charactersOnTheWire(); }
    [[nodiscard]] int cells() { return session_.driver().nodes.Count(); }

private:
    zv::platform::MemorySettingsStore settings_;
    zv::platform::QtEventLoop loop_;
    zv::platform::QtSerialPort port_;
    zv::bench::CountingSerialPort counting_;
    zv::cli::CliDialogs dialogs_;
    zv::cli::CliSession session_;
};

PollRig* rig = nullptr;

void BM_PollSample(benchmark::State& state)
{
    const auto before = rig->characters();
    const double start = wallSeconds();
    for (auto _ : state)
        rig->sample();
    const double iterations = static_cast<double>(state.iterations());
    const double perSample = (wallSeconds() - start) / iterations;
    const double characters = static_cast<double>(rig->characters() - before) / iterations;
    const double wire = characters * kBitsPerCharacter / kBaud;
    state.counters["chars"] = characters;
    state.counters["wire_ms"] = wire * 1000;
    state.counters["wire_ratio"] = perSample / wire;
}
BENCHMARK(BM_PollSample)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

void BM_PollCpuShare(benchmark::State& state)
{
    for (auto _ : state) {
        const double cpu = cpuSeconds();
        const double wall = wallSeconds();
        for (int i = 0; i < kCpuSamples; ++i)
            rig->sample();
        state.counters["cpu_share_%"] = (cpuSeconds() - cpu) / (wallSeconds() - wall) * 100;
    }
}
BENCHMARK(BM_PollCpuShare)->Unit(benchmark::kSecond)->UseRealTime()->Iterations(1);

// The two figures, measured once more outside the framework and printed plainly.
void printFigures()
{
    const auto characters = rig->characters();
    const double wall = wallSeconds();
    const double cpu = cpuSeconds();
    for (int i = 0; i < kCpuSamples; ++i)
        rig->sample();
    const double wallSpent = wallSeconds() - wall;
    const double cpuSpent = cpuSeconds() - cpu;
    const double perSample = wallSpent / kCpuSamples;
    const double wire
        = static_cast<double>(rig->characters() - characters) / kCpuSamples * kBitsPerCharacter / kBaud;
    std::printf(
        "\nPoll sample (files 1, 4, 5; %d cells; %d baud): %.1f ms, on the wire %.1f ms, ratio %.2f\n",
        rig->cells(), kBaud, perSample * 1000, wire * 1000, perSample / wire);
    std::printf("CPU over %d samples: %.0f ms of %.0f ms wall, %.1f %%\n", kCpuSamples, cpuSpent * 1000,
        wallSpent * 1000, cpuSpent / wallSpent * 100);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);

    zv::test::ChildProcess packsim(
        ZENTAVIA_PACKSIM, { "--pty", "--wire-pacing", "--target", "1002", "--cells", "12" });
    const auto line = packsim.waitForLine("HLK dongle on ", kPackSimStartMs);
    if (!line) {
        std::fprintf(stderr, "zentavia-packsim did not start: %s\n", packsim.errors().c_str());
        return 1;
    }
    try {
        PollRig pollRig(line->substr(line->find("/dev/")));
        rig = &pollRig;
        benchmark::RunSpecifiedBenchmarks();
        printFigures();
        rig = nullptr;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_poll: %s\n", error.what());
        return 1;
    }
    benchmark::Shutdown();
    return 0;
}
