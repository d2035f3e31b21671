#include "calibration/calibration_commands.h"

#include "calibration/frm_470_cal.h"
#include "calibration/frm_calibration.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "platform/ui/show_modal.h"

namespace zv {

namespace {

CalibrationDataHooks dataHooks(frmMain& window, const CalibrationCommandHooks& hooks)
{
    CalibrationDataHooks data;
    data.isPolling = hooks.isPolling;
    data.isTheDeviceWired = hooks.isTheDeviceWired;
    data.disableAllCommands = [&window](bool all) { window.disableAllCommands(all); };
    data.enableAllCommands = [&window](bool all) { window.enableAllCommands(all); };
    data.commitChanges = hooks.commitChanges;
    data.bringToFront = hooks.bringToFront;
    data.notify = [&window](const std::string& title, const std::string& text) {
        window.Notify(title, text, platform::Icon::Information);
    };
    return data;
}

} // namespace

CalibrationCommands::CalibrationCommands(CalibrationCommandServices services, CalibrationCommandHooks hooks)
    : mode(services.main.CellWeft(), services.dialogs, { hooks.isTheDeviceWired, hooks.commitChanges })
    , data({ services.main.CellWeft(), services.globals, services.dialogs, &services.settings },
          dataHooks(services.window, hooks))
    , s_(services)
    , hooks_(std::move(hooks))
{
    if (!hooks_.showModal)
        hooks_.showModal = platform::ui::eventLoopModal(s_.loop);
}

CalibrationCommands::~CalibrationCommands() = default;

void CalibrationCommands::showInCalibrationMode(platform::ui::Window& window)
{
    if (hooks_.onWindowCreated)
        hooks_.onWindowCreated(window);
    (void)mode.ShowInCalibrationMode([&] { hooks_.showModal(window); });
}

void CalibrationCommands::mnuCalibration_Click()
{
    frmCalibration form({ s_.main.CellWeft(), s_.globals, s_.loop, mode, hooks_.setMousePointer, s_.errors });
    showInCalibrationMode(form);
}

void CalibrationCommands::mnuCal470_Click()
{
    frm470Cal form({ s_.main.CellWeft(), s_.loop, mode });
    showInCalibrationMode(form);
}

void wireCalibrationCommands(frmMain& window, CalibrationCommands& commands)
{
    window.mnuCalibration.onClick = [&commands] { commands.mnuCalibration_Click(); };
    window.mnuCal470.onClick = [&commands] { commands.mnuCal470_Click(); };
    window.mnuSaveCalibrationData.onClick = [&commands] { commands.mnuSaveCalibrationData_Click(); };
    window.mnuRestoreCalibrationData.onClick = [&commands] { commands.mnuRestoreCalibrationData_Click(); };
    window.refreshAvailability();
}

} // namespace zv
