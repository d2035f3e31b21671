#pragma once
// The trend plot of the main window: one strip chart (iPlot) of pack current, relative state of
// charge, each cell's voltage and temperature and the board temperature, fed one point per
// channel at each good sample. Cell i is always the channel pair 2i (voltage) and 2i + 1
// (temperature); the board temperature follows the last cell. The four switches choose what is
// shown and keep their state in the settings; the buttons reset, grid, track and zoom the axes.

#include "monitor/monitor_context.h"
#include "platform/dialogs.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace zv::platform::ui {
class Chart;
}

namespace zv {

class PollCycle;

// The switches of iSwitchLed and the Y axes, by index.
enum PlotSwitch : std::size_t { kPlotCurrent = 0, kPlotVoltage = 1, kPlotSoc = 2, kPlotTemperature = 3 };
inline constexpr std::size_t kPlotSwitches = 4;
inline constexpr std::size_t kPlotFixedChannels = 2; // current and RSOC exist from the start

// How many seconds of samples the plot keeps, from the PlotHistoryHours setting: the hours given,
// never less than the two hours of the X axis; the two hours for a text that is not a number.
[[nodiscard]] double plotHistorySpan(const std::string& hoursSetting);

[[nodiscard]] constexpr std::size_t voltageChannel(std::size_t cell)
{
    return 2 * cell;
}
[[nodiscard]] constexpr std::size_t temperatureChannel(std::size_t cell)
{
    return 2 * cell + 1;
}

class TrendPlot {
public:
    TrendPlot(MonitorContext& context, PollCycle& poll);
    TrendPlot(const TrendPlot&) = delete;
    TrendPlot& operator=(const TrendPlot&) = delete;

    // LoadMainForm's step: the switches from their settings, the channels, the axes, the view.
    void loadPlot();
    // Creates the channels for the present cell count; their points are lost.
    void BuildPlotChannels();
    // Switches and the cells' check boxes to the channels' and axes' visibility.
    void ReconfigurePlotting();
    // One point for each channel from the last sample, in one update bracket.
    void UpdatePlot();
    // The default axes; no grid.
    void ResetXY();
    // mnuResetPolling's part (the poll sets ResetPlot): all points dropped, default axes.
    void resetPlot();

    void cmdToggleGridY_Click();
    void cmdToggleTabView_Click();
    void mnuGenerateColor_Click();
    void mnuSelectColor_Click();

    std::chrono::system_clock::time_point PlotStart {};
    std::int32_t LastPlotTime = 0;
    std::int16_t ChannelUnderMouse = 0;
    std::size_t BoardChannel = 0;
    // A number in [0, 1); by default a generator seeded from the clock.
    std::function<double()> random;

private:
    void wire();
    void setCaptions();
    [[nodiscard]] bool switchOn(std::size_t index) const;
    void switchClicked(std::size_t index);
    [[nodiscard]] platform::Rgb randomColor();
    void describeChannel(
        std::size_t channel, const std::string& title, std::size_t axis, platform::Rgb color);
    void showAxes(platform::ui::Chart& plot) const;
    void reconfigure();
    void plotSample();
    void showExpandedView();

    MonitorContext& c_;
    PollCycle& poll_;
};

} // namespace zv
