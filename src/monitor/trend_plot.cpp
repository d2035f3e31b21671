#include "monitor/trend_plot.h"

#include "core/error_handler.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/main_title.h"
#include "monitor/poll_cycle.h"
#include "monitor/unexpected_error.h"
#include "platform/event_loop.h"
#include "platform/val.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <random>
#include <string>

namespace zv {

namespace {

using platform::Rgb;
using platform::ui::Chart;
using platform::ui::ChartAxis;
using platform::ui::CheckBox;

constexpr Rgb kBlack = 0x000000;
constexpr Rgb kRed = 0x0000FF;
constexpr Rgb kGreen = 0x00FF00;
constexpr Rgb kBlue = 0xFF0000; // the scale line of the axis that carries the grid

struct SwitchInfo {
    const char* caption;
    const char* setting;
};
constexpr std::array<SwitchInfo, kPlotSwitches> kSwitches { {
    { "Current", "PlotCurrent" },
    { "Voltage", "PlotVoltage" },
    { "Relative state of charge", "PlotSOC" },
    { "Temperature", "PlotTemperature" },
} };

struct AxisDefault {
    const char* name;
    double min;
    double span;
    const char* title;
};
constexpr std::array<AxisDefault, kPlotSwitches> kYAxes { {
    { "Current", -1500, 3000, "Current mA" },
    { "Voltage", 2700, 1600, "Voltage mV" },
    { "SOC", 0, 100, "RSOC %" },
    { "Temperature", 0, 50, "Temperature \u00b0C" },
} };
constexpr double kKelvinMin = 273;
constexpr const char* kKelvinTitle = "Temperature K";
constexpr double kXSpan = 7200;
constexpr const char* kXTitle = "Time (seconds)";

// The parameters of a cell by position.
constexpr int kCellVoltage = 1;
constexpr int kCellTemperature = 2;

constexpr const char* kExpandedPlot = "ExpandedPlot";

void setRange(Chart& chart, std::size_t axis, double min, double span, const std::string& title)
{
    chart.updateYAxis(axis, [&](ChartAxis& a) {
        a.min = min;
        a.span = span;
        a.title = title;
        a.titleShown = true;
    });
}

// A value as the plot takes it: the number of the value itself, or of its display text in a
// mode that converts the unit (2: temperatures in the display unit). Nothing for an empty value.
std::optional<double> plotValue(
    const clsSMBusParameter* parameter, const DisplaySettings& display, int mode = -1)
{
    if (!parameter || parameter->value.isEmpty())
        return std::nullopt;
    if (mode < 0)
        return parameter->value.asNumber(display.locale);
    const std::string text = parameter->ToString(mode, display);
    if (auto number = parseNumber(text, display.locale.decimalSeparator))
        return number;
    return Val(text);
}

constexpr std::string_view kPlotHistoryHours = "PlotHistoryHours";
constexpr double kSecondsAnHour = 3600;

void setDefaultXAxis(Chart& chart)
{
    chart.updateXAxis([](ChartAxis& a) {
        a.min = 0;
        a.span = kXSpan;
        a.title = kXTitle;
        a.titleShown = true;
    });
}

void addPoint(Chart& chart, std::size_t channel, double x, std::optional<double> y)
{
    if (y && channel < chart.channelCount())
        chart.addPoint(channel, x, *y);
}

} // namespace

double plotHistorySpan(const std::string& hoursSetting)
{
    const auto hours = parseNumber(hoursSetting, '.');
    if (!hours || !std::isfinite(*hours))
        return kXSpan;
    return std::max(kXSpan, *hours * kSecondsAnHour);
}

TrendPlot::TrendPlot(MonitorContext& context, PollCycle& poll)
    : c_(context)
    , poll_(poll)
{
    auto engine = std::make_shared<std::mt19937>(
        static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count()));
    random = [engine] { return std::uniform_real_distribution<double>(0.0, 1.0)(*engine); };
    setCaptions();
    wire();
}

