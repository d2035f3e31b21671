#pragma once
// The preferences dialog: temperature units, the logging and mode switches and the three list
// colours. OK stores the eight settings, copies them into the globals and refreshes the main
// window so that units and colours take effect at once; Cancel stores nothing.

#include "platform/dialogs.h"
#include "platform/ui/choice_controls.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <array>

namespace zv {

struct OutputServices;
struct StartupSettings;

inline constexpr int kPreferenceColors = 3; // ForeColor1, ForeColor2, AlternateRowColor

class frmPreferences : public platform::ui::Window {
public:
    explicit frmPreferences(OutputServices& services);

    platform::ui::Frame fraTemperature { "fraTemperature" };
    platform::ui::OptionGroup optTemperatureUnits { "optTemperatureUnits" }; // "Celsius", "Kelvin"
    platform::ui::CheckBox chkReadWrite { "chkReadWrite" };
    platform::ui::CheckBox chkStaticLog { "chkStaticLog" };
    platform::ui::CheckBox chkChargerMode { "chkChargerMode" };
    platform::ui::CheckBox chkAlarmMode { "chkAlarmMode" };
    platform::ui::Frame fraColors { "fraColors" };
    std::array<platform::ui::Label, kPreferenceColors> lblColor { platform::ui::Label { "lblColor(0)" },
        platform::ui::Label { "lblColor(1)" }, platform::ui::Label { "lblColor(2)" } };
    // The colour fields: each shows its colour and opens the colour dialog when clicked.
    std::array<platform::ui::Button, kPreferenceColors> picColor { platform::ui::Button { "picColor1" },
        platform::ui::Button { "picColor2" }, platform::ui::Button { "picColor3" } };
    std::array<platform::ui::Label, kPreferenceColors> shpColor { platform::ui::Label { "shpColor1" },
        platform::ui::Label { "shpColor2" }, platform::ui::Label { "shpColor3" } };
    platform::ui::Button cmdOK { "cmdOK" };
    platform::ui::Button cmdCancel { "cmdCancel" };

    [[nodiscard]] platform::Rgb color(int index) const { return colors_[static_cast<std::size_t>(index)]; }

protected:
    void handleLoad() override;

private:
    void showColor(int index, platform::Rgb color);
    void picColor_Click(int index);
    void cmdOK_Click();
    void store(const StartupSettings& chosen) const;
    void refreshMainWindow() const;

    OutputServices& s_;
    std::array<platform::Rgb, kPreferenceColors> colors_ {};
};

} // namespace zv
