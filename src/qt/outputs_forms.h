#pragma once
// The widgets of the preferences dialog; object names are the control names. The dialog is
// application-modal.

#include <QWidget>

#include <memory>
#include <string>

namespace zv::qt {

[[nodiscard]] std::unique_ptr<QWidget> makePreferencesForm();
// The form for one of these window names, or nullptr.
[[nodiscard]] std::unique_ptr<QWidget> makeOutputsFormFor(const std::string& windowName);

} // namespace zv::qt
