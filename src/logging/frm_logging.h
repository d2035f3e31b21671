#pragma once
// frmLogging, "Zentavia - Logging Configuration": the static and dynamic definition files, the
// log file and "Enable Auto Logging". OK stores the five settings; Cancel leaves them and is
// noted for StartLogging.

#include "logging/log_settings.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <array>
#include <functional>

namespace zv::platform {
class Dialogs;
class SettingsStore;
} // namespace zv::platform

namespace zv {

struct AppGlobals;

inline constexpr int kLoggingFiles = 3; // 0 static definition, 1 dynamic definition, 2 the log

struct LoggingDialogServices {
    AppGlobals& globals;
    platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    std::string programFolder;
    // After OK: the stored settings take effect (the log writer, the menu entries).
    std::function<void(const LogSettings&)> applied;
};

class frmLogging : public platform::ui::Window {
public:
    explicit frmLogging(LoggingDialogServices services);

    std::array<platform::ui::Frame, kLoggingFiles> fraFile { platform::ui::Frame { "fraFile(0)" },
        platform::ui::Frame { "fraFile(1)" }, platform::ui::Frame { "fraFile(2)" } };
    std::array<platform::ui::Label, kLoggingFiles> lblCurrent { platform::ui::Label { "lblCurrent(0)" },
        platform::ui::Label { "lblCurrent(1)" }, platform::ui::Label { "lblCurrent(2)" } };
    std::array<platform::ui::Label, kLoggingFiles> lblFile { platform::ui::Label { "lblFile(0)" },
        platform::ui::Label { "lblFile(1)" }, platform::ui::Label { "lblFile(2)" } };
    std::array<platform::ui::Button, kLoggingFiles> cmdSelectFle { platform::ui::Button { "cmdSelectFle(0)" },
        platform::ui::Button { "cmdSelectFle(1)" }, platform::ui::Button { "cmdSelectFle(2)" } };
    platform::ui::CheckBox chkAutoLog { "chkAutoLog" };
    platform::ui::Button cmdOK { "cmdOK" };
    platform::ui::Button cmdCancel { "cmdCancel" };

    // The last closing was by Cancel (or the close box).
    [[nodiscard]] bool cancelled() const { return cancelled_; }
    void cmdSelectFle_Click(int index);

protected:
    void handleLoad() override;

private:
    void cmdOK_Click();

    LoggingDialogServices s_;
    LogSettings settings_;
    bool cancelled_ = true;
};

} // namespace zv
