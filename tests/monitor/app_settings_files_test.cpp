// Application settings files on the loaded main window: a saved file read back, a file of
// another version refused with nothing changed, files with fewer or more entries than the chart.

#include "core/settings_table.h"
#include "monitor/app_settings_files.h"
#include "monitor/main_title.h"
#include "monitor_fixture.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

class AppSettingsFilesTest : public ::testing::Test, public MonitorRig {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(load());
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string write(const std::string& name, const std::string& text)
    {
        std::ofstream(folder / name, std::ios::binary) << text;
        return (folder / name).string();
    }
    std::string read(const std::string& name)
    {
        std::ifstream in(folder / name, std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        return all.str();
    }
    std::string version() const
    {
        return std::to_string(appVersion().major) + "." + std::to_string(appVersion().minor);
    }
    // The chart and settings a load must leave alone or change.
    std::string snapshot() const
    {
        const auto& plot = form->iPlot;
        std::ostringstream s;
        for (std::size_t i = 0; i < plot.yAxisCount(); ++i)
            s << plot.yAxis(i).min << "/" << plot.yAxis(i).span << "/" << plot.yAxis(i).title << ";";
        for (std::size_t c = 0; c < plot.channelCount(); ++c)
            s << plot.channel(c).color << ",";
        s << plot.gridYAxisName() << "|" << h.globals.settings.TemperatureUnits << "|"
          << h.globals.settings.ForeColor1;
        return s.str();
    }

    AppSettingsFiles files { *monitor, {} };
    fs::path folder = fs::temp_directory_path() / ("zv-appsettings-" + std::to_string(::getpid()));
};

TEST_F(AppSettingsFilesTest, SavedFileLoadsBackOnAnotherSetup)
{
    form->iPlot.updateYAxis(0, [](auto& a) {
        a.min = -2500;
        a.span = 5000;
        a.title = "Pack current";
    });
    form->iPlot.updateChannel(3, [](auto& c) { c.color = 0x123456; });
    form->iPlot.setGridYAxisName(form->iPlot.yAxis(1).name);
    form->iSwitchLed[3].setValue(platform::ui::CheckBox::Checked);
    h.globals.settings.ForeColor1 = 0x00FF00;
    const std::string saved = snapshot();

    h.dialogs.answerSaveFile((folder / "bench.ini").string());
    files.mnuSaveZentaviaSettings();
    const std::string text = read("bench.ini");
    EXPECT_TRUE(text.starts_with("[ApplicationID]\r\nVersion=" + version()
        + "\r\n\r\n[Plotting]\r\nYAxis(0).Min=-2500\r\n"
          "YAxis(0).Max=2500\r\nYAxis(0).Title=Pack current\r\nYAxis(0).TitleShow=True\r\n"))
        << text;
    EXPECT_THAT(text, HasSubstr("Channel(3).Color=1193046\r\n"));
    EXPECT_THAT(text, HasSubstr("TChannel=True\r\n"));
    EXPECT_THAT(text, HasSubstr("\r\n\r\n[Preferences]\r\nTemperatureUnits=1\r\nForeColor1=65280\r\n"));
    EXPECT_EQ(h.dialogs.notifications().back().title, "Save Application Settings");

    // Another setup, then the file.
    form->iPlot.updateYAxis(0, [](auto& a) { a.min = 0; });
    form->iPlot.setGridYAxisName("");
    h.globals.settings.ForeColor1 = 0;
    h.dialogs.answerOpenFiles({ (folder / "bench.ini").string() });
    files.mnuLoadZentaviaSettings();
    EXPECT_EQ(snapshot(), saved);
    EXPECT_EQ(h.dialogs.notifications().back().text, "Application settings have been loaded.");
    EXPECT_EQ(readSetting(h.settings, "ForeColor1", programFolder()), "65280");
}

TEST_F(AppSettingsFilesTest, RefusedFilesChangeNothing)
{
    h.dialogs.answerSaveFile((folder / "good.ini").string());
    files.mnuSaveZentaviaSettings();
    const std::string good = read("good.ini");
    const auto notifications = h.dialogs.notifications().size();

    struct Refusal {
        const char* name;
        std::string text;
        const char* title;
        const char* message;
    };
    std::string otherVersion = good;
    otherVersion.replace(otherVersion.find(version()), version().size(), "2.9");
    std::string badNumber = good;
    badNumber.replace(badNumber.find("YAxis(1).Min="), 13, "YAxis(1).Min=x");
    const Refusal refusals[] = {
        { "other.ini", otherVersion, "Invalid Data File", "Invalid Zentavia File" },
        { "bad.ini", badNumber, "Zentavia", "Error in file: bad.ini" },
    };
    for (const auto& r : refusals) {
        SCOPED_TRACE(r.name);
        form->iPlot.updateYAxis(0, [](auto& a) { a.min = -7; });
        const std::string changed = snapshot();
        h.dialogs.answerMessage(platform::Answer::OK);
        EXPECT_FALSE(files.load(write(r.name, r.text)));
        EXPECT_EQ(h.dialogs.lastShown().title, r.title);
        EXPECT_EQ(h.dialogs.lastShown().text, r.message);
        EXPECT_EQ(snapshot(), changed);
    }
    EXPECT_EQ(h.dialogs.notifications().size(), notifications);
}

TEST_F(AppSettingsFilesTest, FewerAxesAndMoreChannelsThanTheChart)
{
    const std::string text = "[ApplicationID]\r\nVersion=" + version() + "\r\n\r\n[Plotting]\r\n"
        + "Channel(0).Color=255\r\nChannel(999).Color=65280\r\nActiveGrid=\r\nVChannel=True\r\nTChannel="
          "False\r\n"
          "CChannel=True\r\nSChannel=False\r\n\r\n[Preferences]\r\nTemperatureUnits=0\r\nForeColor1=1\r\n"
          "ForeColor2=2\r\nAlternateRowColor=3\r\n";
    const auto axis0 = form->iPlot.yAxis(0);
    const auto channel1 = form->iPlot.channel(1).color;
    EXPECT_TRUE(files.load(write("colours.ini", text)));
    EXPECT_EQ(form->iPlot.yAxis(0), axis0) << "no YAxis(0).Visible: the axes stay";
    EXPECT_EQ(form->iPlot.channel(0).color, 255u);
    EXPECT_EQ(form->iPlot.channel(1).color, channel1) << "a channel without a key keeps its colour";
    EXPECT_EQ(h.globals.settings.TemperatureUnits, 0);
    EXPECT_EQ(h.globals.settings.AlternateRowColor, 3u);
    EXPECT_EQ(h.driver().Parameters.display.TemperatureUnits, 0);
}

} // namespace
} // namespace zv::test
