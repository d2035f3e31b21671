#pragma once
// The base of window logic classes. A window owns its controls as members and lists them, so a
// binder can find each by name. Position and size are in twips. Loading happens on first use
// (showing loads too); unloading hides the window and forgets its state. The user's close box
// asks handleCloseRequest(), which may keep the window (for instance hide it instead).

#include "platform/ui/control.h"
#include "platform/ui/twips.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace zv::platform::ui {

class StatusBar;

class Window : public Control {
public:
    // Windows start hidden and not loaded.
    explicit Window(std::string name);
    ~Window() override;

    [[nodiscard]] const std::string& caption() const { return caption_; }
    void setCaption(std::string caption) { assign(caption_, std::move(caption), Change::Caption); }

    [[nodiscard]] bool alwaysOnTop() const { return alwaysOnTop_; }
    void setAlwaysOnTop(bool on) { assign(alwaysOnTop_, on, Change::Value); }

    [[nodiscard]] bool loaded() const { return loaded_; }
    void load();
    void show();
    void hide() { setVisible(false); }
    void unload();
    // The user's close box.
    void requestClose();
    // The user resized or moved the window.
    void userSetBounds(const Bounds& bounds);

    [[nodiscard]] const std::vector<Control*>& controls() const { return controls_; }
    // The control of that name, compared without regard to case; nullptr if none.
    [[nodiscard]] Control* findControl(const std::string& name) const;
    // The window's status bar, if it has one.
    [[nodiscard]] virtual StatusBar* statusBar() { return nullptr; }

protected:
    void addControls(std::initializer_list<Control*> controls);
    void boundsChanged(bool resized) override;
    virtual void handleLoad() { }
    virtual void handleUnload() { }
    virtual void handleResize() { }
    // True lets the window unload; false keeps it.
    [[nodiscard]] virtual bool handleCloseRequest() { return true; }

private:
    std::string caption_;
    bool alwaysOnTop_ = false;
    bool loaded_ = false;
    std::vector<Control*> controls_;
};

} // namespace zv::platform::ui
