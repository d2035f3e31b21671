#pragma once
// Binds window logic objects to Qt widgets by object name, both ways: a change of a control
// updates its widget, and the user's edits and clicks on the widget reach the control's events.
// A window's widget is the top-level QWidget; each control is the child QWidget, QAction or other
// QObject (a QSystemTrayIcon) whose objectName equals the control's name; a menu entry with a
// sub-menu binds to its QMenu. The widget is released when the window object goes.

#include "platform/ui/window.h"

#include <QIcon>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zv::qt {

class Binder {
public:
    Binder();
    ~Binder();
    Binder(const Binder&) = delete;
    Binder& operator=(const Binder&) = delete;

    // Images of list rows, column titles and status panels by key; iconByKey by default.
    std::function<QIcon(const std::string& key)> iconProvider;

    // Takes ownership of the widget. Returns the names of the controls that found no widget.
    std::vector<std::string> bind(platform::ui::Window& window, std::unique_ptr<QWidget> widget);

    // The widget bound to a window, or nullptr.
    [[nodiscard]] QWidget* widgetOf(const platform::ui::Window& window) const;

    struct Binding;

private:
    void release(const platform::ui::Window* window);

    std::vector<std::unique_ptr<Binding>> bindings_;
};

} // namespace zv::qt
