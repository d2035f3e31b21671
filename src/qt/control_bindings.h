#pragma once
// One binding function for each kind of control: it mirrors the control on its widget and
// feeds the widget's user signals back to the control.

#include "platform/ui/control.h"

#include <QIcon>
#include <QMetaObject>
#include <QObject>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zv::qt {

struct BindContext {
    std::vector<QMetaObject::Connection>& connections;
    // True while the binder itself changes a widget, so that the widget's signals are not taken
    // for the user's actions.
    std::shared_ptr<bool> applying;
    const std::function<QIcon(const std::string&)>& icons;
};

// Sets a flag for the life of the guard.
class ApplyingGuard {
public:
    explicit ApplyingGuard(bool& flag)
        : flag_(flag)
        , saved_(flag)
    {
        flag_ = true;
    }
    ~ApplyingGuard() { flag_ = saved_; }
    ApplyingGuard(const ApplyingGuard&) = delete;
    ApplyingGuard& operator=(const ApplyingGuard&) = delete;

private:
    bool& flag_;
    bool saved_;
};

// Binds a control to the object found under its name; false when the kinds do not fit.
bool bindControl(platform::ui::Control& control, QObject& target, const BindContext& context);

} // namespace zv::qt
