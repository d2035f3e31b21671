#pragma once
// The values of a sample in the pack row of lvGateway and the cell rows of lvNodes.

namespace zv::platform::ui {
class ListView;
}

namespace zv {

struct DisplaySettings;
class NodeList;
class ParameterList;

// The pack columns of the "gateway" row (its state text is the poll's).
void showPackRow(
    platform::ui::ListView& lvGateway, const ParameterList& gateway, const DisplaySettings& display);
// "Board Temperature", written after the cells.
void showBoardTemperature(
    platform::ui::ListView& lvGateway, const ParameterList& gateway, const DisplaySettings& display);
// Voltage, temperature and pump of each cell, coloured and marked by the cell's status word.
void showCellRows(platform::ui::ListView& lvNodes, const NodeList& nodes, const DisplaySettings& display);

} // namespace zv
