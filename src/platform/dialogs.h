#pragma once
// Message boxes, input box, file dialogs, colour, printer and tray notifications.
// Real: Qt widgets. Test double: answers from a script and records what was shown.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zv::platform {

enum class Buttons { OK, OKCancel, YesNo, YesNoCancel, AbortRetryIgnore, RetryCancel };
enum class Icon { None, Critical, Question, Exclamation, Information };
// Values as the system's message box returns them.
enum class Answer { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

struct FileDialogOptions {
    std::string title;
    std::string filter; // "Configuration (*.dat)|*.dat|All Files (*.*)|*.*"
    std::string folder; // start folder
    std::string fileName; // proposed name
    bool multiSelect = false;
};

// An RGB colour as 0x00BBGGRR, the layout the settings keep colours in.
using Rgb = std::uint32_t;

class Dialogs {
public:
    virtual ~Dialogs() = default;
    virtual Answer messageBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title)
        = 0;
    // Empty optional: cancelled.
    virtual std::optional<std::string> inputBox(
        const std::string& prompt, const std::string& title, const std::string& defaultText)
        = 0;
    // Empty list: cancelled.
    virtual std::vector<std::string> openFiles(const FileDialogOptions& options) = 0;
    virtual std::optional<std::string> saveFile(const FileDialogOptions& options) = 0;
    virtual std::optional<Rgb> chooseColor(Rgb initial) = 0;
    // Prints plain text lines to the default printer; false when there is none or it fails.
    virtual bool printText(const std::string& documentName, const std::vector<std::string>& lines) = 0;
    // A tray notification: never blocks.
    virtual void notify(const std::string& title, const std::string& text, Icon icon) = 0;
};

} // namespace zv::platform
