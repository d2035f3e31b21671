#include "core/settings_table.h"
#include "monitor_fixture.h"
#include "platform/event_loop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zv {
namespace {

using platform::ui::Change;
using platform::ui::Chart;
using test::MonitorRig;

class TrendPlotTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(rig.load()); }

    [[nodiscard]] bool shown(std::size_t channel) const
    {
        return plot.channel(channel).visible && plot.channel(channel).visibleInLegend;
    }
    [[nodiscard]] std::vector<double> xs(std::size_t channel) const
    {
        std::vector<double> values;
        for (const auto& point : plot.channel(channel).points)
            values.push_back(point.x);
        return values;
    }
    void setSwitch(std::size_t index, bool on)
    {
        if ((form.iSwitchLed[index].value() == platform::ui::CheckBox::Checked) != on)
            form.iSwitchLed[index].userClick();
    }
    [[nodiscard]] std::string cellKey(int cell) const { return "n" + std::to_string(cell); }
    [[nodiscard]] int cells() const { return rig.h.globals.gNodeCount; }

    MonitorRig rig;
    frmMain& form = *rig.form;
    Chart& plot = rig.form->iPlot;
    TrendPlot& trend = rig.monitor->plot;
    PollCycle& poll = rig.monitor->poll;
};

TEST_F(TrendPlotTest, LoadBuildsTheChannelLayoutAndTheDefaultAxes)
{
    const auto n = static_cast<std::size_t>(cells());
    ASSERT_GT(n, 1U);
    ASSERT_EQ(plot.channelCount(), 2 * n + 3);
    EXPECT_EQ(trend.BoardChannel, 2 * n + 2);
    EXPECT_EQ(plot.channel(0).title, "Current");
    EXPECT_EQ(plot.channel(0).color, 0x0000FFU);
    EXPECT_EQ(plot.channel(1).title, "RSOC");
    EXPECT_EQ(plot.channel(1).yAxisName, "SOC");
    EXPECT_EQ(plot.channel(2).title, "Voltage 1");
    EXPECT_EQ(plot.channel(2).yAxisName, "Voltage");
    EXPECT_EQ(plot.channel(2 * n + 1).title, "Temperature " + std::to_string(n));
    EXPECT_EQ(plot.channel(trend.BoardChannel).title, "Board Temp");
    EXPECT_EQ(plot.channel(trend.BoardChannel).color, 0xFF0000U);
    // Default switches: current and voltage on, RSOC and temperature off.
    EXPECT_TRUE(shown(0));
    EXPECT_FALSE(shown(1));
    EXPECT_TRUE(shown(2));
    EXPECT_FALSE(shown(3));
    EXPECT_EQ(plot.xAxis().span, 7200);
    EXPECT_EQ(plot.xAxis().title, "Time (seconds)");
    EXPECT_EQ(plot.yAxis(0).min, -1500);
    EXPECT_EQ(plot.yAxis(1).title, "Voltage mV");
    EXPECT_EQ(plot.yAxis(3).title, "Temperature \u00b0C");
    EXPECT_TRUE(plot.yAxis(1).visible);
    EXPECT_FALSE(plot.yAxis(2).visible);
    EXPECT_EQ(form.cmdZoomy.toolTip(), "Zoom to fit Y axis");
    EXPECT_EQ(form.iSwitchLed[2].caption(), "Relative state of charge");
}

TEST_F(TrendPlotTest, CellCheckBoxesAndSwitchesDecideVisibility)
{
    setSwitch(kPlotTemperature, true);
    EXPECT_EQ(readSetting(rig.h.settings, "PlotTemperature", test::programFolder()), "-1");
    EXPECT_TRUE(shown(temperatureChannel(2)));
    EXPECT_TRUE(plot.yAxis(3).visible);

    form.lvNodes.userCheck(cellKey(2), false);
    EXPECT_FALSE(shown(voltageChannel(2)));
    EXPECT_FALSE(shown(temperatureChannel(2))) << "switches stay on, the cell is unchecked";
    EXPECT_TRUE(shown(voltageChannel(1)));

    setSwitch(kPlotTemperature, false);
    EXPECT_EQ(readSetting(rig.h.settings, "PlotTemperature", test::programFolder()), "0");
    for (int cell = 1; cell <= cells(); ++cell)
        EXPECT_FALSE(shown(temperatureChannel(static_cast<std::size_t>(cell))));
    EXPECT_FALSE(shown(trend.BoardChannel));
    EXPECT_FALSE(plot.yAxis(3).visible);

    // The "Cell" header unchecks every cell, then checks them all again.
    form.lvNodes.userColumnClick(0);
    EXPECT_FALSE(shown(voltageChannel(1)));
    form.lvNodes.userColumnClick(0);
    EXPECT_TRUE(shown(voltageChannel(2)));
}

