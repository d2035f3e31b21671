#include "monitor/help_links.h"

#include "platform/desktop.h"
#include "platform/dialogs.h"

namespace zv {

void openLink(const std::string& address, platform::Dialogs& dialogs, platform::Desktop& desktop)
{
    if (!desktop.openExternal(address))
        (void)dialogs.messageBox("Error: The browser could not be started for " + address,
            platform::Buttons::OK, platform::Icon::Critical, "Error");
}

void openTargetLink(const std::string& address, const std::string& targetName, platform::Dialogs& dialogs,
    platform::Desktop& desktop)
{
    if (!address.empty()) {
        openLink(address, dialogs, desktop);
        return;
    }
    const std::string text = "The requested documentation for " + targetName
        + " is not available in this version of Zentavia.\r\n"
          "Please visit the Norvale Systems web site for the latest information on "
        + targetName + ".\r\n\r\nWould you like to check now?";
    if (dialogs.messageBox(text, platform::Buttons::YesNo, platform::Icon::Question, "Information Not Found")
        == platform::Answer::Yes)
        openLink(kMakerHomePage, dialogs, desktop);
}

} // namespace zv
