#include "qt/chart_binding.h"

#include "platform/ui/chart.h"
#include "qt/qt_colors.h"

#include <qcustomplot.h>

#include <QPointer>

#include <algorithm>
#include <memory>
#include <vector>

namespace zv::qt {

namespace {

namespace ui = platform::ui;

constexpr double kFitMargin = 1.1;

// What the plot shows of an axis that the chart set: the range last taken from the chart or
// reported back to it, and the zoom requests served.
struct AxisState {
    double min = 0;
    double span = -1;
    unsigned zooms = 0;
};

class ChartView {
public:
    ChartView(ui::Chart& chart, QCustomPlot& plot);

    // Brings the plot in line with the chart and queues one replot. A change that the sync itself
    // causes (a tracked or zoomed range reported back) runs one more pass after it.
    void sync();
    void connectEvents(
        std::vector<QMetaObject::Connection>& connections, const std::shared_ptr<ChartView>& self);

private:
    void syncPass();
    void describe();
    void syncGraphs();
    void syncLegend();
    void syncPoints();
    void syncAxes();
    void syncAxis(QCPAxis& axis, const ui::ChartAxis& settings, AxisState& state, bool grid);
    void track();
    void fit(QCPAxis& axis);
    void reportRange(QCPAxis* axis, const QCPRange& range);
    [[nodiscard]] QCPAxis* axisNamed(const std::string& name) const;
    void choose(const QCPAbstractPlottable* plottable);
    void rightClick(const QPointF& pos);

