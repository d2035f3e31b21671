#include "platform/ui/chart.h"
#include "platform/ui/window.h"
#include "qt/binder.h"
#include "ui/widgets_app.h"

#include <qcustomplot.h>

#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <vector>

namespace zv::qt {
namespace {

namespace ui = platform::ui;

TEST(ChartControl, BracketsNotifyOnceAndOnlyRealChangesReachTheListener)
{
    ui::Chart chart("iPlot", 2, 4);
    std::vector<ui::Change> seen;
    chart.setChangeListener([&](const ui::ChangeEvent& e) { seen.push_back(e.what); });
    EXPECT_EQ(chart.channelCount(), 2U);

    chart.beginUpdate();
    chart.beginUpdate();
    EXPECT_EQ(chart.addChannel(), 2U);
    chart.addPoint(2, 0, 1);
    chart.endUpdate();
    EXPECT_TRUE(seen.empty()) << "the outer bracket is still open";
    chart.addPoint(0, 0, 5);
    chart.endUpdate();
    EXPECT_EQ(seen, (std::vector<ui::Change> { ui::Change::Rows }));

    seen.clear();
    chart.beginUpdate();
    chart.endUpdate();
    chart.setChannelShown(0, true); // already shown
    chart.updateYAxis(1, [](ui::ChartAxis& a) { a.min = 0; });
    EXPECT_TRUE(seen.empty());

    // A property change leaves the points alone; removing channels keeps the fixed ones.
    chart.updateChannel(2, [](ui::ChartChannel& c) { c.title = "Voltage 1"; });
    EXPECT_EQ(chart.channel(2).points.size(), 1U);
    const unsigned generation = chart.dataGeneration();
    chart.removeAddedChannels();
    EXPECT_EQ(chart.channelCount(), 2U);
    EXPECT_EQ(chart.channel(0).points.size(), 1U);
    EXPECT_EQ(chart.addChannel(), 2U) << "added channels continue the numbering";
    EXPECT_TRUE(chart.channel(2).title.empty());
    chart.clearData();
    EXPECT_TRUE(chart.channel(0).points.empty());
    EXPECT_EQ(chart.dataGeneration(), generation + 1);
}

// The history is bounded by the span behind each channel's newest point, whoever holds it.
TEST(ChartControl, PointsOlderThanTheHistorySpanAreDropped)
{
    const struct {
        const char* name;
        double span;
        int samples;
        double oldest;
        std::size_t kept;
    } cases[] {
        { "default two hours at 1 s", ui::Chart::kDefaultHistorySpan, 10'000, 10'000 - 1 - 7200, 7201 },
        { "the newest span and its edge", 10, 30, 19, 11 },
        { "fewer samples than the span", 100, 30, 0, 30 },
    };
    for (const auto& c : cases) {
        ui::Chart chart("iPlot", 2, 4);
        chart.setHistorySpan(c.span);
        for (int t = 0; t < c.samples; ++t)
            chart.addPoint(0, t, t);
        ASSERT_EQ(chart.channel(0).points.size(), c.kept) << c.name;
        EXPECT_EQ(chart.channel(0).points.front().x, c.oldest) << c.name;
        EXPECT_EQ(chart.channel(0).points.back().x, c.samples - 1) << c.name;
    }
}

TEST(ChartControl, UserEventsNeedAUsableChart)
{
    ui::Chart chart("iPlot", 2, 4);
    std::vector<std::size_t> clicked;
    int menus = 0;
    chart.onChannelClick = [&](std::size_t channel) { clicked.push_back(channel); };
    chart.onRightClick = [&] { ++menus; };
    chart.userChannelClick(1);
    chart.userChannelClick(7); // no such channel
    chart.userRightClick();
    chart.setEnabled(false);
    chart.userChannelClick(0);
    chart.userRightClick();
    EXPECT_EQ(clicked, (std::vector<std::size_t> { 1 }));
    EXPECT_EQ(menus, 1);
}

class PlotWindow : public ui::Window {
public:
    PlotWindow()
        : Window("frmPlot")
    {
        addControls({ &iPlot });
    }
    ui::Chart iPlot { "iPlot", 2, 4 };
};

class ChartBindingTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::ensureWidgets();
        auto widget = std::make_unique<QWidget>();
        widget->setObjectName("frmPlot");
        auto* layout = new QVBoxLayout(widget.get());
        plot = new QCustomPlot(widget.get());
        plot->setObjectName("iPlot");
        layout->addWidget(plot);
        const char* names[] = { "Current", "Voltage", "SOC", "Temperature" };
        for (std::size_t i = 0; i < 4; ++i)
            chart.updateYAxis(i, [&](ui::ChartAxis& a) { a.name = names[i]; });
        ASSERT_TRUE(binder.bind(window, std::move(widget)).empty());
        QObject::connect(plot, &QCustomPlot::afterReplot, &receiver, [this] { ++replots; });
    }

