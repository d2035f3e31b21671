#include "connection/frm_comm_port.h"

#include "connection/dialog_errors.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "driver/cellweft.h"

namespace zv {

namespace {

constexpr const char* kObject = "CommPort";

} // namespace

frmCommPort::frmCommPort(PortDialogServices services, platform::ui::ShowModal showModal,
    std::function<void(const std::string&)> commPanel)
    : Window("frmCommPort")
    , s_(std::move(services))
    , showModal_(std::move(showModal))
    , commPanel_(std::move(commPanel))
{
    setCaption("Zentavia - Configure Hardware Communications");
    cmdConnect.setCaption("Connect");
    cmdComms[0].setCaption("Cancel");
    cmdComms[1].setCaption("OK");
    cmbBaud.setItems({ "19200", "57600", "115200" });
    cmbClock.setItems({ "23K", "86K", "100K", "400K" });
    cmdConnect.onClick
        = [this] { runGuarded(s_.errors, kObject, "cmdConnect_Click", [this] { connect(); }); };
    cmdComms[0].onClick = [this] { hide(); };
    cmdComms[1].onClick = [this] { runGuarded(s_.errors, kObject, "cmdComms_Click", [this] { apply(); }); };
    addControls({ &lblTitle, &lblErrorDescription, &cmbCommPort, &cmbBaud, &cmbClock, &cmdConnect,
        &cmdComms[0], &cmdComms[1] });
}

void frmCommPort::Show()
{
    load();
    showModal_(*this);
    unload();
}

void frmCommPort::handleLoad()
{
    runGuarded(s_.errors, kObject, "Load", [this] {
        showTexts(lblTitle, lblErrorDescription, {});
        fillPorts();
        const auto stored = readStartupSettings(s_.settings, s_.programFolder);
        cmbCommPort.selectPort(stored.CommPort); // row 0 stays selected when the port is not listed
        cmbBaud.setListIndex(stored.Baud);
        cmbClock.setListIndex(stored.Clock);
    });
}

void frmCommPort::fillPorts()
{
    cmbCommPort.clearPorts();
    portUtilities(s_).FillComboBoxWithAvailableCOMPorts(cmbCommPort);
}

void frmCommPort::connect()
{
    showTexts(lblTitle, lblErrorDescription, { "Searching for Hardware...", "Please Wait..." });
    const int result = connectOnPort(s_, cmbCommPort.selectedPort());
    showTexts(lblTitle, lblErrorDescription,
        result <= 0 ? ConnectionTexts { "Hardware found", "Connection successful" }
                    : connectFailureTexts(result, false));
    fillPorts();
}

void frmCommPort::apply()
{
    const int port = cmbCommPort.selectedPort();
    if (commPanel_)
        commPanel_(comPortName(port));
    writeSetting(s_.settings, "CommPort", std::to_string(port));
    writeSetting(s_.settings, "Baud", std::to_string(cmbBaud.listIndex()));
    writeSetting(s_.settings, "Clock", std::to_string(cmbClock.listIndex()));

    const auto stored = readStartupSettings(s_.settings, s_.programFolder);
    s_.globals.settings.CommPort = stored.CommPort;
    s_.globals.settings.Baud = stored.Baud;
    s_.globals.settings.Clock = stored.Clock;
    auto& link = s_.driver.Link;
    link.SMBusCommPort = stored.CommPort;
    link.BaudIndex = stored.Baud;
    link.ClockIndex = stored.Clock;
    (void)s_.driver.SMBus_ReInit();
    hide();
}

} // namespace zv