void TrendPlot::setCaptions()
{
    frmMain& f = c_.form;
    for (std::size_t i = 0; i < kPlotSwitches; ++i)
        f.iSwitchLed[i].setCaption(kSwitches[i].caption);
    for (std::size_t i = 0; i < kYAxes.size(); ++i)
        f.iPlot.updateYAxis(i, [i](ChartAxis& a) { a.name = kYAxes[i].name; });
    struct ButtonText {
        platform::ui::Button* button;
        const char* caption;
        const char* toolTip;
    };
    for (const auto& [button, caption, toolTip] : std::array<ButtonText, 7> { {
             { &f.cmdToggleGridY, "Grid", "Toggle through each available Y axis grid" },
             { &f.cmdResetPlot, "Reset", "Reset the plot to the default values" },
             { &f.cmdToggleTabView, "Expand", "Expand and collapse the tabs" },
             { &f.cmdZoomx, "Zoom X", "Zoom to fit X axis" },
             { &f.cmdZoomy, "Zoom Y", "Zoom to fit Y axis" },
             { &f.cmdTrackx, "Track X", "Enable tracking X axis" },
             { &f.cmdTracky, "Track Y", "Enable tracking Y axis" },
         } }) {
        button->setCaption(caption);
        button->setToolTip(toolTip);
    }
}

void TrendPlot::wire()
{
    frmMain& f = c_.form;
    Chart& plot = f.iPlot;
    for (std::size_t i = 0; i < kPlotSwitches; ++i)
        f.iSwitchLed[i].onClick = [this, i] { switchClicked(i); };
    f.cmdToggleGridY.onClick = [this] { cmdToggleGridY_Click(); };
    f.cmdResetPlot.onClick = [this] { ResetXY(); };
    f.cmdToggleTabView.onClick = [this] { cmdToggleTabView_Click(); };
    f.cmdTrackx.onClick = [&plot] { plot.updateXAxis([](ChartAxis& a) { a.tracking = !a.tracking; }); };
    f.cmdTracky.onClick = [&plot] { plot.updateYAxis(0, [](ChartAxis& a) { a.tracking = !a.tracking; }); };
    f.cmdZoomx.onClick = [&plot] { plot.updateXAxis([](ChartAxis& a) { ++a.zoomRequests; }); };
    f.cmdZoomy.onClick = [&plot] { plot.updateYAxis(0, [](ChartAxis& a) { ++a.zoomRequests; }); };
    f.mnuGenerateColor.onClick = [this] { mnuGenerateColor_Click(); };
    f.mnuSelectColor.onClick = [this] { mnuSelectColor_Click(); };
    plot.onChannelClick
        = [this](std::size_t channel) { ChannelUnderMouse = static_cast<std::int16_t>(channel); };
    plot.onRightClick = [&f] {
        if (f.popupMenu)
            f.popupMenu(f.mnuPlotMenu);
    };
}

// Each Y axis is shown while its switch is on.
void TrendPlot::showAxes(Chart& plot) const
{
    for (std::size_t i = 0; i < kPlotSwitches; ++i)
        plot.updateYAxis(i, [on = switchOn(i)](ChartAxis& a) { a.visible = on; });
}

bool TrendPlot::switchOn(std::size_t index) const
{
    return c_.form.iSwitchLed[index].value() == CheckBox::Checked;
}

void TrendPlot::switchClicked(std::size_t index)
{
    writeSetting(c_.settings, kSwitches[index].setting, switchOn(index) ? "-1" : "0");
    ReconfigurePlotting();
}

void TrendPlot::loadPlot()
{
    frmMain& f = c_.form;
    for (std::size_t i = 0; i < kPlotSwitches; ++i) {
        const bool on = readSetting(c_.settings, kSwitches[i].setting, c_.programFolder) != "0";
        f.iSwitchLed[i].setValue(on ? CheckBox::Checked : CheckBox::Unchecked);
    }
    BoardChannel = 2 * static_cast<std::size_t>(c_.globals.gNodeCount) + 2;
    f.iPlot.setHistorySpan(plotHistorySpan(readSetting(c_.settings, kPlotHistoryHours, c_.programFolder)));
    BuildPlotChannels();
    ReconfigurePlotting();
    ResetXY();
    f.CellsChecked = true;
    showExpandedView();
}

