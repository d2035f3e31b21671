#pragma once
// The dialog that changes the dongle's port, baud rate and bus clock at any time: cmdConnect tries
// a port without storing it; cmdComms(1) stores the three choices and re-initialises the link.

#include "connection/port_combo_box.h"
#include "connection/port_dialog_services.h"
#include "platform/ui/choice_controls.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <array>
#include <functional>
#include <string>

namespace zv {

class frmCommPort : public platform::ui::Window {
public:
    // commPanel sets the main window's "Comm" status panel.
    frmCommPort(PortDialogServices services, platform::ui::ShowModal showModal,
        std::function<void(const std::string&)> commPanel);

    // Opens the dialog modally and unloads it when it closes.
    void Show();

    platform::ui::Label lblTitle { "lblTitle" };
    platform::ui::Label lblErrorDescription { "lblErrorDescription" };
    PortComboBox cmbCommPort { "cmbCommPort" };
    platform::ui::ComboBox cmbBaud { "cmbBaud" };
    platform::ui::ComboBox cmbClock { "cmbClock" };
    platform::ui::Button cmdConnect { "cmdConnect" };
    // 0 closes the dialog, 1 stores the choices, re-initialises the link and closes.
    std::array<platform::ui::Button, 2> cmdComms { platform::ui::Button { "cmdComms(0)" },
        platform::ui::Button { "cmdComms(1)" } };

protected:
    void handleLoad() override;

private:
    void fillPorts();
    void connect();
    void apply();

    PortDialogServices s_;
    platform::ui::ShowModal showModal_;
    std::function<void(const std::string&)> commPanel_;
};

} // namespace zv
