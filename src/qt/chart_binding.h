#pragma once
// The chart control on a QCustomPlot: one graph per channel on its own value axis, the legend,
// the grid of the named Y axis, tracking, zoom to fit and one queued replot per notification.

#include "qt/control_bindings.h"

namespace zv::platform::ui {
class Chart;
}

namespace zv::qt {

// Binds to a QCustomPlot; false for any other object. The Y axes beyond the first two are added
// to the axis rect, alternately left and right.
bool bindChart(platform::ui::Chart& chart, QObject& target, const BindContext& context);

} // namespace zv::qt
