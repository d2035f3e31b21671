#include "monitor/app_settings_files.h"

#include "core/globals.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/main_title.h"
#include "monitor/monitor.h"
#include "platform/atomic_file.h"
#include "platform/dialogs.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zv {

namespace {

constexpr std::size_t kStoredChannelAxes = 4; // only channels 0 to 3 keep their visibility

std::string versionText()
{
    const AppVersion v = appVersion();
    return std::to_string(v.major) + "." + std::to_string(v.minor);
}

std::string documentsFolder()
{
    const char* home = std::getenv("HOME");
    return home ? (std::filesystem::path(home) / "Documents").string() : std::string();
}

} // namespace

AppSettingsFiles::AppSettingsFiles(Monitor& monitor, std::function<void(int)> setMousePointer)
    : m_(monitor)
    , setMousePointer_(std::move(setMousePointer))
{
}

void AppSettingsFiles::pointer(int shape) const
{
    if (setMousePointer_)
        setMousePointer_(shape);
}

std::string AppSettingsFiles::folder() const
{
    const std::string stored = readSetting(m_.context.settings, "Path_AppSettings", m_.context.programFolder);
    return stored.empty() ? documentsFolder() : stored;
}

AppSettingsFile AppSettingsFiles::current() const
{
    const frmMain& form = m_.context.form;
    const platform::ui::Chart& plot = form.iPlot;
    AppSettingsFile file;
    file.version = versionText();
    for (std::size_t i = 0; i < plot.yAxisCount(); ++i) {
        const auto& axis = plot.yAxis(i);
        SettingsAxis stored { axis.min, axis.min + axis.span, axis.title, axis.titleShown, axis.visible };
        if (i < plot.channelCount() && i < kStoredChannelAxes) {
            stored.channelVisible = plot.channel(i).visible;
            stored.channelVisibleInLegend = plot.channel(i).visibleInLegend;
        }
        file.axes.push_back(stored);
    }
    for (std::size_t c = 0; c < plot.channelCount(); ++c)
        file.colors.push_back(plot.channel(c).color);
    file.activeGrid = plot.gridYAxisName();
    for (std::size_t s = 0; s < file.switches.size(); ++s)
        file.switches[s] = form.iSwitchLed[s].value() == platform::ui::CheckBox::Checked;
    const StartupSettings& now = m_.context.globals.settings;
    file.temperatureUnits = now.TemperatureUnits;
    file.foreColor1 = now.ForeColor1;
    file.foreColor2 = now.ForeColor2;
    file.alternateRowColor = now.AlternateRowColor;
    return file;
}