TEST_F(TrendPlotTest, SamplesPlotOnePointPerChannelInOneBracketHiddenOnesToo)
{
    int notices = 0;
    plot.setChangeListener([&](const platform::ui::ChangeEvent& e) {
        ++notices;
        EXPECT_EQ(e.what, Change::Rows);
    });
    form.mnuPollAllContinuously.click();
    rig.h.loop.advance(2000); // the default rate samples every second tick
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(plot.channel(0).points.size(), 1U);
    EXPECT_EQ(plot.channel(temperatureChannel(1)).points.size(), 1U) << "hidden, still fed";
    EXPECT_EQ(plot.channel(trend.BoardChannel).points.size(), 1U);
    const double celsius = plot.channel(trend.BoardChannel).points[0].y;
    EXPECT_GT(celsius, -40);
    EXPECT_LT(celsius, 100) << "temperatures in the display unit";
    const double millivolts = plot.channel(voltageChannel(1)).points[0].y;
    EXPECT_GT(millivolts, 2000);
    form.mnuStopPolling.click();
    rig.h.loop.advance(1000);
}

TEST_F(TrendPlotTest, ResetPutsTheNextPointAtZeroAndARateOfTwentyStepsByTwenty)
{
    rig.form->cmbPollRate.userSelect(19);
    form.mnuPollAllContinuously.click();
    rig.h.loop.advance(60500);
    const auto steps = xs(0);
    ASSERT_GE(steps.size(), 3U);
    EXPECT_EQ(steps[0], 0);
    for (std::size_t i = 1; i < steps.size(); ++i)
        EXPECT_NEAR(steps[i] - steps[i - 1], 20, 1);

    form.mnuStopPolling.click();
    rig.h.loop.advance(1000);
    form.mnuResetPolling.click();
    EXPECT_TRUE(plot.channel(0).points.empty());
    form.mnuPollAllContinuously.click();
    rig.h.loop.advance(20500);
    EXPECT_EQ(xs(0), (std::vector<double> { 0 }));
    EXPECT_EQ(trend.LastPlotTime, 0);
    form.mnuStopPolling.click();
    rig.h.loop.advance(1000);
}

TEST_F(TrendPlotTest, ResetPlotButtonKeepsTheDataAndKelvinMovesTheTemperatureAxis)
{
    ASSERT_TRUE(poll.UpdateDynamicData());
    trend.UpdatePlot();
    plot.userXRange(500, 100);
    rig.h.globals.settings.TemperatureUnits = 0;
    form.cmdResetPlot.click();
    EXPECT_EQ(plot.channel(0).points.size(), 1U);
    EXPECT_EQ(plot.xAxis().min, 0);
    EXPECT_EQ(plot.xAxis().span, 7200);
    EXPECT_EQ(plot.yAxis(3).min, 273);
    EXPECT_EQ(plot.yAxis(3).title, "Temperature K");
}

TEST_F(TrendPlotTest, GridWalksTheVisibleAxesThenNone)
{
    setSwitch(kPlotTemperature, true); // visible: 0, 1 and 3
    std::vector<std::string> walk;
    for (int i = 0; i < 5; ++i) {
        form.cmdToggleGridY.click();
        walk.push_back(plot.gridYAxisName());
    }
    EXPECT_EQ(walk, (std::vector<std::string> { "Current", "Voltage", "Temperature", "", "Current" }));
    EXPECT_EQ(plot.yAxis(0).scaleColor, 0xFF0000U);
    EXPECT_EQ(plot.yAxis(3).scaleColor, 0U);

    // A blue axis that is hidden turns black, and the walk starts over.
    form.cmdToggleGridY.click();
    setSwitch(kPlotVoltage, false);
    form.cmdToggleGridY.click();
    EXPECT_EQ(plot.yAxis(1).scaleColor, 0U);
    EXPECT_EQ(plot.gridYAxisName(), "Current");

    form.cmdResetPlot.click();
    EXPECT_EQ(plot.gridYAxisName(), "");
    EXPECT_EQ(plot.yAxis(0).scaleColor, 0U);
}

