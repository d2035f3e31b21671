#pragma once
// The widgets of the three connection dialogs; object names are the control names. The dialogs
// are application-modal: while one is shown the other windows take no input.

#include <QWidget>

#include <memory>
#include <string>

namespace zv::qt {

[[nodiscard]] std::unique_ptr<QWidget> makeCommPortErrorForm();
[[nodiscard]] std::unique_ptr<QWidget> makeCommPortForm();
[[nodiscard]] std::unique_ptr<QWidget> makeSMBusAddressForm();
// The form of one of these dialogs by window name, or nullptr for another name.
[[nodiscard]] std::unique_ptr<QWidget> makeConnectionForm(const std::string& windowName);

} // namespace zv::qt
