// Two hours of 1 s samples of a 16-cell pack on the trend plot: 35 channels, 7200 points each,
// added one sample at a time (one update bracket each) through the chart control and its
// QCustomPlot binding on a 1200 x 500 offscreen widget. Prints the cost of the last sample's
// update and repaint, the memory the plot holds and the time of a zoom at that size.

#include "platform/ui/chart.h"
#include "qt/chart_binding.h"

#include <qcustomplot.h>

#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kCells = 16;
constexpr std::size_t kChannels = 2 * kCells + 3;
constexpr int kSamples = 7200;
constexpr int kRepaintEvery = 60; // the fill repaints once a minute of samples, to keep it short
constexpr int kTimedSamples = 20;

double millisecondsOf(const std::function<void()>& work)
{
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

long residentKiB()
{
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    statm >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// A sample like a pack's: current, RSOC, cell voltages and temperatures, board temperature.
void addSample(zv::platform::ui::Chart& chart, int t)
{
    chart.beginUpdate();
    const double x = t;
    chart.addPoint(0, x, 1000 * std::sin(t / 600.0));
    chart.addPoint(1, x, 80 - t / 200.0);
    for (std::size_t cell = 1; cell <= kCells; ++cell) {
        chart.addPoint(2 * cell, x, 3700 + 10.0 * static_cast<double>(cell) + 50 * std::sin(t / 900.0));
        chart.addPoint(2 * cell + 1, x, 25 + static_cast<double>(cell) / 4 + std::sin(t / 300.0));
    }
    chart.addPoint(kChannels - 1, x, 30 + std::sin(t / 500.0));
    chart.endUpdate();
}

void setUpChannels(zv::platform::ui::Chart& chart)
{
    const char* axes[] = { "Current", "Voltage", "SOC", "Temperature" };
    for (std::size_t i = 0; i < chart.yAxisCount(); ++i)
        chart.updateYAxis(i, [&](zv::platform::ui::ChartAxis& a) { a.name = axes[i]; });
    while (chart.channelCount() < kChannels)
        (void)chart.addChannel();
    for (std::size_t i = 0; i < kChannels; ++i) {
        chart.updateChannel(i, [i](zv::platform::ui::ChartChannel& c) {
            c.title = "Channel " + std::to_string(i);
            c.yAxisName = i == 0 ? "Current" : i == 1 ? "SOC" : i % 2 == 0 ? "Voltage" : "Temperature";
            c.color = static_cast<zv::platform::Rgb>(0x102030 * (i + 1)) & 0xFFFFFF;
        });
        chart.updateYAxis(i % 4, [](zv::platform::ui::ChartAxis& a) { a.visible = true; });
    }
    chart.updateXAxis([](zv::platform::ui::ChartAxis& a) { a.tracking = true; });
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCustomPlot plot;
    plot.resize(1200, 500);
    plot.show();
    zv::platform::ui::Chart chart("iPlot", 2, 4);
    std::vector<QMetaObject::Connection> connections;
    const std::function<QIcon(const std::string&)> icons;
    zv::qt::BindContext context { connections, std::make_shared<bool>(false), icons };
    zv::qt::bindChart(chart, plot, context);
    setUpChannels(chart);
    QApplication::processEvents();

    const long before = residentKiB();
    const int filled = kSamples - kTimedSamples;
    const double fillMs = millisecondsOf([&] {
        for (int t = 0; t < filled; ++t) {
            addSample(chart, t);
            if (t % kRepaintEvery == 0)
                QApplication::processEvents();
        }
        QApplication::processEvents();
    });
    std::vector<double> updates;
    std::vector<double> repaints;
    for (int t = filled; t < kSamples; ++t) {
        updates.push_back(millisecondsOf([&] { addSample(chart, t); }));
        repaints.push_back(millisecondsOf([&] { plot.replot(QCustomPlot::rpImmediateRefresh); }));
    }
    const long after = residentKiB();
    const double zoomMs = millisecondsOf([&] {
        plot.rescaleAxes(true);
        plot.replot(QCustomPlot::rpImmediateRefresh);
    });
    const double wheelMs = millisecondsOf([&] {
        plot.xAxis->scaleRange(0.5, plot.xAxis->range().center());
        plot.replot(QCustomPlot::rpImmediateRefresh);
    });
    const double pixmapMs = millisecondsOf([&] { (void)plot.toPixmap(1200, 500); });

    const std::size_t points = kChannels * static_cast<std::size_t>(kSamples);
    std::printf("trend plot: %zu channels x %d samples = %zu points, widget 1200 x 500 offscreen\n",
        kChannels, kSamples, points);
    std::printf("fill of the first %d samples (repaint every %d): %.0f ms\n", filled, kRepaintEvery, fillMs);
    std::printf("last sample: update %.3f ms (median of last %d %.3f), repaint %.2f ms (median %.2f)\n",
        updates.back(), kTimedSamples, median(updates), repaints.back(), median(repaints));
    std::printf("render to a 1200 x 500 pixmap: %.2f ms\n", pixmapMs);
    std::printf("zoom to fit all axes + repaint: %.2f ms; zoom X by 2 + repaint: %.2f ms\n", zoomMs, wheelMs);
    std::size_t inControl = 0;
    std::size_t inGraphs = 0;
    for (std::size_t i = 0; i < chart.channelCount(); ++i)
        inControl += chart.channel(i).points.size();
    for (int i = 0; i < plot.graphCount(); ++i)
        inGraphs += static_cast<std::size_t>(plot.graph(i)->dataCount());
    std::printf("memory: RSS grew %ld KiB; points held %zu KiB in the control + %zu KiB in the graphs\n",
        after - before, inControl * sizeof(zv::platform::ui::ChartPoint) / 1024,
        inGraphs * sizeof(QCPGraphData) / 1024);
    return 0;
}
