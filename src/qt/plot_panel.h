#pragma once
// The plot area of the main window: the four switches and the PlotControls buttons in a row, then
// the chart (a QCustomPlot named "iPlot"), in a vertical splitter below the window's columns.

#include <QWidget>

namespace zv {
class frmMain;
}

namespace zv::qt {

// Takes the columns above the plot. When the logic hides SSTab, SSTab1 and fraStatus (the
// expanded view) their panels go and the plot takes most of the height; they come back with it.
[[nodiscard]] QWidget* plotArea(const frmMain& window, QWidget* columns, QWidget* parent);

} // namespace zv::qt
