#include "connection/frm_comm_port_error.h"

#include "connection/dialog_errors.h"
#include "link/dongle_link.h"
#include "platform/serial_port.h"

namespace zv {

namespace {

constexpr const char* kObject = "CommPortError";
constexpr const char* kChooseBelow
    = "Please choose from the list of available ports below to attempt to connect using that port.  "
      "If you wish to use the application without connecting to the hardware, please choose ";

} // namespace

frmCommPortError::frmCommPortError(PortDialogServices services, platform::ui::ShowModal showModal)
    : Window("frmCommPortError")
    , s_(std::move(services))
    , showModal_(std::move(showModal))
{
    setCaption("Zentavia - Communications Error");
    cmdConnect.setCaption("Connect");
    cmdRefresh.setCaption("Refresh");
    cmdContinueDisconnected.setCaption("Continue Disconnected");
    cmdExitApplication.setCaption("Exit Application");
    cmdConnect.onClick
        = [this] { runGuarded(s_.errors, kObject, "cmdConnect_Click", [this] { connect(); }); };
    cmdRefresh.onClick
        = [this] { runGuarded(s_.errors, kObject, "cmdRefresh_Click", [this] { refresh(); }); };
    cmdContinueDisconnected.onClick = [this] { leave(CommPortChoice::ContinueDisconnected); };
    cmdExitApplication.onClick = [this] { leave(CommPortChoice::ExitApplication); };
    addControls({ &lblTitle, &lblErrorDescription, &cmbCommPort, &cmdConnect, &cmdRefresh,
        &cmdContinueDisconnected, &cmdExitApplication });
}

ConnectionTexts frmCommPortError::errorTexts(int code)
{
    switch (code) {
    case platform::kPortErrorNoSuchPort:
        return { kConnectionFailedTitle,
            std::string("The serial port used for communicating with the hardware cannot be opened.  ")
                + kChooseBelow + "'Continue Disconnected.'" };
    case platform::kPortErrorInUse:
        return { kConnectionFailedTitle,
            std::string("The serial port used for communicating with the hardware is already open. ")
                + kChooseBelow + "'Continue Anyway.'" };
    case kDongleNotAnswering:
        return { kConnectionFailedTitle, dongleNotDetectedText(true, true) };
    case platform::kPortErrorPermissionDenied:
        return { kConnectionFailedTitle,
            std::string(
                "The serial port used for communicating with the hardware cannot be opened: this user "
                "may not use it (error 70).  Join the 'dialout' group (sudo usermod -aG dialout $USER, "
                "then log in again) or add a udev rule that gives your user access to the device.  ")
                + kChooseBelow + "'Continue Disconnected.'" };
    default:
        return { "Unknown Error", std::to_string(code) };
    }
}

CommPortChoice frmCommPortError::CommPortError(int code)
{
    load();
    showTexts(lblTitle, lblErrorDescription, errorTexts(code));
    choice_ = CommPortChoice::ContinueDisconnected;
    showModal_(*this);
    unload();
    return choice_;
}

void frmCommPortError::handleLoad()
{
    runGuarded(s_.errors, kObject, "Load", [this] {
        refresh();
        cmbCommPort.selectPort(storedCommPort(s_));
    });
}

void frmCommPortError::refresh()
{
    cmbCommPort.clearPorts();
    portUtilities(s_).FillComboBoxWithAvailableCOMPorts(cmbCommPort);
}

void frmCommPortError::connect()
{
    const int port = cmbCommPort.selectedPort();
    showTexts(lblTitle, lblErrorDescription, { "Searching for hardware...", "Please Wait..." });
    const int result = connectOnPort(s_, port);
    if (result <= 0) {
        leave(CommPortChoice::Connected);
        return;
    }
    showTexts(lblTitle, lblErrorDescription, connectFailureTexts(result, true));
}

void frmCommPortError::leave(CommPortChoice choice)
{
    choice_ = choice;
    hide();
}

} // namespace zv
