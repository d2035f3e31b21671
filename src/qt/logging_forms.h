#pragma once
// The widgets of the logging windows (frmLogging, the comment dialog, the log definition tool);
// object names are the control names. The dialogs are application-modal.

#include <QWidget>

#include <memory>
#include <string>

namespace zv::qt {

// The form for one of these window names, or nullptr.
[[nodiscard]] std::unique_ptr<QWidget> makeLoggingFormFor(const std::string& windowName);

} // namespace zv::qt
