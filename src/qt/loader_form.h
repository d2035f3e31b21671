#pragma once
// The widgets of frmBootStrapLoader; object names are the control names.

#include <QWidget>

#include <memory>
#include <string>

namespace zv::qt {

[[nodiscard]] std::unique_ptr<QWidget> makeBootStrapLoaderForm();
// The form for this window name, or nullptr.
[[nodiscard]] std::unique_ptr<QWidget> makeLoaderFormFor(const std::string& windowName);

} // namespace zv::qt
