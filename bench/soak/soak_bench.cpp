// A day of polling on the virtual clock: a 16-cell pack in process, the main window's Qt widgets
// bound (offscreen), polled every second for 24 hours while the lists and the trend plot update.
// Prints the resident memory at the start, every four hours and at the end, and the points the
// plot holds: with the plot's history bounded the memory stays flat.

#include "monitor/monitor_fixture.h"
#include "qt/binder.h"
#include "qt/main_form.h"

#include <qcustomplot.h>

#include <QApplication>
#include <QWidget>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

constexpr int kCells = 16;
constexpr int kHours = 24;
constexpr int kReportEveryHours = 4;
constexpr int kMinuteMs = 60'000;

long residentKiB()
{
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    statm >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

std::string loadAverage()
{
    std::ifstream file("/proc/loadavg");
    std::string one, five, fifteen;
    file >> one >> five >> fifteen;
    return one + " " + five + " " + fifteen;
}

long plotPoints(const QWidget& window)
{
    const auto* plot = window.findChild<QCustomPlot*>("iPlot");
    if (!plot)
        return -1;
    long points = 0;
    for (int i = 0; i < plot->graphCount(); ++i)
        points += plot->graph(i)->dataCount();
    return points;
}

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    try {
        zv::test::MonitorRig rig { { 0x1001, "1001", "ZK9460", "T1", kCells } };
        if (!rig.load())
            throw std::runtime_error("the simulated pack could not be loaded");
        rig.monitor->tabs.LoadTabs();
        rig.form->lvNodes.userSelect("n1");
        zv::qt::Binder binder;
        binder.bind(*rig.form, zv::qt::makeMainForm(*rig.form));
        QWidget* window = binder.widgetOf(*rig.form);
        window->resize(1280, 900);
        window->show();
        QApplication::processEvents();

        rig.monitor->poll.choosePollRate(0); // 1 s
        rig.monitor->poll.mnuPollAllContinuously();
        const auto wallStart = std::chrono::steady_clock::now();
        std::printf("Soak: %d cells polled every second for %d h on the virtual clock, widgets bound "
                    "offscreen (load average %s)\n",
            kCells, kHours, loadAverage().c_str());
        std::printf("%6s %12s %14s\n", "hour", "RSS KiB", "plot points");
        std::printf("%6d %12ld %14ld\n", 0, residentKiB(), plotPoints(*window));
        std::fflush(stdout);
        const long start = residentKiB();
        for (int hour = 1; hour <= kHours; ++hour) {
            for (int minute = 0; minute < 60; ++minute) {
                rig.h.loop.advance(kMinuteMs);
                QApplication::processEvents();
                // The test harness's own records of the traffic are not the application's memory.
                rig.h.port.clearWritten();
                rig.h.readWriteLines.clear();
            }
            if (hour % kReportEveryHours == 0) {
                std::printf("%6d %12ld %14ld\n", hour, residentKiB(), plotPoints(*window));
                std::fflush(stdout);
            }
        }
        window->repaint();
        const long end = residentKiB();
        const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - wallStart;
        std::printf("resident memory: start %ld KiB, end %ld KiB, change %+ld KiB (%.0f s of wall time)\n",
            start, end, end - start, wall.count());
        rig.monitor->poll.mnuStopPolling();
        window->hide();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_soak: %s\n", error.what());
        return 1;
    }
    return 0;
}
