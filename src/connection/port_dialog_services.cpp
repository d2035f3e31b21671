#include "connection/port_dialog_services.h"

#include "core/globals.h"
#include "driver/cellweft.h"
#include "link/dongle_link.h"
#include "platform/serial_port.h"
#include "platform/ui/simple_controls.h"

#include <vector>

namespace zv {

std::string dongleNotDetectedText(bool mentionPower, bool mentionHighPorts)
{
    std::vector<std::string> lines {
        "The serial port was opened successifully, but the HLK dongle was not detected.", "",
        "Possible causes:", "The HLK dongle is not installed."
    };
    if (mentionPower)
        lines.emplace_back("Power is not connected to the HLK dongle.");
    lines.emplace_back("The wrong COM Port is selected.");
    if (mentionHighPorts)
        lines.emplace_back("The HLK dongle is installed on a COM port higher then COM16.");
    std::string text = lines.front();
    for (std::size_t i = 1; i < lines.size(); ++i)
        text += "\r\n" + lines[i];
    return text;
}

void showTexts(platform::ui::Label& title, platform::ui::Label& description, const ConnectionTexts& texts)
{
    title.setCaption(texts.title);
    description.setCaption(texts.description);
}

clsCOMPortUtilities portUtilities(const PortDialogServices& services)
{
    return clsCOMPortUtilities(
        services.portPresent, [&link = services.driver.Link] { return link.SMBusCommPort; });
}

int storedCommPort(const PortDialogServices& services)
{
    return readStartupSettings(services.settings, services.programFolder).CommPort;
}

int connectOnPort(const PortDialogServices& services, int port)
{
    services.driver.Link.SMBusCommPort = port;
    services.globals.settings.CommPort = port;
    const auto pointer = [&services](bool busy) {
        if (services.busyPointer)
            services.busyPointer(busy);
    };
    pointer(true);
    struct NormalPointer {
        decltype(pointer)& set;
        ~NormalPointer() { set(false); }
    } normalAfterwards { pointer };
    return services.driver.SMBus_Init();
}

ConnectionTexts connectFailureTexts(int code, bool mentionHighPorts)
{
    switch (code) {
    case platform::kPortErrorNoSuchPort:
        return { kConnectionFailedTitle,
            "The serial port used for communicating with the hardware cannot be opened.  "
            "Please choose from the list of available ports above to attempt to connect using that port." };
    case kDongleNotAnswering:
        return { kConnectionFailedTitle, dongleNotDetectedText(false, mentionHighPorts) };
    default:
        return { kConnectionFailedTitle,
            "An unknown error occured while attempting to connect with the hardware.  "
            "The error code returned was: "
                + std::to_string(code) };
    }
}

} // namespace zv
