#pragma once
// The right-hand column of the main window: the FET row, the flag grids under their tabs and
// the bit list in its frame.

class QWidget;

namespace zv {
class frmMain;
}

namespace zv::qt {

[[nodiscard]] QWidget* statusPanesPanel(const frmMain& window, QWidget* parent);

} // namespace zv::qt
