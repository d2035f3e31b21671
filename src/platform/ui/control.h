#pragma once
// The base of every control of the control seam. A control is a plain object named as the system
// names it; a binder (the Qt side) mirrors it by listening to its changes and feeds the user's
// actions back through the control's user* members, which fire its std::function events.

#include "platform/dialogs.h"

#include <functional>
#include <string>

namespace zv::platform::ui {

enum class Change {
    Caption,
    Text,
    Visible,
    Enabled,
    ForeColor,
    BackColor,
    Value,
    Items,
    Selection,
    RowAdded,
    RowChanged,
    RowRemoved,
    Rows, // all rows replaced or cleared
    Columns,
    Tabs,
    Panels,
    PanelChanged,
    Appended,
    Cleared,
    Geometry,
    Destroyed,
};

struct ChangeEvent {
    Change what;
    // The key of the row, panel or tab concerned; for Appended the text that was appended.
    std::string detail;
};

using ChangeListener = std::function<void(const ChangeEvent&)>;

// Position and size in twips, relative to the parent (the screen for a window).
struct Bounds {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool operator==(const Bounds&) const = default;
};

class Control {
public:
    explicit Control(std::string name)
        : name_(std::move(name))
    {
    }
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }

    [[nodiscard]] bool visible() const { return visible_; }
    void setVisible(bool visible) { assign(visible_, visible, Change::Visible); }
    [[nodiscard]] bool enabled() const { return enabled_; }
    void setEnabled(bool enabled) { assign(enabled_, enabled, Change::Enabled); }

    [[nodiscard]] const Bounds& bounds() const { return bounds_; }
    void setBounds(const Bounds& bounds)
    {
        if (bounds_ == bounds)
            return;
        const bool resized = bounds.width != bounds_.width || bounds.height != bounds_.height;
        bounds_ = bounds;
        notify(Change::Geometry);
        boundsChanged(resized);
    }

    // One listener: the binder. Changes are reported only when a value really changes.
    void setChangeListener(ChangeListener listener) { listener_ = std::move(listener); }
    // True when a binder mirrors the control (a window has its form).
    [[nodiscard]] bool bound() const { return static_cast<bool>(listener_); }

protected:
    void notify(Change what, std::string detail = {}) const
    {
        if (listener_)
            listener_({ what, std::move(detail) });
    }
    template <typename T, typename U> void assign(T& field, U&& value, Change what)
    {
        if (field == value)
            return;
        field = std::forward<U>(value);
        notify(what);
    }
    virtual void boundsChanged(bool /*resized*/) { }
    void assignBounds(const Bounds& bounds) { bounds_ = bounds; }
    // True when a user action may reach the control's events.
    [[nodiscard]] bool usable() const { return visible_ && enabled_; }

private:
    std::string name_;
    bool visible_ = true;
    bool enabled_ = true;
    Bounds bounds_;
    ChangeListener listener_;
};

} // namespace zv::platform::ui
