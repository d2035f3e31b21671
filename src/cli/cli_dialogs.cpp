#include "cli/cli_dialogs.h"

#include <ostream>

namespace zv::cli {

using platform::Answer;
using platform::Buttons;

CliDialogs::CliDialogs(std::ostream& out)
    : out_(out)
{
}

Answer CliDialogs::defaultAnswer(Buttons buttons)
{
    switch (buttons) {
    case Buttons::OK:
    case Buttons::OKCancel:
        return Answer::OK;
    case Buttons::YesNo:
    case Buttons::YesNoCancel:
        return Answer::Yes;
    case Buttons::AbortRetryIgnore:
        return Answer::Abort;
    case Buttons::RetryCancel:
        return Answer::Cancel;
    }
    return Answer::OK;
}

void CliDialogs::write(const std::string& title, const std::string& text)
{
    if (!title.empty())
        out_ << title << ": ";
    out_ << text << '\n';
    out_.flush();
}

Answer CliDialogs::messageBox(
    const std::string& text, Buttons buttons, platform::Icon, const std::string& title)
{
    write(title, text);
    return defaultAnswer(buttons);
}

std::optional<std::string> CliDialogs::inputBox(
    const std::string& prompt, const std::string& title, const std::string& defaultText)
{
    write(title, prompt);
    return defaultText;
}

std::vector<std::string> CliDialogs::openFiles(const platform::FileDialogOptions&)
{
    return {};
}

std::optional<std::string> CliDialogs::saveFile(const platform::FileDialogOptions&)
{
    return std::nullopt;
}

std::optional<platform::Rgb> CliDialogs::chooseColor(platform::Rgb)
{
    return std::nullopt;
}

bool CliDialogs::printText(const std::string&, const std::vector<std::string>&)
{
    return false;
}

void CliDialogs::notify(const std::string& title, const std::string& text, platform::Icon)
{
    write(title, text);
}

} // namespace zv::cli
