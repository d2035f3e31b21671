#include "platform/ui/rich_text_box.h"

namespace zv::platform::ui {

void RichTextBox::append(const std::string& text, Rgb color)
{
    selColor_ = color;
    if (text.empty())
        return;
    if (!runs_.empty() && runs_.back().color == color)
        runs_.back().text += text;
    else
        runs_.push_back({ text, color });
    notify(Change::Appended, text);
}

void RichTextBox::clear()
{
    if (runs_.empty())
        return;
    runs_.clear();
    notify(Change::Cleared);
}

std::string RichTextBox::text() const
{
    std::string all;
    for (const auto& run : runs_)
        all += run.text;
    return all;
}

} // namespace zv::platform::ui
