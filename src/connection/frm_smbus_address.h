#pragma once
// The dialog that finds the target's SMBus address on the USB transport by scanning the bus, and
// keeps the address in the INI file.

#include "platform/ui/choice_controls.h"
#include "platform/ui/show_modal.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zv::platform {
class Dialogs;
}

namespace zv {

class ErrorHandler;
struct AppGlobals;

// One word read on the USB adapter: status 0 when the device at the 7-bit address answered the
// command, with the word's two bytes.
using WordReader = std::function<int(int address7, int command, std::uint8_t& high, std::uint8_t& low)>;

struct SMBusAddressServices {
    AppGlobals& globals; // the transport, demo mode, the INI file and the address in memory
    platform::Dialogs& dialogs;
    WordReader readWord;
    std::function<void(const std::string&)> alarmsPanel; // the main window's "Alarms" status panel
    platform::ui::ShowModal showModal;
    ErrorHandler* errors = nullptr;
};

class frmSMBusAddress : public platform::ui::Window {
public:
    explicit frmSMBusAddress(SMBusAddressServices services);

    // Opens the dialog modally and unloads it when it closes; on the dongle transport it tells the
    // user the feature is not supported and does not open.
    void Show();

    platform::ui::ComboBox cmbAddress { "cmbAddress" };
    platform::ui::Button cmdFind { "cmdFind" };

protected:
    void handleLoad() override;

private:
    void find();
    void found(int writeAddress);

    SMBusAddressServices s_;
};

} // namespace zv
