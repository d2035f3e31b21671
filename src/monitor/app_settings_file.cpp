#include "monitor/app_settings_file.h"

#include "platform/ini_file.h"
#include "platform/text.h"

#include <charconv>
#include <cstdio>

namespace zv {

namespace {

constexpr const char* kEnd = "\r\n";
constexpr const char* kApplication = "ApplicationID";
constexpr const char* kPlotting = "Plotting";
constexpr const char* kPreferences = "Preferences";
// Switch index of each key, in the order of the file.
constexpr std::array<std::pair<const char*, std::size_t>, 4> kSwitchKeys { {
    { "VChannel", 1 },
    { "TChannel", 3 },
    { "CChannel", 0 },
    { "SChannel", 2 },
} };

std::string number(double value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}

std::string line(const std::string& key, const std::string& value)
{
    return key + "=" + value + kEnd;
}

std::string axisKey(std::size_t i, const char* field)
{
    return "YAxis(" + std::to_string(i) + ")." + field;
}

std::string channelKey(std::size_t i, const char* field)
{
    return "Channel(" + std::to_string(i) + ")." + field;
}

class Reader {
public:
    explicit Reader(std::string_view text)
        : ini_(platform::IniFile::parse(text))
    {
    }
    [[nodiscard]] std::string text(const char* section, const std::string& key) const
    {
        return ini_.value(section, key);
    }
    [[nodiscard]] double number(const char* section, const std::string& key) const
    {
        const std::string value = text(section, key);
        double result = 0;
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), result);
        if (value.empty() || error != std::errc() || end != value.data() + value.size())
            throw AppSettingsFileError(key + " is not a number: \"" + value + "\"");
        return result;
    }
    [[nodiscard]] bool boolean(const char* section, const std::string& key) const
    {
        const std::string value = text(section, key);
        if (platform::equalsIgnoreCase(value, "True") || value == "-1" || value == "1")
            return true;
        if (platform::equalsIgnoreCase(value, "False") || value == "0")
            return false;
        throw AppSettingsFileError(key + " is not True or False: \"" + value + "\"");
    }
    // A whole number within 32 bits (colours may be written signed).
    [[nodiscard]] long long whole(const char* section, const std::string& key) const
    {
        const double value = number(section, key);
        if (!(value >= -2147483648.0 && value <= 4294967295.0))
            throw AppSettingsFileError(key + " is out of range");
        return static_cast<long long>(value);
    }
    [[nodiscard]] platform::Rgb color(const char* section, const std::string& key) const
    {
        return static_cast<platform::Rgb>(whole(section, key));
    }

private:
    platform::IniFile ini_;
};

} // namespace

const char* booleanWord(bool value)
{
    return value ? "True" : "False";
}

std::string writeAppSettings(const AppSettingsFile& file)
{
    std::string text = std::string("[") + kApplication + "]" + kEnd + line("Version", file.version) + kEnd;
    text += std::string("[") + kPlotting + "]" + kEnd;
    for (std::size_t i = 0; i < file.axes.size(); ++i) {
        const SettingsAxis& axis = file.axes[i];
        text += line(axisKey(i, "Min"), number(axis.min));
        text += line(axisKey(i, "Max"), number(axis.max));
        text += line(axisKey(i, "Title"), axis.title);
        text += line(axisKey(i, "TitleShow"), booleanWord(axis.titleShow));
        text += line(axisKey(i, "Visible"), booleanWord(axis.visible));
        text += line(channelKey(i, "Visible"), booleanWord(axis.channelVisible));
        text += line(channelKey(i, "VisibleInLegend"), booleanWord(axis.channelVisibleInLegend));
    }
    for (std::size_t c = 0; c < file.colors.size(); ++c)
        text += line(channelKey(c, "Color"), std::to_string(file.colors[c]));
    text += line("ActiveGrid", file.activeGrid);
    for (const auto& [key, index] : kSwitchKeys)
        text += line(key, booleanWord(file.switches[index]));
    text += kEnd;
    text += std::string("[") + kPreferences + "]" + kEnd;
    text += line("TemperatureUnits", std::to_string(file.temperatureUnits));
    text += line("ForeColor1", std::to_string(file.foreColor1));
    text += line("ForeColor2", std::to_string(file.foreColor2));
    text += line("AlternateRowColor", std::to_string(file.alternateRowColor));
    return text;
}

std::string appSettingsVersion(std::string_view text)
{
    return platform::IniFile::parse(text).value(kApplication, "Version");
}

AppSettingsFile readAppSettings(std::string_view text, std::size_t axes, std::size_t channels)
{
    const Reader r(text);
    AppSettingsFile file;
    file.version = r.text(kApplication, "Version");
    for (std::size_t i = 0; i < axes; ++i) {
        if (r.text(kPlotting, axisKey(i, "Visible")).empty())
            break;
        SettingsAxis axis;
        axis.min = r.number(kPlotting, axisKey(i, "Min"));
        axis.max = r.number(kPlotting, axisKey(i, "Max"));
        axis.title = r.text(kPlotting, axisKey(i, "Title"));
        axis.titleShow = r.boolean(kPlotting, axisKey(i, "TitleShow"));
        axis.visible = r.boolean(kPlotting, axisKey(i, "Visible"));
        axis.channelVisible = r.boolean(kPlotting, channelKey(i, "Visible"));
        axis.channelVisibleInLegend = r.boolean(kPlotting, channelKey(i, "VisibleInLegend"));
        file.axes.push_back(axis);
    }
    for (std::size_t c = 0; c < channels; ++c) {
        const std::string key = channelKey(c, "Color");
        file.colors.push_back(
            r.text(kPlotting, key).empty() ? static_cast<platform::Rgb>(-1) : r.color(kPlotting, key));
    }
    file.activeGrid = r.text(kPlotting, "ActiveGrid");
    for (const auto& [key, index] : kSwitchKeys)
        file.switches[index] = r.boolean(kPlotting, key);
    file.temperatureUnits = static_cast<int>(r.whole(kPreferences, "TemperatureUnits"));
    file.foreColor1 = r.color(kPreferences, "ForeColor1");
    file.foreColor2 = r.color(kPreferences, "ForeColor2");
    file.alternateRowColor = r.color(kPreferences, "AlternateRowColor");
    return file;
}

} // namespace zv
