#include "monitor/open_associated.h"

#include "platform/desktop.h"
#include "platform/dialogs.h"

#include <array>
#include <filesystem>
#include <unistd.h>
#include <utility>

namespace zv {

int associatedOpenFailure(const std::string& path)
{
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path file(path);
    if (file.has_parent_path() && !fs::is_directory(file.parent_path(), error))
        return 3;
    if (!fs::exists(file, error))
        return 2;
    if (::access(path.c_str(), R_OK) != 0)
        return 5;
    return 31;
}

std::string associatedOpenText(int code)
{
    static const std::array<std::pair<int, const char*>, 13> kTexts { {
        { 0, "The operating system is out of memory or resources." },
        { 2, "The specified file was not found." },
        { 3, "The specified path was not found." },
        { 11, "The .exe file is invalid (non-Microsoft Win32\u00AE .exe or error in .exe image)." },
        { 5, "The operating system denied access to the specified file." },
        { 8, "There was not enough memory to complete the operation." },
        { 32, "The specified dynamic-link library (DLL) was not found." },
        { 26, "A sharing violation occurred." },
        { 27, "The file name association is incomplete or invalid." },
        { 28, "The DDE transaction could not be completed because the request timed out." },
        { 29, "The DDE transaction failed." },
        { 30,
            "The Dynamic Data Exchange (DDE) transaction could not be completed because other DDE "
            "transactions were being processed." },
        { 31,
            "There is no application associated with the given file name extension.\r\n"
            "This error will also be returned if you attempt to print a file that is not printable." },
    } };
    for (const auto& [number, text] : kTexts)
        if (number == code)
            return text;
    return {};
}

bool OpenAssociated(const std::string& path, platform::Desktop& desktop, platform::Dialogs& dialogs,
    const std::function<void(const std::string&)>& info)
{
    const int before = associatedOpenFailure(path);
    if (before == 31 && desktop.openExternal(path))
        return true;
    const std::string text = associatedOpenText(before);
    (void)dialogs.messageBox(text, platform::Buttons::OK, platform::Icon::Critical, "File Error");
    if (info)
        info(text);
    return false;
}

} // namespace zv