Rgb TrendPlot::randomColor()
{
    const auto part = [this] { return static_cast<Rgb>(random() * 255) & 0xFF; };
    const Rgb red = part();
    const Rgb green = part();
    const Rgb blue = part();
    return red | (green << 8) | (blue << 16);
}

// Title, axis and colour of a channel; shown while the switch of its axis is on.
void TrendPlot::describeChannel(std::size_t channel, const std::string& title, std::size_t axis, Rgb color)
{
    c_.form.iPlot.updateChannel(channel, [&](platform::ui::ChartChannel& ch) {
        ch.title = title;
        ch.yAxisName = kYAxes[axis].name;
        ch.color = color;
        ch.visible = switchOn(axis);
        ch.visibleInLegend = ch.visible;
    });
}

void TrendPlot::BuildPlotChannels()
{
    Chart& plot = c_.form.iPlot;
    plot.beginUpdate();
    plot.removeAddedChannels();
    for (int cell = 1; cell <= c_.globals.gNodeCount; ++cell) {
        const std::string number = std::to_string(cell);
        describeChannel(plot.addChannel(), "Voltage " + number, kPlotVoltage, randomColor());
        describeChannel(plot.addChannel(), "Temperature " + number, kPlotTemperature, randomColor());
    }
    describeChannel(0, "Current", kPlotCurrent, kRed);
    describeChannel(1, "RSOC", kPlotSoc, kGreen);
    BoardChannel = plot.addChannel();
    describeChannel(BoardChannel, "Board Temp", kPlotTemperature, kBlue);
    setDefaultXAxis(plot);
    showAxes(plot);
    plot.endUpdate();
    c_.globals.CurrentNode = 0;
}

void TrendPlot::ReconfigurePlotting()
{
    try {
        reconfigure();
    } catch (const std::exception& e) {
        if (!c_.errors)
            throw;
        if (c_.errors->ReportError(unexpectedError(e), "Main", "ReconfigurePlotting") == ErrorResponse::Retry)
            ReconfigurePlotting();
    }
}

void TrendPlot::reconfigure()
{
    frmMain& f = c_.form;
    Chart& plot = f.iPlot;
    plot.beginUpdate();
    for (const auto& row : f.lvNodes.rows()) {
        const auto cell = parseNumber(row.text, '.');
        if (!cell || *cell < 1 || temperatureChannel(static_cast<std::size_t>(*cell)) >= BoardChannel)
            continue;
        const auto i = static_cast<std::size_t>(*cell);
        plot.setChannelShown(voltageChannel(i), row.checked && switchOn(kPlotVoltage));
        plot.setChannelShown(temperatureChannel(i), row.checked && switchOn(kPlotTemperature));
    }
    plot.setChannelShown(0, switchOn(kPlotCurrent));
    plot.setChannelShown(1, switchOn(kPlotSoc));
    if (BoardChannel < plot.channelCount())
        plot.setChannelShown(BoardChannel, switchOn(kPlotTemperature));
    showAxes(plot);
    plot.endUpdate();
}

void TrendPlot::UpdatePlot()
{
    Chart& plot = c_.form.iPlot;
    plot.beginUpdate();
    try {
        plotSample();
    } catch (const std::exception& e) {
        if (c_.errors)
            c_.errors->AutoHandler(unexpectedError(e), "frmMain", "UpdatePlot");
    }
    plot.endUpdate();
}

void TrendPlot::plotSample()
{
    const auto now = c_.loop.now();
    if (poll_.ResetPlot) {
        PlotStart = now;
        poll_.ResetPlot = false;
    }
    LastPlotTime = static_cast<std::int32_t>(
        std::chrono::duration_cast<std::chrono::seconds>(now - PlotStart).count());
    const double x = LastPlotTime;
    Chart& plot = c_.form.iPlot;
    const clsCellWeft& driver = c_.main.CellWeft();
    const DisplaySettings& display = driver.Parameters.display;
    const ParameterList& gateway = driver.GatewayParameters;
    addPoint(plot, 0, x, plotValue(gateway.FindByName("Current"), display));
    addPoint(plot, 1, x, plotValue(gateway.FindByName("Relative State of Charge"), display));
    for (int cell = 1; cell <= driver.nodes.Count(); ++cell) {
        const ParameterList& p = driver.nodes.Item(cell)->NodeParameters;
        const auto i = static_cast<std::size_t>(cell);
        if (temperatureChannel(i) >= BoardChannel)
            break;
        addPoint(plot, voltageChannel(i), x, plotValue(p.Item(kCellVoltage), display));
        addPoint(plot, temperatureChannel(i), x, plotValue(p.Item(kCellTemperature), display, 2));
    }
    addPoint(plot, BoardChannel, x, plotValue(gateway.FindByName("Board Temperature"), display, 2));
}

