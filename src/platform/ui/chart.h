#pragma once
// A strip chart: numbered channels of (x, y) points on one X axis and named Y axes. A binder takes
// the new points over (takePoints) and from then on holds the history itself, so that the points
// are kept once; an unbound chart keeps them. Either holds no point older than the history span
// behind a channel's newest point, dropped as new ones come. Changes made between beginUpdate and
// endUpdate reach the binder as one notification at the end.
//
// Zoom to fit is a request: the axis counts them and the binder rescales once per new request.

#include "platform/ui/control.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace zv::platform::ui {

struct ChartPoint {
    double x = 0;
    double y = 0;
};

struct ChartChannel {
    std::string title;
    Rgb color = 0;
    std::string yAxisName;
    bool visible = true;
    bool visibleInLegend = true;
    std::deque<ChartPoint> points; // not yet taken by a binder
};

struct ChartAxis {
    std::string name;
    double min = 0;
    double span = 100;
    std::string title;
    bool titleShown = true;
    bool visible = true;
    bool tracking = false;
    Rgb scaleColor = 0; // the colour of the scale line
    unsigned zoomRequests = 0;
    bool operator==(const ChartAxis&) const = default;
};

class Chart : public Control {
public:
    // fixedChannels exist from the start and survive removeAddedChannels.
    Chart(std::string name, std::size_t fixedChannels, std::size_t yAxes);

    [[nodiscard]] std::size_t channelCount() const { return channels_.size(); }
    [[nodiscard]] const ChartChannel& channel(std::size_t index) const { return channels_.at(index); }
    // Drops every channel beyond the fixed ones; added channels continue the numbering.
    void removeAddedChannels();
    std::size_t addChannel();
    // Changes a channel's properties (not its points); notifies only when something changed.
    void updateChannel(std::size_t index, const std::function<void(ChartChannel&)>& change);
    void setChannelShown(std::size_t index, bool shown); // Visible and VisibleInLegend
    void addPoint(std::size_t index, double x, double y);
    // Hands the channel's points to the binder, which keeps them from now on.
    [[nodiscard]] std::deque<ChartPoint> takePoints(std::size_t index);
    void clearData();
    // Counts the times every point was dropped (clearData): a binder that sees it change empties
    // its lines.
    [[nodiscard]] unsigned dataGeneration() const { return dataGeneration_; }
    // Counts removeAddedChannels: a binder that sees it change empties the lines beyond the fixed.
    [[nodiscard]] unsigned channelGeneration() const { return channelGeneration_; }
    [[nodiscard]] std::size_t fixedChannelCount() const { return fixedChannels_; }

    // How far in X behind a channel's newest point its points are kept.
    static constexpr double kDefaultHistorySpan = 7200;
    [[nodiscard]] double historySpan() const { return historySpan_; }
    void setHistorySpan(double span);

    [[nodiscard]] const ChartAxis& xAxis() const { return xAxis_; }
    [[nodiscard]] std::size_t yAxisCount() const { return yAxes_.size(); }
    [[nodiscard]] const ChartAxis& yAxis(std::size_t index) const { return yAxes_.at(index); }
    void updateXAxis(const std::function<void(ChartAxis&)>& change);
    void updateYAxis(std::size_t index, const std::function<void(ChartAxis&)>& change);

    // The name of the Y axis that carries the grid lines; empty for none.
    [[nodiscard]] const std::string& gridYAxisName() const { return gridYAxisName_; }
    void setGridYAxisName(std::string name);

    // A bracket: nested brackets notify once, at the end of the outermost.
    void beginUpdate() { ++updateDepth_; }
    void endUpdate();
    [[nodiscard]] bool updating() const { return updateDepth_ > 0; }

    // The user clicked a channel (in the legend or on its line), or right-clicked the chart.
    void userChannelClick(std::size_t index);
    void userRightClick();
    // The user dragged or zoomed an axis: the chart keeps the range it shows.
    void userXRange(double min, double span);
    void userYRange(std::size_t index, double min, double span);
    std::function<void(std::size_t channel)> onChannelClick;
    std::function<void()> onRightClick;

private:
    void changed(Change what);
    void updateAxis(ChartAxis& axis, const std::function<void(ChartAxis&)>& change);

    std::size_t fixedChannels_;
    std::vector<ChartChannel> channels_;
    ChartAxis xAxis_;
    std::vector<ChartAxis> yAxes_;
    std::string gridYAxisName_;
    unsigned dataGeneration_ = 0;
    unsigned channelGeneration_ = 0;
    double historySpan_ = kDefaultHistorySpan;
    int updateDepth_ = 0;
    bool pending_ = false;
};

} // namespace zv::platform::ui
