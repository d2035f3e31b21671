#pragma once
// Dialogs for tests: every box is answered from a queue of scripted answers, and everything that
// was shown is recorded word for word. A box with no scripted answer, or with an answer of the
// wrong kind at the head of the queue, throws UnscriptedDialog so the test fails loudly.

#include "platform/dialogs.h"

#include <deque>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace zv::platform {

class UnscriptedDialog : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

enum class DialogKind { MessageBox, InputBox, OpenFiles, SaveFile, Color, Print };

// One box as it was shown.
struct ShownDialog {
    DialogKind kind = DialogKind::MessageBox;
    std::string text; // message, prompt or document name
    std::string title;
    Buttons buttons = Buttons::OK;
    Icon icon = Icon::None;
    std::string defaultText; // input box
    FileDialogOptions file; // file dialogs
    Rgb initialColor = 0;
    std::vector<std::string> printedLines;
};

struct Notification {
    std::string title;
    std::string text;
    Icon icon = Icon::None;
};

class ScriptedDialogs : public Dialogs {
public:
    void answerMessage(Answer answer);
    void answerInput(std::optional<std::string> text); // nullopt: cancelled
    void answerOpenFiles(std::vector<std::string> paths); // empty: cancelled
    void answerSaveFile(std::optional<std::string> path);
    void answerColor(std::optional<Rgb> color);
    void answerPrint(bool printed);

    [[nodiscard]] const std::vector<ShownDialog>& shown() const { return shown_; }
    [[nodiscard]] const ShownDialog& lastShown() const;
    [[nodiscard]] const std::vector<Notification>& notifications() const { return notifications_; }
    // Where a notification goes besides the record, as a desktop without a tray sends it on.
    std::function<void(const std::string& title, const std::string& text)> onNotify;
    [[nodiscard]] std::size_t pendingAnswers() const { return answers_.size(); }

    Answer messageBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title) override;
    std::optional<std::string> inputBox(
        const std::string& prompt, const std::string& title, const std::string& defaultText) override;
    std::vector<std::string> openFiles(const FileDialogOptions& options) override;
    std::optional<std::string> saveFile(const FileDialogOptions& options) override;
    std::optional<Rgb> chooseColor(Rgb initial) override;
    bool printText(const std::string& documentName, const std::vector<std::string>& lines) override;
    void notify(const std::string& title, const std::string& text, Icon icon) override;

private:
    struct InputAnswer {
        std::optional<std::string> text;
    };
    struct OpenAnswer {
        std::vector<std::string> paths;
    };
    struct SaveAnswer {
        std::optional<std::string> path;
    };
    struct ColorAnswer {
        std::optional<Rgb> color;
    };
    struct PrintAnswer {
        bool printed;
    };
    using ScriptedAnswer
        = std::variant<Answer, InputAnswer, OpenAnswer, SaveAnswer, ColorAnswer, PrintAnswer>;

    template <typename T> T take(ShownDialog shown);

    std::deque<ScriptedAnswer> answers_;
    std::vector<ShownDialog> shown_;
    std::vector<Notification> notifications_;
};

} // namespace zv::platform
