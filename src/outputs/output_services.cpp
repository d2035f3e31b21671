#include "outputs/output_services.h"

#include "platform/dialogs.h"

namespace zv {

clsMain* connectedMain(const OutputServices& services)
{
    return services.main ? services.main() : nullptr;
}

void showOutputError(platform::Dialogs& dialogs, const std::string& text)
{
    dialogs.messageBox(
        "An error has occurred\r\nError: " + text, platform::Buttons::OK, platform::Icon::Critical, "");
}

Hourglass::Hourglass(const MonitorActions& monitor)
    : monitor_(monitor)
{
    if (monitor_.setMousePointer)
        monitor_.setMousePointer(11);
}

Hourglass::~Hourglass()
{
    if (monitor_.setMousePointer)
        monitor_.setMousePointer(0);
}

} // namespace zv
