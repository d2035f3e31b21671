#pragma once
// Dialogs for fuzzing: every box is answered with OK or cancelled, nothing is shown.

#include "platform/dialogs.h"

namespace zv::fuzz {

class AnsweringDialogs : public platform::Dialogs {
public:
    platform::Answer messageBox(
        const std::string&, platform::Buttons, platform::Icon, const std::string&) override
    {
        ++boxes;
        return platform::Answer::OK;
    }
    std::optional<std::string> inputBox(const std::string&, const std::string&, const std::string&) override
    {
        return std::nullopt;
    }
    std::vector<std::string> openFiles(const platform::FileDialogOptions&) override { return {}; }
    std::optional<std::string> saveFile(const platform::FileDialogOptions&) override { return std::nullopt; }
    std::optional<platform::Rgb> chooseColor(platform::Rgb) override { return std::nullopt; }
    bool printText(const std::string&, const std::vector<std::string>&) override { return false; }
    void notify(const std::string&, const std::string&, platform::Icon) override { }

    int boxes = 0;
};

} // namespace zv::fuzz
