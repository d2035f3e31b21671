#pragma once
// The widget of frmEditParameter; object names are the control names. The key filter, the length
// limit and the focus of the new-value box come from the logic window. The dialog is
// application-modal.

#include "platform/ui/show_modal.h"

#include <QWidget>

#include <memory>

namespace zv {
class frmEditParameter;
namespace platform {
class EventLoop;
}
} // namespace zv

namespace zv::qt {

class Binder;

[[nodiscard]] std::unique_ptr<QWidget> makeEditParameterForm(frmEditParameter& form);

// The modal run of frmEditParameter: binds its widget on the first show, then runs events until
// the dialog is hidden.
[[nodiscard]] platform::ui::ShowModal editParameterModal(Binder& binder, platform::EventLoop& loop);

} // namespace zv::qt
