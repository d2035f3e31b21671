#pragma once
// A read-mostly rich text box made of coloured runs; text is only ever appended or cleared, so
// the binder can mirror each append without redrawing what is there.

#include "platform/ui/control.h"

#include <string>
#include <vector>

namespace zv::platform::ui {

struct TextRun {
    std::string text;
    Rgb color = 0;
};

class RichTextBox : public Control {
public:
    using Control::Control;
    // Appends in the colour given; a run of the same colour as the last one is merged into it.
    void append(const std::string& text, Rgb color);
    void clear();

    [[nodiscard]] const std::vector<TextRun>& runs() const { return runs_; }
    [[nodiscard]] std::string text() const;
    // Colour of the latest append, which the next append uses unless told otherwise.
    [[nodiscard]] Rgb selColor() const { return selColor_; }

private:
    std::vector<TextRun> runs_;
    Rgb selColor_ = 0;
};

} // namespace zv::platform::ui
