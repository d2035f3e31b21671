#include "outputs/frm_preferences.h"

#include "core/globals.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "outputs/output_services.h"

#include <string>

namespace zv {

namespace {

constexpr int kCelsius = 0; // option index
constexpr int kKelvin = 1;
constexpr const char* kSwatch = "\u2588\u2588\u2588\u2588\u2588\u2588";

std::string flag(bool on)
{
    return on ? "1" : "0";
}

} // namespace

frmPreferences::frmPreferences(OutputServices& services)
    : Window("frmPreferences")
    , s_(services)
{
    setCaption("Zentavia - Preferences");
    fraTemperature.setCaption("Temperature Units");
    optTemperatureUnits.setItems({ "Celsius", "Kelvin" });
    chkReadWrite.setCaption("Disable Read and Write logging");
    chkStaticLog.setCaption("Static Data Capture");
    chkChargerMode.setCaption("Charger Mode");
    chkAlarmMode.setCaption("Alarm Mode");
    fraColors.setCaption("Colors");
    lblColor[0].setCaption("Parameter Name Color");
    lblColor[1].setCaption("Parameter Value Color");
    lblColor[2].setCaption("Alternate Row Color");
    cmdOK.setCaption("OK");
    cmdCancel.setCaption("Cancel");
    addControls({ &fraTemperature, &optTemperatureUnits, &chkReadWrite, &chkStaticLog, &chkChargerMode,
        &chkAlarmMode, &fraColors, &cmdOK, &cmdCancel });
    for (int i = 0; i < kPreferenceColors; ++i) {
        const auto at = static_cast<std::size_t>(i);
        picColor[at].setCaption("...");
        shpColor[at].setCaption(kSwatch);
        picColor[at].onClick = [this, i] { picColor_Click(i); };
        addControls({ &lblColor[at], &shpColor[at], &picColor[at] });
    }
    cmdOK.onClick = [this] { cmdOK_Click(); };
    cmdCancel.onClick = [this] { unload(); };
}

void frmPreferences::handleLoad()
{
    const StartupSettings& now = s_.globals.settings;
    optTemperatureUnits.setListIndex(now.TemperatureUnits == 1 ? kCelsius : kKelvin);
    chkReadWrite.setValue(now.ReadWriteLogging ? 1 : 0);
    chkStaticLog.setValue(now.StaticDataCapture ? 1 : 0);
    chkChargerMode.setValue(now.ChargerMode != 0 ? 1 : 0);
    chkAlarmMode.setValue(now.AlarmMode != 0 ? 1 : 0);
    showColor(0, now.ForeColor1);
    showColor(1, now.ForeColor2);
    showColor(2, now.AlternateRowColor);
}

void frmPreferences::showColor(int index, platform::Rgb color)
{
    const auto at = static_cast<std::size_t>(index);
    colors_[at] = color;
    shpColor[at].setForeColor(color);
}

void frmPreferences::picColor_Click(int index)
{
    if (const auto chosen = s_.dialogs.chooseColor(color(index)))
        showColor(index, *chosen);
}

void frmPreferences::cmdOK_Click()
{
    StartupSettings chosen = s_.globals.settings;
    chosen.TemperatureUnits = optTemperatureUnits.listIndex() == kKelvin ? 0 : 1;
    chosen.ReadWriteLogging = chkReadWrite.value() != 0;
    chosen.StaticDataCapture = chkStaticLog.value() != 0;
    chosen.ChargerMode = chkChargerMode.value() != 0 ? 1 : 0;
    chosen.AlarmMode = chkAlarmMode.value() != 0 ? 1 : 0;
    chosen.ForeColor1 = colors_[0];
    chosen.ForeColor2 = colors_[1];
    chosen.AlternateRowColor = colors_[2];
    store(chosen);
    s_.globals.settings = chosen;
    if (clsMain* main = connectedMain(s_))
        main->CellWeft().Parameters.display.TemperatureUnits = chosen.TemperatureUnits;
    unload();
    refreshMainWindow();
}

void frmPreferences::store(const StartupSettings& chosen) const
{
    auto& store = s_.settings;
    writeSetting(store, "TemperatureUnits", std::to_string(chosen.TemperatureUnits));
    writeSetting(store, "ReadWriteLogging", flag(chosen.ReadWriteLogging));
    writeSetting(store, "StaticDataCapture", flag(chosen.StaticDataCapture));
    writeSetting(store, "ChargerMode", std::to_string(chosen.ChargerMode));
    writeSetting(store, "AlarmMode", std::to_string(chosen.AlarmMode));
    writeSetting(store, "ForeColor1", std::to_string(chosen.ForeColor1));
    writeSetting(store, "ForeColor2", std::to_string(chosen.ForeColor2));
    writeSetting(store, "AlternateRowColor", std::to_string(chosen.AlternateRowColor));
}

void frmPreferences::refreshMainWindow() const
{
    const MonitorActions& monitor = s_.monitor;
    for (const auto* step : { &monitor.resetXY, &monitor.readSelected, &monitor.loadTabs }) {
        if (*step)
            (*step)();
    }
    if (s_.globals.PollingActive && monitor.requestRefresh)
        monitor.requestRefresh();
}

} // namespace zv
