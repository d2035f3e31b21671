#pragma once
// The dialogs seam on Qt: message boxes, input box, file dialogs, colour, printing to the default
// printer and tray notifications that never block.

#include "platform/dialogs.h"

#include <functional>
#include <string>

class QWidget;
class QSystemTrayIcon;

namespace zv::qt {

class QtDialogs : public platform::Dialogs {
public:
    // Boxes open above the parent (may be null).
    explicit QtDialogs(QWidget* parent = nullptr);

    void setParent(QWidget* parent) { parent_ = parent; }
    // The application's tray icon, when there is one.
    void setTrayIcon(QSystemTrayIcon* tray) { tray_ = tray; }
    // Where a notification goes when neither a tray nor a desktop notification service is there
    // (the application puts it in the status bar and the event log).
    std::function<void(const std::string& title, const std::string& text)> fallbackNotify;

    platform::Answer messageBox(const std::string& text, platform::Buttons buttons, platform::Icon icon,
        const std::string& title) override;
    std::optional<std::string> inputBox(
        const std::string& prompt, const std::string& title, const std::string& defaultText) override;
    std::vector<std::string> openFiles(const platform::FileDialogOptions& options) override;
    std::optional<std::string> saveFile(const platform::FileDialogOptions& options) override;
    std::optional<platform::Rgb> chooseColor(platform::Rgb initial) override;
    bool printText(const std::string& documentName, const std::vector<std::string>& lines) override;
    void notify(const std::string& title, const std::string& text, platform::Icon icon) override;

private:
    void notifyDesktop(const std::string& title, const std::string& text, platform::Icon icon);

    QWidget* parent_;
    QSystemTrayIcon* tray_ = nullptr;
};

} // namespace zv::qt
