#pragma once
// The links of the Help menu: the target's documents on the web and the maker's home page.

#include <string>

namespace zv::platform {
class Desktop;
class Dialogs;
} // namespace zv::platform

namespace zv {

inline constexpr const char* kMakerHomePage = "https://zentavia.example";

// Opens the address in the system's browser; a failure shows the box titled "Error".
void openLink(const std::string& address, platform::Dialogs& dialogs, platform::Desktop& desktop);

// Opens the target's document. Without one the user is asked whether to look on the maker's
// home page instead.
void openTargetLink(const std::string& address, const std::string& targetName, platform::Dialogs& dialogs,
    platform::Desktop& desktop);

} // namespace zv
