#pragma once
// The dialog the start-up shows when the dongle cannot be reached: it says what went wrong, lists
// the COM ports of the machine and tries again on the one the user picks.

#include "connection/port_combo_box.h"
#include "connection/port_dialog_services.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

namespace zv {

// How the user left the dialog.
enum class CommPortChoice {
    Connected, // cmdConnect reached the dongle: the start goes on with the target detection
    ContinueDisconnected, // the start goes on offline
    ExitApplication, // the caller unloads every other form and ends the program
};

class frmCommPortError : public platform::ui::Window {
public:
    frmCommPortError(PortDialogServices services, platform::ui::ShowModal showModal);

    // Shows the dialog modally for an error number of SMBus_Init or of the start-up's search
    // (kNoDongleFound) and unloads it when it is hidden.
    [[nodiscard]] CommPortChoice CommPortError(int code);

    // The texts for an error number as the dialog opens.
    [[nodiscard]] static ConnectionTexts errorTexts(int code);

    platform::ui::Label lblTitle { "lblTitle" };
    platform::ui::Label lblErrorDescription { "lblErrorDescription" };
    PortComboBox cmbCommPort { "cmbCommPort" };
    platform::ui::Button cmdConnect { "cmdConnect" };
    platform::ui::Button cmdRefresh { "cmdRefresh" };
    platform::ui::Button cmdContinueDisconnected { "cmdContinueDisconnected" };
    platform::ui::Button cmdExitApplication { "cmdExitApplication" };

protected:
    void handleLoad() override;

private:
    void connect();
    void refresh();
    void leave(CommPortChoice choice);

    PortDialogServices s_;
    platform::ui::ShowModal showModal_;
    CommPortChoice choice_ = CommPortChoice::ContinueDisconnected;
};

} // namespace zv