TEST_F(TrendPlotTest, TrackZoomExpandAndColours)
{
    form.cmdTrackx.click();
    form.cmdTracky.click();
    form.cmdZoomx.click();
    EXPECT_TRUE(plot.xAxis().tracking);
    EXPECT_TRUE(plot.yAxis(0).tracking);
    EXPECT_EQ(plot.xAxis().zoomRequests, 1U);
    EXPECT_EQ(plot.yAxis(0).zoomRequests, 0U);

    const bool expanded = readSetting(rig.h.settings, "ExpandedPlot", test::programFolder()) == "1";
    EXPECT_EQ(form.fraStatus.visible(), !expanded);
    form.cmdToggleTabView.click();
    EXPECT_EQ(readSetting(rig.h.settings, "ExpandedPlot", test::programFolder()), expanded ? "0" : "1");
    EXPECT_EQ(form.SSTab.visible(), expanded);
    EXPECT_EQ(form.SSTab1.visible(), expanded);
    EXPECT_EQ(form.fraStatus.visible(), expanded);

    std::vector<double> draws { 0.5, 0.0, 0.999 };
    trend.random = [&draws] {
        const double d = draws.front();
        draws.erase(draws.begin());
        return d;
    };
    platform::ui::MenuItem* shownMenu = nullptr;
    form.popupMenu = [&](platform::ui::MenuItem& menu) { shownMenu = &menu; };
    plot.userChannelClick(3);
    plot.userRightClick();
    EXPECT_EQ(shownMenu, &form.mnuPlotMenu);
    EXPECT_TRUE(form.mnuGenerateColor.enabled());
    form.mnuGenerateColor.click();
    EXPECT_EQ(plot.channel(3).color, 127U | (0U << 8) | (254U << 16));

    const platform::Rgb before = plot.channel(3).color;
    rig.h.dialogs.answerColor(std::nullopt);
    form.mnuSelectColor.click();
    EXPECT_EQ(rig.h.dialogs.lastShown().initialColor, before);
    EXPECT_EQ(plot.channel(3).color, before) << "cancelled";
    rig.h.dialogs.answerColor(0x123456);
    form.mnuSelectColor.click();
    EXPECT_EQ(plot.channel(3).color, 0x123456U);
}

// The plot keeps what its X axis can show, two hours, or the longer history of the setting.
TEST(TrendPlotHistory, TheSettingLengthensTheHistoryNeverShortensIt)
{
    const struct {
        const char* setting;
        double seconds;
    } cases[] { { "2", 7200 }, { "24", 86'400 }, { "0.5", 7200 }, { "-3", 7200 }, { "168", 604'800 },
        { "a week", 7200 }, { "", 7200 } };
    for (const auto& c : cases)
        EXPECT_EQ(plotHistorySpan(c.setting), c.seconds) << '"' << c.setting << '"';
}

TEST(TrendPlotChannels, BoardChannelMovesWithTheCellCount)
{
    MonitorRig rig(test::kTarget1002);
    ASSERT_TRUE(rig.load());
    ASSERT_EQ(rig.h.globals.gNodeCount, 12);
    TrendPlot& trend = rig.monitor->plot;
    EXPECT_EQ(trend.BoardChannel, 26U);
    EXPECT_EQ(rig.form->iPlot.channelCount(), 27U);

    rig.h.globals.gNodeCount = 4;
    trend.BuildPlotChannels();
    EXPECT_EQ(trend.BoardChannel, 10U);
    EXPECT_EQ(rig.form->iPlot.channelCount(), 11U);
    EXPECT_EQ(rig.form->iPlot.channel(10).title, "Board Temp");
}

} // namespace
} // namespace zv