    void addCell(const char* title)
    {
        const std::size_t index = chart.addChannel();
        chart.updateChannel(index, [&](ui::ChartChannel& c) {
            c.title = title;
            c.yAxisName = "Voltage";
            c.color = 0x0000FF;
        });
    }
    [[nodiscard]] bool inLegend(int graph) const
    {
        return plot->legend->hasItemWithPlottable(plot->graph(graph));
    }

    QObject receiver; // the replot count ends with the test, though the widget goes later
    Binder binder;
    PlotWindow window;
    ui::Chart& chart = window.iPlot;
    QCustomPlot* plot = nullptr;
    int replots = 0;
};

TEST_F(ChartBindingTest, GraphsFollowChannelsAxesAndVisibility)
{
    ASSERT_EQ(plot->axisRect()->axes(QCPAxis::atLeft | QCPAxis::atRight).size(), 4);
    EXPECT_EQ(plot->graphCount(), 2);
    addCell("Voltage 1");
    ASSERT_EQ(plot->graphCount(), 3);
    EXPECT_EQ(plot->graph(2)->name(), "Voltage 1");
    EXPECT_EQ(plot->graph(2)->pen().color(), QColor(255, 0, 0));
    EXPECT_EQ(plot->graph(2)->valueAxis(), plot->yAxis2);

    chart.setChannelShown(2, false);
    EXPECT_FALSE(plot->graph(2)->visible());
    EXPECT_FALSE(inLegend(2));
    chart.setChannelShown(2, true);
    ASSERT_EQ(plot->legend->itemCount(), 3);
    EXPECT_EQ(plot->legend->item(2), plot->legend->itemWithPlottable(plot->graph(2))) << "in channel order";

    chart.updateYAxis(1, [](ui::ChartAxis& a) {
        a.title = "Voltage mV";
        a.visible = false;
    });
    EXPECT_EQ(plot->yAxis2->label(), "Voltage mV");
    EXPECT_FALSE(plot->yAxis2->visible());
    chart.setGridYAxisName("Current");
    EXPECT_TRUE(plot->yAxis->grid()->visible());
    EXPECT_FALSE(plot->yAxis2->grid()->visible());

    EXPECT_EQ(plot->accessibleName(), "Trend plot") << "the painted plot is named for screen readers";
    EXPECT_TRUE(plot->accessibleDescription().endsWith("Voltage 1"))
        << plot->accessibleDescription().toStdString();
    chart.removeAddedChannels();
    EXPECT_EQ(plot->graphCount(), 2);
    EXPECT_FALSE(plot->accessibleDescription().contains("Voltage 1"));
}

TEST_F(ChartBindingTest, OneReplotPerBracketAndOnlyNewPointsAppended)
{
    addCell("Voltage 1");
    QApplication::processEvents();
    replots = 0;
    for (int t = 0; t < 3; ++t) {
        chart.beginUpdate();
        for (std::size_t channel = 0; channel < 3; ++channel)
            chart.addPoint(channel, t, 3700 + t);
        chart.endUpdate();
        QApplication::processEvents();
    }
    EXPECT_EQ(replots, 3);
    ASSERT_EQ(plot->graph(2)->dataCount(), 3);
    EXPECT_EQ(plot->graph(2)->data()->at(2)->value, 3702);

    // Points dropped and one new one within a bracket: the graph holds just the new one.
    chart.beginUpdate();
    chart.clearData();
    chart.addPoint(2, 0, 3800);
    chart.endUpdate();
    EXPECT_EQ(plot->graph(2)->dataCount(), 1);
    EXPECT_EQ(plot->graph(2)->data()->at(0)->value, 3800);
    EXPECT_EQ(plot->graph(0)->dataCount(), 0);
}

