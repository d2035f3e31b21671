// The screen's share of one poll sample on a 16-cell pack: the pack row, the 16 cell rows, the
// shown property list and the shown parameter list. Each sample the in-process pack runs one
// second on, its files 1, 4 and 5 are read (not timed), and then the drawing part of the sample
// is timed: (a) on the controls alone, (b) with the Qt widgets of the main window bound and the
// window repainted on the offscreen platform. Prints the median, the 90th percentile and the
// mean in microseconds.

#include "monitor/monitor_fixture.h"
#include "qt/binder.h"
#include "qt/main_form.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kCells = 16;
constexpr int kWarmUp = 20;
constexpr int kSamples = 400;

struct Figures {
    double median = 0;
    double p90 = 0;
    double mean = 0;
};

Figures summarize(std::vector<double> us)
{
    std::sort(us.begin(), us.end());
    return { us[us.size() / 2], us[us.size() * 9 / 10],
        std::accumulate(us.begin(), us.end(), 0.0) / us.size() };
}

// The 16-cell pack and the loaded main window with cell 1 selected, so that the sample refreshes
// its property list as well as the parameter list of the first tab.
class ScreenRig {
public:
    ScreenRig()
    {
        if (!rig.load())
            throw std::runtime_error("the simulated pack could not be loaded");
        if (rig.h.driver().nodes.Count() != kCells)
            throw std::runtime_error(
                "the pack has " + std::to_string(rig.h.driver().nodes.Count()) + " cells");
        if (!rig.h.driver().GetAllValues())
            throw std::runtime_error("the parameters could not be read");
        rig.monitor->tabs.LoadTabs();
        rig.form->lvNodes.userSelect("n1");
    }

    // The pack one second on and the sample's files read: what a poll tick does before it draws.
    void nextSample()
    {
        // A load that changes every second: the current and, through the cells' resistance, their
        // voltages differ from one sample to the next.
        ++second;
        rig.h.pack->physics().applyCurrent(
            second % 2 == 0 ? -8000 - second % 7 * 500 : 3000 + second % 5 * 400);
        rig.h.loop.advance(1000);
        std::string text;
        auto& driver = rig.h.driver();
        for (const int file : { 1, 4, 5 })
            if (!driver.GetFile(file, text))
                throw std::runtime_error("file " + std::to_string(file) + " could not be read");
    }

    // Times `draw` over the samples; `draw` runs after each sample's files were read.
    Figures time(const std::function<void()>& draw)
    {
        std::vector<double> us;
        changedSamples = 0;
        for (int i = 0; i < kWarmUp + kSamples; ++i) {
            nextSample();
            const std::string before = shownValues();
            const auto start = std::chrono::steady_clock::now();
            draw();
            const std::chrono::duration<double, std::micro> spent = std::chrono::steady_clock::now() - start;
            if (i < kWarmUp)
                continue;
            us.push_back(spent.count());
            changedSamples += shownValues() != before;
        }
        return summarize(std::move(us));
    }

    // The pack row and the voltage column of the cell rows: proof that a sample changed the lists.
    [[nodiscard]] std::string shownValues() const
    {
        std::string texts;
        for (const auto& text : rig.form->lvGateway.rows().front().subItems)
            texts += text + "|";
        for (const auto& row : rig.form->lvNodes.rows())
            texts += row.subItems.empty() ? std::string() : row.subItems.front();
        return texts;
    }

    int changedSamples = 0;
    int second = 0;
    zv::test::MonitorRig rig { { 0x1001, "1001", "ZK9460", "T1", kCells } };
};

void print(const char* what, const Figures& f, int changed)
{
    std::printf(
        "%s\n    median %8.1f us   p90 %8.1f us   mean %8.1f us   (pack row or cells changed in %d of %d "
        "samples)\n",
        what, f.median, f.p90, f.mean, changed, kSamples);
}

std::string loadAverage()
{
    std::ifstream file("/proc/loadavg");
    std::string one, five, fifteen;
    file >> one >> five >> fifteen;
    return one + " " + five + " " + fifteen;
}

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    try {
        std::printf("Screen update of one sample, %d cells, %d samples (load average %s)\n", kCells, kSamples,
            loadAverage().c_str());
        {
            ScreenRig seam;
            const Figures figures = seam.time([&] { seam.rig.monitor->poll.showSample(); });
            print("(a) controls only: pack row, 16 cell rows, property and parameter list", figures,
                seam.changedSamples);
        }
        ScreenRig bound;
        zv::qt::Binder binder;
        binder.bind(*bound.rig.form, zv::qt::makeMainForm(*bound.rig.form));
        QWidget* window = binder.widgetOf(*bound.rig.form);
        window->resize(1280, 900);
        window->show();
        QApplication::processEvents();
        const Figures drawn = bound.time([&] {
            bound.rig.monitor->poll.showSample();
            QApplication::processEvents();
            window->repaint();
        });
        print("(b) the same with the widgets bound, whole window repainted (1280 x 900)", drawn,
            bound.changedSamples);
        const Figures still = bound.time([&] { window->repaint(); });
        print("(b') the repaint alone of a window whose lists did not change", still, bound.changedSamples);
        window->hide();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_screen: %s\n", error.what());
        return 1;
    }
    return 0;
}
