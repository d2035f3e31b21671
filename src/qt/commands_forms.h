#pragma once
// The widgets of the windows of the device commands; object names are the control names.

#include <QWidget>

#include <memory>
#include <string>

namespace zv::qt {

// frmSafeDisconnect: application-modal, without a close button (the window closes itself).
[[nodiscard]] std::unique_ptr<QWidget> makeSafeDisconnectForm();
// The form for one of these window names, or nullptr.
[[nodiscard]] std::unique_ptr<QWidget> makeCommandsFormFor(const std::string& windowName);

} // namespace zv::qt
