#include "platform/ui/chart.h"

#include <tuple>
#include <utility>

namespace zv::platform::ui {

namespace {

auto look(const ChartChannel& c)
{
    return std::tie(c.title, c.color, c.yAxisName, c.visible, c.visibleInLegend);
}

} // namespace

Chart::Chart(std::string name, std::size_t fixedChannels, std::size_t yAxes)
    : Control(std::move(name))
    , fixedChannels_(fixedChannels)
    , channels_(fixedChannels)
    , yAxes_(yAxes)
{
}

void Chart::removeAddedChannels()
{
    if (channels_.size() <= fixedChannels_)
        return;
    channels_.resize(fixedChannels_);
    ++channelGeneration_;
    changed(Change::Rows);
}

std::size_t Chart::addChannel()
{
    channels_.emplace_back();
    changed(Change::RowAdded);
    return channels_.size() - 1;
}

void Chart::updateChannel(std::size_t index, const std::function<void(ChartChannel&)>& change)
{
    ChartChannel& channel = channels_.at(index);
    // The points stay out of reach of the change.
    std::deque<ChartPoint> points = std::move(channel.points);
    channel.points.clear();
    const ChartChannel before = channel;
    change(channel);
    channel.points = std::move(points);
    if (look(before) != look(channel))
        changed(Change::RowChanged);
}

void Chart::setChannelShown(std::size_t index, bool shown)
{
    updateChannel(index, [shown](ChartChannel& c) {
        c.visible = shown;
        c.visibleInLegend = shown;
    });
}

void Chart::addPoint(std::size_t index, double x, double y)
{
    auto& points = channels_.at(index).points;
    points.push_back({ x, y });
    // Each point is dropped once: constant work a sample on average.
    while (points.front().x < x - historySpan_)
        points.pop_front();
    changed(Change::Appended);
}

std::deque<ChartPoint> Chart::takePoints(std::size_t index)
{
    return std::exchange(channels_.at(index).points, {});
}

void Chart::setHistorySpan(double span)
{
    historySpan_ = span;
}

void Chart::clearData()
{
    for (auto& channel : channels_)
        channel.points.clear();
    ++dataGeneration_;
    changed(Change::Cleared);
}

void Chart::updateAxis(ChartAxis& axis, const std::function<void(ChartAxis&)>& change)
{
    const ChartAxis before = axis;
    change(axis);
    if (!(before == axis))
        changed(Change::Value);
}

void Chart::updateXAxis(const std::function<void(ChartAxis&)>& change)
{
    updateAxis(xAxis_, change);
}

void Chart::updateYAxis(std::size_t index, const std::function<void(ChartAxis&)>& change)
{
    updateAxis(yAxes_.at(index), change);
}

void Chart::setGridYAxisName(std::string name)
{
    if (gridYAxisName_ == name)
        return;
    gridYAxisName_ = std::move(name);
    changed(Change::Value);
}

void Chart::endUpdate()
{
    if (updateDepth_ == 0 || --updateDepth_ > 0 || !pending_)
        return;
    pending_ = false;
    notify(Change::Rows);
}

void Chart::changed(Change what)
{
    if (updating())
        pending_ = true;
    else
        notify(what);
}

void Chart::userChannelClick(std::size_t index)
{
    if (usable() && index < channels_.size() && onChannelClick)
        onChannelClick(index);
}

void Chart::userRightClick()
{
    if (usable() && onRightClick)
        onRightClick();
}

void Chart::userXRange(double min, double span)
{
    updateXAxis([&](ChartAxis& a) {
        a.min = min;
        a.span = span;
    });
}

void Chart::userYRange(std::size_t index, double min, double span)
{
    updateYAxis(index, [&](ChartAxis& a) {
        a.min = min;
        a.span = span;
    });
}

} // namespace zv::platform::ui
