#include "platform/testing/scripted_dialogs.h"

namespace zv::platform {

namespace {

const char* kindName(DialogKind kind)
{
    switch (kind) {
    case DialogKind::MessageBox:
        return "message box";
    case DialogKind::InputBox:
        return "input box";
    case DialogKind::OpenFiles:
        return "file open dialog";
    case DialogKind::SaveFile:
        return "file save dialog";
    case DialogKind::Color:
        return "colour dialog";
    case DialogKind::Print:
        return "print";
    }
    return "dialog";
}

} // namespace

void ScriptedDialogs::answerMessage(Answer answer)
{
    answers_.emplace_back(answer);
}
void ScriptedDialogs::answerInput(std::optional<std::string> text)
{
    answers_.emplace_back(InputAnswer { std::move(text) });
}
void ScriptedDialogs::answerOpenFiles(std::vector<std::string> paths)
{
    answers_.emplace_back(OpenAnswer { std::move(paths) });
}
void ScriptedDialogs::answerSaveFile(std::optional<std::string> path)
{
    answers_.emplace_back(SaveAnswer { std::move(path) });
}
void ScriptedDialogs::answerColor(std::optional<Rgb> color)
{
    answers_.emplace_back(ColorAnswer { color });
}
void ScriptedDialogs::answerPrint(bool printed)
{
    answers_.emplace_back(PrintAnswer { printed });
}

const ShownDialog& ScriptedDialogs::lastShown() const
{
    if (shown_.empty())
        throw std::logic_error("no dialog has been shown");
    return shown_.back();
}

template <typename T> T ScriptedDialogs::take(ShownDialog shown)
{
    const DialogKind kind = shown.kind;
    const std::string what = std::string(kindName(kind)) + " \"" + shown.title + "\": " + shown.text;
    shown_.push_back(std::move(shown));
    if (answers_.empty())
        throw UnscriptedDialog("no scripted answer for the " + what);
    if (!std::holds_alternative<T>(answers_.front()))
        throw UnscriptedDialog("the next scripted answer is not for the " + what);
    T answer = std::get<T>(std::move(answers_.front()));
    answers_.pop_front();
    return answer;
}

Answer ScriptedDialogs::messageBox(
    const std::string& text, Buttons buttons, Icon icon, const std::string& title)
{
    ShownDialog shown { DialogKind::MessageBox, text, title, buttons, icon };
    return take<Answer>(std::move(shown));
}

std::optional<std::string> ScriptedDialogs::inputBox(
    const std::string& prompt, const std::string& title, const std::string& defaultText)
{
    ShownDialog shown { DialogKind::InputBox, prompt, title };
    shown.defaultText = defaultText;
    return take<InputAnswer>(std::move(shown)).text;
}

std::vector<std::string> ScriptedDialogs::openFiles(const FileDialogOptions& options)
{
    ShownDialog shown { DialogKind::OpenFiles, {}, options.title };
    shown.file = options;
    return take<OpenAnswer>(std::move(shown)).paths;
}

std::optional<std::string> ScriptedDialogs::saveFile(const FileDialogOptions& options)
{
    ShownDialog shown { DialogKind::SaveFile, {}, options.title };
    shown.file = options;
    return take<SaveAnswer>(std::move(shown)).path;
}

std::optional<Rgb> ScriptedDialogs::chooseColor(Rgb initial)
{
    ShownDialog shown { DialogKind::Color };
    shown.initialColor = initial;
    return take<ColorAnswer>(std::move(shown)).color;
}

bool ScriptedDialogs::printText(const std::string& documentName, const std::vector<std::string>& lines)
{
    ShownDialog shown { DialogKind::Print, documentName };
    shown.printedLines = lines;
    return take<PrintAnswer>(std::move(shown)).printed;
}

void ScriptedDialogs::notify(const std::string& title, const std::string& text, Icon icon)
{
    notifications_.push_back({ title, text, icon });
    if (onNotify)
        onNotify(title, text);
}

} // namespace zv::platform
