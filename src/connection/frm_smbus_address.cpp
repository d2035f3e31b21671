#include "connection/frm_smbus_address.h"

#include "connection/dialog_errors.h"
#include "core/globals.h"
#include "core/ini_values.h"
#include "params/hex_text.h"
#include "platform/dialogs.h"
#include "platform/text.h"
#include "platform/val.h"

namespace zv {

namespace {

constexpr const char* kObject = "SMBusAddress";
constexpr int kFirstAddress = 2;
constexpr int kLastAddress = 254;
constexpr int kDefaultAddress7 = 0x0B; // a missing or zero Address on the USB transport

// The row of a write address in cmbAddress; -1 (no row) for 0.
int rowOf(int writeAddress)
{
    return (writeAddress - kFirstAddress) / 2;
}

} // namespace

frmSMBusAddress::frmSMBusAddress(SMBusAddressServices services)
    : Window("frmSMBusAddress")
    , s_(std::move(services))
{
    setCaption("Zentavia - SMBus Address");
    cmdFind.setCaption("Find");
    cmdFind.onClick = [this] { runGuarded(s_.errors, kObject, "cmdFind_Click", [this] { find(); }); };
    addControls({ &cmbAddress, &cmdFind });
}

void frmSMBusAddress::Show()
{
    if (!s_.globals.usbTransport()) {
        s_.dialogs.messageBox("This feature is not supported when using the HLK dongle.",
            platform::Buttons::OK, platform::Icon::Information, "");
        return;
    }
    load();
    s_.showModal(*this);
    unload();
}

void frmSMBusAddress::handleLoad()
{
    runGuarded(s_.errors, kObject, "Load", [this] {
        cmbAddress.clear();
        for (int address = kFirstAddress; address <= kLastAddress; address += 2)
            cmbAddress.addItem("0x" + platform::byteHex(static_cast<std::uint8_t>(address)));
        const int stored = static_cast<int>(Val(GetINIValue("Setup", "Address", s_.globals.gINIFile)));
        s_.globals.setAddress(stored == 0 ? kDefaultAddress7 : stored);
        cmbAddress.setListIndex(rowOf(s_.globals.SMBusWriteAddress));
    });
}

void frmSMBusAddress::find()
{
    if (s_.globals.gDemo)
        return;
    for (int address = kFirstAddress; address <= kLastAddress; address += 2) {
        cmbAddress.setListIndex(rowOf(address));
        std::uint8_t high = 0;
        std::uint8_t low = 0;
        if (s_.readWord(address >> 1, 0, high, low) == 0) {
            found(address);
            return;
        }
    }
    s_.dialogs.messageBox("No target found!", platform::Buttons::OK, platform::Icon::Exclamation, "");
}

void frmSMBusAddress::found(int writeAddress)
{
    const int address7 = writeAddress >> 1;
    SetINIValue("Setup", "Address", std::to_string(address7), s_.globals.gINIFile);
    s_.globals.setAddress(address7);
    const std::string hex = "0x" + platform::byteHex(s_.globals.SMBusWriteAddress);
    if (s_.alarmsPanel)
        s_.alarmsPanel("SMBus Address " + hex);
    s_.dialogs.messageBox("Found target device at address " + hex + "!", platform::Buttons::OK,
        platform::Icon::Information, "");
}

} // namespace zv
