#pragma once
// Labels, text boxes, buttons, check boxes, frames, progress bars, menu entries and the tray icon.

#include "platform/ui/control.h"

#include <functional>
#include <optional>
#include <string>

namespace zv::platform::ui {

class Label : public Control {
public:
    using Control::Control;
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption), Change::Caption); }
    [[nodiscard]] std::optional<Rgb> foreColor() const { return foreColor_; }
    void setForeColor(Rgb color) { assign(foreColor_, color, Change::ForeColor); }

private:
    std::string caption_;
    std::optional<Rgb> foreColor_;
};

class TextBox : public Control {
public:
    explicit TextBox(std::string name, bool multiLine = false)
        : Control(std::move(name))
        , multiLine_(multiLine)
    {
    }
    [[nodiscard]] bool multiLine() const { return multiLine_; }
    [[nodiscard]] const std::string& text() const { return text_; }
    void setText(std::string text) { assign(text_, std::move(text), Change::Text); }
    [[nodiscard]] bool locked() const { return locked_; }
    void setLocked(bool locked) { assign(locked_, locked, Change::Enabled); }

    // The user typed: the text changes and onChange fires.
    void userEdit(std::string text);
    std::function<void()> onChange;

private:
    bool multiLine_;
    bool locked_ = false;
    std::string text_;
};

class Button : public Control {
public:
    using Control::Control;
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption), Change::Caption); }
    [[nodiscard]] const std::string& toolTip() const { return toolTip_; }
    void setToolTip(std::string toolTip) { assign(toolTip_, std::move(toolTip), Change::Caption); }
    // A click as the user makes it: nothing happens while hidden or disabled.
    void click();
    std::function<void()> onClick;

private:
    std::string caption_;
    std::string toolTip_;
};

class CheckBox : public Control {
public:
    enum State { Unchecked = 0, Checked = 1, Grayed = 2 };
    using Control::Control;
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption), Change::Caption); }
    [[nodiscard]] int value() const { return value_; }
    void setValue(int value) { assign(value_, value, Change::Value); }
    // The user clicked: the box toggles between checked and unchecked, then onClick fires.
    void userClick();
    std::function<void()> onClick;

private:
    std::string caption_;
    int value_ = Unchecked;
};

class Frame : public Control {
public:
    using Control::Control;
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption), Change::Caption); }

private:
    std::string caption_;
};

class ProgressBar : public Control {
public:
    using Control::Control;
    [[nodiscard]] int min() const { return min_; }
    [[nodiscard]] int max() const { return max_; }
    [[nodiscard]] int value() const { return value_; }
    void setRange(int min, int max);
    // Values outside the range are clamped into it.
    void setValue(int value);
    // The text drawn centred on the bar; empty: none.
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption), Change::Caption); }

private:
    int min_ = 0;
    int max_ = 100;
    int value_ = 0;
    std::string caption_;
};

class MenuItem : public Control {
public:
    using Control::Control;
    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption), Change::Caption); }
    [[nodiscard]] bool checked() const { return checked_; }
    void setChecked(bool checked) { assign(checked_, checked, Change::Value); }
    // The user chose the entry: nothing happens while hidden or disabled.
    void click();
    std::function<void()> onClick;

private:
    std::string caption_;
    bool checked_ = false;
};

// The application's icon in the desktop's tray: shown while visible (it starts hidden), with a
// tool-tip. Where the desktop has no tray the binder leaves it unbound.
class TrayIcon : public Control {
public:
    explicit TrayIcon(std::string name)
        : Control(std::move(name))
    {
        setVisible(false);
    }
    [[nodiscard]] const std::string& toolTip() const { return toolTip_; }
    void setToolTip(std::string toolTip) { assign(toolTip_, std::move(toolTip), Change::Caption); }

private:
    std::string toolTip_;
};

} // namespace zv::platform::ui