void TrendPlot::ResetXY()
{
    Chart& plot = c_.form.iPlot;
    plot.beginUpdate();
    setDefaultXAxis(plot);
    for (std::size_t i = 0; i < kPlotTemperature; ++i)
        setRange(plot, i, kYAxes[i].min, kYAxes[i].span, kYAxes[i].title);
    const bool kelvin = c_.globals.settings.TemperatureUnits == 0;
    const AxisDefault& t = kYAxes[kPlotTemperature];
    setRange(plot, kPlotTemperature, kelvin ? kKelvinMin : t.min, t.span, kelvin ? kKelvinTitle : t.title);
    plot.setGridYAxisName("");
    for (std::size_t i = 0; i < plot.yAxisCount(); ++i)
        plot.updateYAxis(i, [](ChartAxis& a) { a.scaleColor = kBlack; });
    plot.endUpdate();
}

void TrendPlot::resetPlot()
{
    c_.form.iPlot.clearData();
    ResetXY();
}

// Moves the grid to the next visible Y axis; after the last one no axis carries it.
void TrendPlot::cmdToggleGridY_Click()
{
    Chart& plot = c_.form.iPlot;
    plot.beginUpdate();
    std::size_t start = 0;
    for (std::size_t i = 0; i < plot.yAxisCount(); ++i) {
        if (!plot.yAxis(i).visible)
            plot.updateYAxis(i, [](ChartAxis& a) { a.scaleColor = kBlack; });
        else if (plot.yAxis(i).scaleColor == kBlue)
            start = i;
    }
    plot.setGridYAxisName("");
    for (std::size_t i = start; i < plot.yAxisCount(); ++i) {
        if (!plot.yAxis(i).visible)
            continue;
        if (plot.yAxis(i).scaleColor == kBlue) {
            plot.updateYAxis(i, [](ChartAxis& a) { a.scaleColor = kBlack; });
            continue;
        }
        plot.updateYAxis(i, [](ChartAxis& a) { a.scaleColor = kBlue; });
        plot.setGridYAxisName(plot.yAxis(i).name);
        break;
    }
    plot.endUpdate();
}

void TrendPlot::cmdToggleTabView_Click()
{
    const bool expanded = readSetting(c_.settings, kExpandedPlot, c_.programFolder) == "1";
    writeSetting(c_.settings, kExpandedPlot, expanded ? "0" : "1");
    showExpandedView();
}

void TrendPlot::showExpandedView()
{
    const bool expanded = readSetting(c_.settings, kExpandedPlot, c_.programFolder) == "1";
    frmMain& f = c_.form;
    f.SSTab.setVisible(!expanded);
    f.SSTab1.setVisible(!expanded);
    f.fraStatus.setVisible(!expanded);
    f.cmdToggleTabView.setCaption(expanded ? "Collapse" : "Expand");
}

void TrendPlot::mnuGenerateColor_Click()
{
    Chart& plot = c_.form.iPlot;
    const auto channel = static_cast<std::size_t>(ChannelUnderMouse);
    if (channel < plot.channelCount())
        plot.updateChannel(
            channel, [color = randomColor()](platform::ui::ChartChannel& ch) { ch.color = color; });
}

void TrendPlot::mnuSelectColor_Click()
{
    Chart& plot = c_.form.iPlot;
    const auto channel = static_cast<std::size_t>(ChannelUnderMouse);
    if (channel >= plot.channelCount())
        return;
    if (const auto color = c_.dialogs.chooseColor(plot.channel(channel).color))
        plot.updateChannel(channel, [&](platform::ui::ChartChannel& ch) { ch.color = *color; });
}

} // namespace zv
