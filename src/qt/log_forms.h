#pragma once
// The widgets of the two log windows; object names are the control names.

#include <QWidget>

#include <memory>
#include <string>

namespace zv::qt {

[[nodiscard]] std::unique_ptr<QWidget> makeEventLogForm();
[[nodiscard]] std::unique_ptr<QWidget> makeModemLogForm();
// The form for a window name, or nullptr when this front end has none.
[[nodiscard]] std::unique_ptr<QWidget> makeFormFor(const std::string& windowName);

} // namespace zv::qt
