#pragma once
// The active form: the window that receives status text and progress. Tool windows take it on
// opening and give it back to the main form on closing.

#include "platform/ui/window.h"

#include <string>

namespace zv {

inline constexpr const char* kInfoPanel = "Info";

class ActiveForm {
public:
    void setMainForm(platform::ui::Window* mainForm) { mainForm_ = mainForm; }
    [[nodiscard]] platform::ui::Window* mainForm() const { return mainForm_; }

    void set(platform::ui::Window* form) { form_ = form; }
    void clear() { form_ = nullptr; }
    [[nodiscard]] platform::ui::Window* get() const { return form_; }

    // Puts text in the panel "Info" of the active form's status bar. When the active form is
    // gone (none, unloaded, or without that panel), the main form becomes the active form and the
    // text is dropped. Returns whether the text was shown.
    bool showInfo(const std::string& text);

private:
    platform::ui::Window* form_ = nullptr;
    platform::ui::Window* mainForm_ = nullptr;
};

} // namespace zv
