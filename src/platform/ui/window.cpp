#include "platform/ui/window.h"

#include <algorithm>
#include <cctype>

namespace zv::platform::ui {

Window::Window(std::string name)
    : Control(std::move(name))
{
    setVisible(false);
}

Window::~Window()
{
    notify(Change::Destroyed);
}

void Window::boundsChanged(bool resized)
{
    if (resized && loaded_)
        handleResize();
}

void Window::userSetBounds(const Bounds& bounds)
{
    const bool resized = bounds.width != this->bounds().width || bounds.height != this->bounds().height;
    assignBounds(bounds);
    boundsChanged(resized);
}

void Window::load()
{
    if (loaded_)
        return;
    loaded_ = true;
    handleLoad();
}

void Window::show()
{
    load();
    setVisible(true);
}

void Window::unload()
{
    if (!loaded_)
        return;
    handleUnload();
    setVisible(false);
    loaded_ = false;
}

void Window::requestClose()
{
    if (handleCloseRequest())
        unload();
}

Control* Window::findControl(const std::string& name) const
{
    // Names are compared without regard to case, as the system's own look-ups do.
    const auto sameName = [&](Control* c) {
        return std::equal(c->name().begin(), c->name().end(), name.begin(), name.end(), [](char a, char b) {
            return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
        });
    };
    const auto it = std::find_if(controls_.begin(), controls_.end(), sameName);
    return it == controls_.end() ? nullptr : *it;
}

void Window::addControls(std::initializer_list<Control*> controls)
{
    controls_.insert(controls_.end(), controls.begin(), controls.end());
}

} // namespace zv::platform::ui
