#pragma once
// The application settings file (.ini): the plot's axes, channel visibility and colours, the grid
// axis and the four switches, and the display preferences. Pure: the file's text in and out.

#include "platform/dialogs.h"

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct SettingsAxis {
    double min = 0;
    double max = 100;
    std::string title;
    bool titleShow = true;
    bool visible = true;
    // Channel i (the channel of the axis's own number): only channels 0 to 3 are stored.
    bool channelVisible = true;
    bool channelVisibleInLegend = true;
};

struct AppSettingsFile {
    std::string version; // major "." minor
    std::vector<SettingsAxis> axes;
    std::vector<platform::Rgb> colors; // Channel(c).Color for each channel
    std::string activeGrid;
    // The switches: VChannel (1, voltage), TChannel (3), CChannel (0), SChannel (2).
    std::array<bool, 4> switches {};
    int temperatureUnits = 1;
    platform::Rgb foreColor1 = 0;
    platform::Rgb foreColor2 = 0;
    platform::Rgb alternateRowColor = 0;
};

// A value that the file cannot hold: a number or a boolean that is not one.
class AppSettingsFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The file's text: [ApplicationID], [Plotting], [Preferences], CR LF line ends, one empty line
// between the sections.
[[nodiscard]] std::string writeAppSettings(const AppSettingsFile& file);

// The version of a file's text; empty when it has none.
[[nodiscard]] std::string appSettingsVersion(std::string_view text);
// Reads the text: the axes run until one without "YAxis(i).Visible"; colours for at most
// `channels` channels (extra keys are ignored, a missing one reads as -1). Throws
// AppSettingsFileError for a value that is not a number or a boolean.
[[nodiscard]] AppSettingsFile readAppSettings(std::string_view text, std::size_t axes, std::size_t channels);

// The words a boolean is written as.
[[nodiscard]] const char* booleanWord(bool value);

} // namespace zv
