#pragma once
// The sizes of the main window's panels: the cell and pack frames fold away and back, and the
// columns of lvNodes share its width.

namespace zv::platform::ui {
class ListView;
}

namespace zv {

class frmMain;

// Each column gets an equal part of the width, the last one also the remainder.
void spreadColumns(platform::ui::ListView& list, int width);

// Wires cmdCollapseCells and cmdCollapsePack (captions "Collapse Panel" and "Expand Panel" as
// the next click does), and the column spread at a resize.
void wirePanelSizes(frmMain& form);

} // namespace zv