    ui::Chart& chart_;
    QPointer<QCustomPlot> plot_;
    std::vector<QCPAxis*> yAxes_;
    std::vector<QCPGraph*> graphs_;
    std::vector<bool> legendEntries_;
    AxisState x_;
    std::vector<AxisState> y_;
    unsigned generation_ = 0;
    unsigned channelGeneration_ = 0;
    bool syncing_ = false;
    bool again_ = false;
    bool settingRange_ = false;
};

ChartView::ChartView(ui::Chart& chart, QCustomPlot& plot)
    : chart_(chart)
    , plot_(&plot)
    , y_(chart.yAxisCount())
{
    QCPAxisRect* rect = plot.axisRect();
    for (std::size_t i = 0; i < chart.yAxisCount(); ++i) {
        if (i < 2)
            yAxes_.push_back(i == 0 ? plot.yAxis : plot.yAxis2);
        else
            yAxes_.push_back(rect->addAxis(i % 2 == 0 ? QCPAxis::atLeft : QCPAxis::atRight));
    }
    for (QCPAxis* axis : yAxes_) {
        axis->grid()->setVisible(false);
        axis->setTickLabels(true);
    }
    plot.setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    const QList<QCPAxis*> values(yAxes_.begin(), yAxes_.end());
    rect->setRangeDragAxes({ plot.xAxis }, values);
    rect->setRangeZoomAxes({ plot.xAxis }, values);
    // The legend below the axes, several entries to a row.
    plot.legend->setVisible(true);
    rect->insetLayout()->take(plot.legend);
    plot.plotLayout()->addElement(1, 0, plot.legend);
    plot.plotLayout()->setRowStretchFactor(1, 0.001);
    plot.legend->setFillOrder(QCPLayoutGrid::foColumnsFirst);
    // Ten short entries to a row: the 35 lines of a 16-cell pack take four rows.
    plot.legend->setWrap(10);
    plot.legend->setIconSize(20, 10);
    plot.legend->setRowSpacing(0);
    QFont small = plot.legend->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    plot.legend->setFont(small);
    // Thin lines without antialiasing keep a replot of many thousand points per line cheap.
    plot.setNotAntialiasedElements(QCP::aePlottables);
}

void ChartView::connectEvents(
    std::vector<QMetaObject::Connection>& connections, const std::shared_ptr<ChartView>& self)
{
    QCustomPlot* plot = plot_;
    std::vector<QCPAxis*> axes = yAxes_;
    axes.push_back(plot->xAxis);
    for (QCPAxis* axis : axes) {
        connections.push_back(QObject::connect(axis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), plot,
            [self, axis](const QCPRange& range) { self->reportRange(axis, range); }));
    }
    connections.push_back(QObject::connect(plot, &QCustomPlot::legendClick, plot,
        [self](QCPLegend*, QCPAbstractLegendItem* item, QMouseEvent* event) {
            if (auto* entry = qobject_cast<QCPPlottableLegendItem*>(item);
                entry && event->button() == Qt::LeftButton)
                self->choose(entry->plottable());
        }));
    connections.push_back(QObject::connect(plot, &QCustomPlot::plottableClick, plot,
        [self](QCPAbstractPlottable* plottable, int, QMouseEvent* event) {
            if (event->button() == Qt::LeftButton)
                self->choose(plottable);
        }));
    connections.push_back(QObject::connect(plot, &QCustomPlot::mousePress, plot, [self](QMouseEvent* event) {
        if (event->button() == Qt::RightButton)
            self->rightClick(event->position());
    }));
}

// A click on a channel's line or legend entry reports the channel.
void ChartView::choose(const QCPAbstractPlottable* plottable)
{
    const auto found = std::ranges::find(graphs_, plottable);
    if (found != graphs_.end())
        chart_.userChannelClick(static_cast<std::size_t>(found - graphs_.begin()));
}

// The channel under the mouse (a line or a legend entry) is chosen first, then the menu shows.
void ChartView::rightClick(const QPointF& pos)
{
    if (auto* entry = dynamic_cast<QCPPlottableLegendItem*>(plot_->layoutElementAt(pos)))
        choose(entry->plottable());
    else
        choose(plot_->plottableAt(pos));
    chart_.userRightClick();
}

void ChartView::sync()
{
    if (!plot_)
        return;
    if (syncing_) {
        again_ = true;
        return;
    }
    syncing_ = true;
    do {
        again_ = false;
        syncPass();
    } while (again_);
    syncing_ = false;
    describe();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

// The plot is painted, so its name and the channels it shows are given to the accessibility bus.
void ChartView::describe()
{
    QStringList shown;
    for (std::size_t i = 0; i < chart_.channelCount(); ++i) {
        const ui::ChartChannel& channel = chart_.channel(i);
        if (channel.visible && !channel.title.empty())
            shown << QString::fromStdString(channel.title);
    }
    plot_->setAccessibleName("Trend plot");
    plot_->setAccessibleDescription(shown.join(", "));
}

void ChartView::syncPass()
{
    syncGraphs();
    syncPoints();
    syncAxes();
    track();
}

QCPAxis* ChartView::axisNamed(const std::string& name) const
{
    for (std::size_t i = 0; i < chart_.yAxisCount(); ++i) {
        if (chart_.yAxis(i).name == name)
            return yAxes_[i];
    }
    return yAxes_.front();
}

void ChartView::syncGraphs()
{
    while (graphs_.size() > chart_.channelCount()) {
        plot_->removeGraph(graphs_.back());
        graphs_.pop_back();
    }
    while (graphs_.size() < chart_.channelCount())
        graphs_.push_back(plot_->addGraph(plot_->xAxis, yAxes_.front()));
    for (std::size_t i = 0; i < graphs_.size(); ++i) {
        const ui::ChartChannel& channel = chart_.channel(i);
        QCPGraph& graph = *graphs_[i];
        graph.setName(QString::fromStdString(channel.title));
        graph.setPen(QPen(toQColor(channel.color), 1));
        graph.setValueAxis(axisNamed(channel.yAxisName));
        graph.setVisible(channel.visible);
    }
    syncLegend();
}

// The legend lists the channels shown in it in channel order; it is refilled only on a change.
void ChartView::syncLegend()
{
    std::vector<bool> entries(graphs_.size());
    for (std::size_t i = 0; i < graphs_.size(); ++i)
        entries[i] = chart_.channel(i).visibleInLegend;
    if (entries == legendEntries_)
        return;
    legendEntries_ = std::move(entries);
    plot_->legend->clearItems();
    for (std::size_t i = 0; i < graphs_.size(); ++i) {
        if (legendEntries_[i])
            graphs_[i]->addToLegend();
    }
}

// Takes the new points over from the chart: the graphs hold the history, the chart none of it.
// Points older than the chart's history span behind a line's newest go; the container only moves
// its start, so that costs constant time a sample on average.
void ChartView::syncPoints()
{
    const bool cleared = generation_ != chart_.dataGeneration();
    const bool replaced = channelGeneration_ != chart_.channelGeneration();
    generation_ = chart_.dataGeneration();
    channelGeneration_ = chart_.channelGeneration();
    for (std::size_t i = 0; i < graphs_.size(); ++i) {
        QCPGraph& graph = *graphs_[i];
        if (cleared || (replaced && i >= chart_.fixedChannelCount()))
            graph.data()->clear();
        const auto points = chart_.takePoints(i);
        if (points.empty())
            continue;
        for (const auto& p : points)
            graph.addData(p.x, p.y);
        graph.data()->removeBefore(points.back().x - chart_.historySpan());
    }
}

void ChartView::syncAxes()
{
    syncAxis(*plot_->xAxis, chart_.xAxis(), x_, false);
    for (std::size_t i = 0; i < yAxes_.size(); ++i) {
        const ui::ChartAxis& axis = chart_.yAxis(i);
        syncAxis(*yAxes_[i], axis, y_[i], !axis.name.empty() && axis.name == chart_.gridYAxisName());
    }
}

void ChartView::syncAxis(QCPAxis& axis, const ui::ChartAxis& settings, AxisState& state, bool grid)
{
    axis.setVisible(settings.visible);
    axis.setLabel(settings.titleShown ? QString::fromStdString(settings.title) : QString());
    axis.setBasePen(QPen(toQColor(settings.scaleColor)));
    if (&axis != plot_->xAxis)
        axis.grid()->setVisible(grid);
    if (settings.min != state.min || settings.span != state.span) {
        state.min = settings.min;
        state.span = settings.span;
        settingRange_ = true;
        axis.setRange(settings.min, settings.min + settings.span);
        settingRange_ = false;
    }
    if (settings.zoomRequests != state.zooms) {
        state.zooms = settings.zoomRequests;
        fit(axis);
    }
}

// Fits the axis to its visible lines; a value axis keeps a margin so that a flat line at the
// edge stays clear of the axis.
void ChartView::fit(QCPAxis& axis)
{
    axis.rescale(true);
    if (&axis != plot_->xAxis)
        axis.scaleRange(kFitMargin, axis.range().center());
}

// X: the newest point stays in view; Y: the axis follows its visible lines.
void ChartView::track()
{
    if (chart_.xAxis().tracking) {
        double newest = plot_->xAxis->range().lower;
        for (std::size_t i = 0; i < graphs_.size(); ++i) {
            const auto& data = *graphs_[i]->data();
            if (chart_.channel(i).visible && !data.isEmpty())
                newest = std::max(newest, (data.constEnd() - 1)->key);
        }
        const QCPRange range = plot_->xAxis->range();
        if (newest > range.upper)
            plot_->xAxis->setRange(newest - range.size(), newest);
    }
    for (std::size_t i = 0; i < yAxes_.size(); ++i) {
        if (chart_.yAxis(i).tracking)
            fit(*yAxes_[i]);
    }
}

// A range the user dragged or zoomed to, or that tracking and zoom to fit chose, goes back to
// the chart, so that the chart always holds what the plot shows.
void ChartView::reportRange(QCPAxis* axis, const QCPRange& range)
{
    if (settingRange_)
        return;
    if (axis == plot_->xAxis) {
        x_.min = range.lower;
        x_.span = range.size();
        chart_.userXRange(range.lower, range.size());
        return;
    }
    const auto i = static_cast<std::size_t>(std::ranges::find(yAxes_, axis) - yAxes_.begin());
    if (i >= yAxes_.size())
        return;
    y_[i].min = range.lower;
    y_[i].span = range.size();
    chart_.userYRange(i, range.lower, range.size());
}

} // namespace

bool bindChart(ui::Chart& chart, QObject& target, const BindContext& context)
{
    auto* found = qobject_cast<QCustomPlot*>(&target);
    if (!found)
        return false;
    QCustomPlot& plot = *found;
    auto view = std::make_shared<ChartView>(chart, plot);
    view->connectEvents(context.connections, view);
    QPointer<QCustomPlot> widget(&plot);
    plot.setVisible(chart.visible());
    view->sync();
    chart.setChangeListener([view, widget, &chart](const ui::ChangeEvent& e) {
        if (widget && e.what == ui::Change::Visible)
            widget->setVisible(chart.visible());
        else
            view->sync();
    });
    return true;
}

} // namespace zv::qt
