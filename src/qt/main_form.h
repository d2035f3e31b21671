#pragma once
// The widgets of the main window, built from frmMain's menu trees: a QMenuBar whose menus and
// actions carry the control names, the pop-up menus of the lists, the state labels, the pack and
// cell lists, the tabbed property and parameter lists with the bit list, the poll rate, the status
// bar and, where the desktop has a tray, the tray icon.

#include <QMainWindow>

#include <memory>

namespace zv {
class frmMain;
}

namespace zv::qt {

[[nodiscard]] std::unique_ptr<QMainWindow> makeMainForm(const frmMain& window);

} // namespace zv::qt
