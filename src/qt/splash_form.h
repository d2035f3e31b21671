#pragma once
// The widgets of the splash window, object names as the control names of frmSplash.

#include <QWidget>

#include <memory>

namespace zv::qt {

[[nodiscard]] std::unique_ptr<QWidget> makeSplashForm();

} // namespace zv::qt
