#pragma once
// The widgets of the login window and the level passwords dialog; object names are the control
// names. Both are application-modal: while one is shown no other window takes input.

#include <QWidget>

#include <memory>
#include <string>

namespace zv::qt {

[[nodiscard]] std::unique_ptr<QWidget> makeLoginForm();
[[nodiscard]] std::unique_ptr<QWidget> makeUserAccessLevelForm();
// The form for one of these window names, or nullptr.
[[nodiscard]] std::unique_ptr<QWidget> makeAccessFormFor(const std::string& windowName);

} // namespace zv::qt
