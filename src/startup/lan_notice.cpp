#include "startup/lan_notice.h"

#include "core/globals.h"
#include "platform/dialogs.h"

namespace zv {

void LanNotice::loaded(const AppGlobals& globals)
{
    armed_ = !globals.gCellsMatch;
}

void LanNotice::mainActivated(platform::Dialogs& dialogs)
{
    if (!armed_)
        return;
    armed_ = false;
    dialogs.messageBox(
        "The expected number of cells did not equal the\r\nactual number of cells reported by the hardware.",
        platform::Buttons::OK, platform::Icon::Exclamation, "LAN is not built!");
}

} // namespace zv
