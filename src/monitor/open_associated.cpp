#include "monitor/open_associated.h"

#include "platform/desktop.h"
#include "platform/dialogs.h"

#include <filesystem>

namespace zv {

bool OpenAssociated(const std::string& path, platform::Desktop& desktop, platform::Dialogs& dialogs,
    const std::function<void(const std::string&)>& info)
{
    std::error_code error;
    const bool exists = std::filesystem::exists(path, error);
    if (exists && desktop.openExternal(path))
        return true;
    const std::string text = exists
        ? "There is no application associated with the given file name extension.\r\n"
          "This error will also be returned if you attempt to print a file that is not printable."
        : "The specified file was not found.";
    (void)dialogs.messageBox(text, platform::Buttons::OK, platform::Icon::Critical, "File Error");
    if (info)
        info(text);
    return false;
}

} // namespace zv
