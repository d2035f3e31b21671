#pragma once
// OpenAssociated: opens a file with its associated program and tells the user why it could not.

#include <functional>
#include <string>

namespace zv::platform {
class Desktop;
class Dialogs;
} // namespace zv::platform

namespace zv {

// A failure shows its text in a box titled "File Error" and passes it to `info` (the panel
// "Info"). Returns whether the program was started.
bool OpenAssociated(const std::string& path, platform::Desktop& desktop, platform::Dialogs& dialogs,
    const std::function<void(const std::string&)>& info);

} // namespace zv
