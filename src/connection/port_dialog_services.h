#pragma once
// What the two port dialogs need of the application, and the part of cmdConnect they share.

#include "connection/com_port_utilities.h"
#include "platform/ui/show_modal.h"

#include <functional>
#include <string>

namespace zv::platform {
class Dialogs;
class SettingsStore;
namespace ui {
class Label;
}
} // namespace zv::platform

namespace zv {

class clsCellWeft;
class ErrorHandler;
struct AppGlobals;

// The error number the start-up hands over when its search found no dongle on any port.
inline constexpr int kNoDongleFound = 65529;

inline constexpr const char* kConnectionFailedTitle = "Communications with the hardware failed.";

struct PortDialogServices {
    clsCellWeft& driver;
    AppGlobals& globals;
    platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    std::string programFolder;
    PortProber portPresent;
    std::function<void(bool busy)> busyPointer; // the hourglass while the dongle is searched for
    ErrorHandler* errors = nullptr; // failures inside the dialogs; none: they are dropped
};

// The two text fields of a port dialog.
struct ConnectionTexts {
    std::string title;
    std::string description;
};

// Puts the texts in the dialog's two text fields.
void showTexts(platform::ui::Label& title, platform::ui::Label& description, const ConnectionTexts& texts);

// The port list of both dialogs, headed by the driver's current port.
[[nodiscard]] clsCOMPortUtilities portUtilities(const PortDialogServices& services);

// The stored CommPort, the default when it is not a port number.
[[nodiscard]] int storedCommPort(const PortDialogServices& services);

// cmdConnect up to the attempt: the port becomes the driver's SMBusCommPort and the memory copy of
// CommPort, then SMBus_Init runs under the busy pointer. Returns its result (0 or less: connected).
[[nodiscard]] int connectOnPort(const PortDialogServices& services, int port);

// The lines that tell of a port that opened without a dongle answering; the power line and the
// line on ports above COM16 are optional.
[[nodiscard]] std::string dongleNotDetectedText(bool mentionPower, bool mentionHighPorts);

// The texts after a failed attempt. The dialog of the start-up also names COM ports above 16
// among the causes when the dongle did not answer.
[[nodiscard]] ConnectionTexts connectFailureTexts(int code, bool mentionHighPorts);

} // namespace zv