TEST_F(ChartBindingTest, RangesGoBothWaysTrackingFollowsAndZoomFits)
{
    chart.updateXAxis([](ui::ChartAxis& a) {
        a.min = 0;
        a.span = 7200;
    });
    EXPECT_EQ(plot->xAxis->range().upper, 7200);

    plot->xAxis->setRange(100, 200); // as a drag would
    EXPECT_EQ(chart.xAxis().min, 100);
    EXPECT_EQ(chart.xAxis().span, 100);
    chart.updateXAxis([](ui::ChartAxis& a) {
        a.min = 0;
        a.span = 7200;
    });
    EXPECT_EQ(plot->xAxis->range().lower, 0) << "a reset after a drag reaches the plot";

    chart.updateXAxis([](ui::ChartAxis& a) {
        a.span = 10;
        a.tracking = true;
    });
    for (int t = 0; t <= 25; ++t)
        chart.addPoint(0, t, 5);
    EXPECT_EQ(plot->xAxis->range().upper, 25);
    EXPECT_EQ(chart.xAxis().min, 15);

    chart.addPoint(0, 26, 900);
    chart.updateYAxis(0, [](ui::ChartAxis& a) { ++a.zoomRequests; });
    const QCPRange fitted = plot->yAxis->range();
    EXPECT_LT(fitted.lower, 5);
    EXPECT_GT(fitted.upper, 900) << "a margin above the highest point";
    EXPECT_DOUBLE_EQ(chart.yAxis(0).min + chart.yAxis(0).span, fitted.upper);
}

TEST_F(ChartBindingTest, LegendClickChoosesTheChannel)
{
    addCell("Voltage 1");
    std::vector<std::size_t> clicked;
    chart.onChannelClick = [&](std::size_t channel) { clicked.push_back(channel); };
    auto* item = plot->legend->itemWithPlottable(plot->graph(2));
    ASSERT_NE(item, nullptr);
    QMouseEvent click(
        QEvent::MouseButtonRelease, QPointF(), QPointF(), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    emit plot->legendClick(plot->legend, item, &click);
    EXPECT_EQ(clicked, (std::vector<std::size_t> { 2 }));
}

} // namespace
} // namespace zv::qt

namespace zv::qt {
namespace {

// Bound to a plot the graphs hold the points and the chart none; the graphs drop what falls out
// of the history span; a rebuild of the cells empties their lines and keeps the fixed ones.
TEST_F(ChartBindingTest, TheGraphsHoldTheBoundedHistoryAlone)
{
    chart.setHistorySpan(10);
    addCell("Voltage 1");
    for (int t = 0; t < 30; ++t) {
        chart.beginUpdate();
        for (std::size_t channel = 0; channel < 3; ++channel)
            chart.addPoint(channel, t, t);
        chart.endUpdate();
        EXPECT_TRUE(chart.channel(2).points.empty()) << "taken over at once";
    }
    const auto keys = [&](int graph) {
        std::vector<double> x;
        for (auto p = plot->graph(graph)->data()->constBegin(); p != plot->graph(graph)->data()->constEnd();
             ++p)
            x.push_back(p->key);
        return x;
    };
    ASSERT_EQ(plot->graph(2)->dataCount(), 11);
    EXPECT_EQ(keys(2).front(), 19);
    EXPECT_EQ(keys(2).back(), 29);

    chart.beginUpdate();
    chart.removeAddedChannels();
    addCell("Voltage 1");
    chart.addPoint(2, 30, 1);
    chart.addPoint(0, 30, 1);
    chart.endUpdate();
    EXPECT_EQ(keys(2), (std::vector<double> { 30 })) << "a new cell line starts empty";
    EXPECT_EQ(plot->graph(0)->dataCount(), 11) << "the current keeps its history (20 to 30)";
    EXPECT_EQ(keys(0).front(), 20);
}

} // namespace
} // namespace zv::qt
