#pragma once
// OpenAssociated: opens a file with its associated program and tells the user why it could not.
//
// On Linux the program is started by the desktop's opener (xdg-open through Qt), which reports
// only whether it started one. The failure codes are therefore found from the file itself:
//   3  the file's folder does not exist          ("The specified path was not found.")
//   2  the file does not exist                   ("The specified file was not found.")
//   5  the file exists but cannot be read        ("The operating system denied access ...")
//   31 the opener started no program for it     ("There is no application associated ...")
// The other codes of the table (0, 8, 11, 26 to 30, 32) have no cause on Linux; their texts stay
// in associatedOpenText for completeness.

#include <functional>
#include <string>

namespace zv::platform {
class Desktop;
class Dialogs;
} // namespace zv::platform

namespace zv {

// The code of a failed open of this path: 3, 2, 5 or 31 as above.
[[nodiscard]] int associatedOpenFailure(const std::string& path);
// The text of a failure code; empty for a code without one.
[[nodiscard]] std::string associatedOpenText(int code);

// A failure shows its text in a box titled "File Error" and passes it to `info` (the panel
// "Info"). Returns whether the program was started.
bool OpenAssociated(const std::string& path, platform::Desktop& desktop, platform::Dialogs& dialogs,
    const std::function<void(const std::string&)>& info);

} // namespace zv
