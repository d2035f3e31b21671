#pragma once
// Dialogs of a run without a user: every box is written to a stream (stderr) and answered with
// its default button; file dialogs are cancelled, an input box takes its default text.

#include "platform/dialogs.h"

#include <iosfwd>

namespace zv::cli {

class CliDialogs : public platform::Dialogs {
public:
    explicit CliDialogs(std::ostream& out);

    // The first button, except that Retry/Cancel answers Cancel: nobody could fix the cause, so
    // a retry would only repeat the failure.
    [[nodiscard]] static platform::Answer defaultAnswer(platform::Buttons buttons);

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
    void write(const std::string& title, const std::string& text);

    std::ostream& out_;
};

} // namespace zv::cli
