#pragma once
// The widgets of frmCalibration and frm470Cal; object names are the control names. The entry
// fields' key filter, their defaults on leaving and the Enter key come from the logic windows.
// Both dialogs are application-modal.

#include <QWidget>

#include <memory>

namespace zv::platform::ui {
class Window;
}

namespace zv::qt {

// The form of a calibration window, or nullptr for any other window.
[[nodiscard]] std::unique_ptr<QWidget> makeCalibrationFormFor(platform::ui::Window& window);

} // namespace zv::qt