bool AppSettingsFiles::save(const std::string& path)
{
    try {
        writeFileReplacing(path, writeAppSettings(current()));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void AppSettingsFiles::mnuSaveZentaviaSettings()
{
    MonitorContext& c = m_.context;
    platform::FileDialogOptions options;
    options.filter = "Zentavia Setup (*.ini)|*.ini|";
    options.folder = folder();
    const auto chosen = c.dialogs.saveFile(options);
    if (!chosen)
        return;
    writeSetting(c.settings, "Path_AppSettings", std::filesystem::path(*chosen).parent_path().string());
    c.form.disableAllCommands(true);
    const bool saved = save(*chosen);
    c.form.enableAllCommands(true);
    if (!saved) {
        (void)c.dialogs.messageBox(
            "An error has occurred\r\nError: the file " + *chosen + " could not be written",
            platform::Buttons::OK, platform::Icon::Critical, "Zentavia");
        return;
    }
    c.dialogs.notify(
        "Save Application Settings", "Application settings have been saved.", platform::Icon::Information);
}

void AppSettingsFiles::mnuLoadZentaviaSettings()
{
    MonitorContext& c = m_.context;
    platform::FileDialogOptions options;
    options.filter = "Zentavia Settings (*.ini)|*.ini|";
    options.folder = folder();
    const auto chosen = c.dialogs.openFiles(options);
    if (chosen.empty())
        return;
    writeSetting(
        c.settings, "Path_AppSettings", std::filesystem::path(chosen.front()).parent_path().string());
    if (load(chosen.front()))
        c.dialogs.notify("Load Application Settings", "Application settings have been loaded.",
            platform::Icon::Information);
}

bool AppSettingsFiles::load(const std::string& path)
{
    MonitorContext& c = m_.context;
    c.form.disableAllCommands(true);
    pointer(11);
    bool good = false;
    try {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        const std::string text = all.str();
        if (appSettingsVersion(text) != versionText()) {
            (void)c.dialogs.messageBox("Invalid Zentavia File", platform::Buttons::OK,
                platform::Icon::Critical, "Invalid Data File");
        } else {
            // Read whole before anything changes: a bad value leaves the window as it was.
            apply(readAppSettings(text, c.form.iPlot.yAxisCount(), c.form.iPlot.channelCount()));
            good = true;
        }
    } catch (const std::exception&) {
        (void)c.dialogs.messageBox("Error in file: " + std::filesystem::path(path).filename().string(),
            platform::Buttons::OK, platform::Icon::Critical, "Zentavia");
    }
    pointer(0);
    c.form.enableAllCommands(true);
    return good;
}

void AppSettingsFiles::apply(const AppSettingsFile& file)
{
    MonitorContext& c = m_.context;
    frmMain& form = c.form;
    platform::ui::Chart& plot = form.iPlot;
    plot.beginUpdate();
    for (std::size_t i = 0; i < file.axes.size(); ++i) {
        const SettingsAxis& axis = file.axes[i];
        plot.updateYAxis(i, [&](platform::ui::ChartAxis& a) {
            a.min = axis.min;
            a.span = axis.max - axis.min;
            a.title = axis.title;
            a.titleShown = axis.titleShow;
            a.visible = axis.visible;
        });
        if (i < plot.channelCount())
            plot.updateChannel(i, [&](platform::ui::ChartChannel& channel) {
                channel.visible = axis.channelVisible;
                channel.visibleInLegend = axis.channelVisibleInLegend;
            });
    }
    for (std::size_t ch = 0; ch < file.colors.size() && ch < plot.channelCount(); ++ch)
        if (file.colors[ch] != static_cast<platform::Rgb>(-1))
            plot.updateChannel(
                ch, [&](platform::ui::ChartChannel& channel) { channel.color = file.colors[ch]; });
    plot.setGridYAxisName(file.activeGrid);
    plot.endUpdate();
    for (std::size_t s = 0; s < file.switches.size(); ++s)
        form.iSwitchLed[s].setValue(
            file.switches[s] ? platform::ui::CheckBox::Checked : platform::ui::CheckBox::Unchecked);

    StartupSettings& now = c.globals.settings;
    now.TemperatureUnits = file.temperatureUnits;
    now.ForeColor1 = file.foreColor1;
    now.ForeColor2 = file.foreColor2;
    now.AlternateRowColor = file.alternateRowColor;
    writeSetting(c.settings, "TemperatureUnits", std::to_string(file.temperatureUnits));
    writeSetting(c.settings, "ForeColor1", std::to_string(file.foreColor1));
    writeSetting(c.settings, "ForeColor2", std::to_string(file.foreColor2));
    auto& driver = c.main.CellWeft();
    driver.Parameters.display.TemperatureUnits = file.temperatureUnits;

    m_.plot.ReconfigurePlotting();
    m_.tabs.LoadTabs();
    m_.edits.Parameters_ReadSelected();
    if (c.globals.CurrentNode > 0)
        m_.tabs.NodeGrid_Load(c.globals.CurrentNode);
    form.mnuUtilities.setEnabled(driver.Parameters.UserAccessLevel >= 2);
    if (c.globals.PollingActive)
        m_.poll.requestRefresh();
}

void wireAppSettingsFiles(frmMain& form, AppSettingsFiles& files)
{
    form.mnuSaveZentaviaSettings.onClick = [&files] { files.mnuSaveZentaviaSettings(); };
    form.mnuLoadZentaviaSettings.onClick = [&files] { files.mnuLoadZentaviaSettings(); };
    form.refreshAvailability();
}

} // namespace zv
