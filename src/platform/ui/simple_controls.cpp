#include "platform/ui/simple_controls.h"

#include <algorithm>

namespace zv::platform::ui {

void TextBox::userEdit(std::string text)
{
    if (locked_ || text == text_)
        return;
    text_ = std::move(text);
    if (onChange)
        onChange();
}

void Button::click()
{
    if (usable() && onClick)
        onClick();
}

void CheckBox::userClick()
{
    if (!usable())
        return;
    value_ = value_ == Checked ? Unchecked : Checked;
    if (onClick)
        onClick();
}

void ProgressBar::setRange(int min, int max)
{
    if (max < min)
        std::swap(min, max);
    min_ = min;
    max_ = max;
    value_ = std::clamp(value_, min_, max_);
    notify(Change::Value);
}

void ProgressBar::setValue(int value)
{
    assign(value_, std::clamp(value, min_, max_), Change::Value);
}

void MenuItem::click()
{
    if (usable() && onClick)
        onClick();
}

} // namespace zv::platform::ui
