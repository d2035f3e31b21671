#include "core/globals.h"

#include "core/settings_table.h"
#include "platform/val.h"

#include <cmath>

namespace zv {

namespace {

int strictSetting(const platform::SettingsStore& store, std::string_view name,
    const std::string& programFolder, int lowest, int highest)
{
    const int fallback = *strictInteger(settingDefault(name, programFolder));
    const auto value = strictInteger(readSetting(store, name, programFolder));
    return value && *value >= lowest && *value <= highest ? *value : fallback;
}

double number(const platform::SettingsStore& store, std::string_view name, const std::string& programFolder)
{
    return Val(readSetting(store, name, programFolder));
}

int whole(const platform::SettingsStore& store, std::string_view name, const std::string& programFolder)
{
    const double value = number(store, name, programFolder);
    return value > INT32_MAX || value < INT32_MIN ? 0 : static_cast<int>(std::trunc(value));
}

platform::Rgb color(
    const platform::SettingsStore& store, std::string_view name, const std::string& programFolder)
{
    return static_cast<platform::Rgb>(whole(store, name, programFolder)) & 0xFFFFFF;
}

} // namespace

StartupSettings readStartupSettings(const platform::SettingsStore& store, const std::string& programFolder)
{
    const auto& folder = programFolder;
    StartupSettings s;
    s.CommPort = strictSetting(store, "CommPort", folder, 1, 32767);
    s.Baud = strictSetting(store, "Baud", folder, 0, 2);
    s.Clock = strictSetting(store, "Clock", folder, 0, 3);
    s.TemperatureUnits = whole(store, "TemperatureUnits", folder);
    s.MaxPlottingChannels = whole(store, "MaxPlottingChannels", folder);
    s.ReadWriteLogging = number(store, "ReadWriteLogging", folder) != 0;
    s.StaticDataCapture = number(store, "StaticDataCapture", folder) != 0;
    s.ChargerMode = whole(store, "ChargerMode", folder);
    s.AlarmMode = whole(store, "AlarmMode", folder);
    s.ExpandedPlot = whole(store, "ExpandedPlot", folder);
    s.ForeColor1 = color(store, "ForeColor1", folder);
    s.ForeColor2 = color(store, "ForeColor2", folder);
    s.AlternateRowColor = color(store, "AlternateRowColor", folder);
    s.AutoLogging = number(store, "AutoLogging", folder) != 0;
    s.AutoWrite = number(store, "AutoWrite", folder) != 0;
    return s;
}

void AppGlobals::setAddress(int address7)
{
    gAddress7 = address7;
    SMBusWriteAddress = static_cast<std::uint8_t>((address7 << 1) & 0xFF);
}

void AppGlobals::setDecimalSeparator(char separator)
{
    gDecimalSep = separator;
    gListSep = separator == ',' ? ";" : ",";
}

} // namespace zv
