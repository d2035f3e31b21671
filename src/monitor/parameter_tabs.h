#pragma once
// The rows of the main window's lists: the pack row and the cells (made at load), the gateway
// parameters in the 11 lists of SSTab (LoadTabs), the selected cell's properties in the 3 lists
// of SSTab1 (NodeGrid_Load), the tab captions, and the in-place value refresh of a sample.

#include "monitor/monitor_context.h"

#include <functional>
#include <string>

namespace zv::platform::ui {
class ListView;
}

namespace zv {

class ParameterList;
class clsSMBusParameter;

inline constexpr const char* kGatewayRow = "gateway";
inline constexpr const char* kBitEncodedCaption = "Bit Encoded Data";

// The row key of cell n in lvNodes ("n1", "n2", ...); 0 for a key that names no cell.
[[nodiscard]] std::string cellKey(int cell);
[[nodiscard]] int cellOfKey(const std::string& key);

class ParameterTabs {
public:
    explicit ParameterTabs(MonitorContext& context);

    // The columns of every list, the pack row, one checked row per cell and the closing "n/a".
    void setUpLists();
    // The captions of SSTab1 (CT1, CT2, ...) and SSTab (PT1, PT2, ...); a tab without one is hidden.
    void loadTabCaptions();

    void LoadTabs();
    void NodeGrid_Load(int cell);
    // Redraws the first gateway row that shows this parameter.
    void UpdateTabs(const clsSMBusParameter& parameter);

    // A sample's values in place: the selected cell's properties and the shown gateway list.
    void refreshCellValues();
    void refreshGatewayValues();

    [[nodiscard]] platform::ui::ListView& currentParameters();
    [[nodiscard]] platform::ui::ListView& currentProperties();
    // The parameter a row of a list shows: by its trimmed text, of the gateway (node 0) or a cell.
    [[nodiscard]] clsSMBusParameter* parameterOfRow(
        const platform::ui::ListView& list, const std::string& key, int node) const;
    // The list of a cell (1..N), or of the gateway for 0.
    [[nodiscard]] ParameterList& parametersOf(int node) const;

    // Filled by the status panes: the bits of a clicked bit-encoded parameter listed anew, and
    // their lamps redrawn for a new value (UpdatalvStatus).
    std::function<void(const clsSMBusParameter&)> listBits;
    std::function<void(const clsSMBusParameter&)> showBits;
    // The three state labels (UpdateDeviceBits), refreshed by LoadTabs.
    std::function<void()> updateDeviceBits;
    // The click of a gateway list, run for the row selected again after LoadTabs.
    std::function<void(const std::string& key)> parameterClicked;

private:
    [[nodiscard]] int userLevel() const;
    [[nodiscard]] std::string rowIcon(const clsSMBusParameter& parameter) const;
    void addParameterRow(platform::ui::ListView& list, int row, const clsSMBusParameter& parameter);
    void addPropertyRow(
        platform::ui::ListView& list, const std::string& key, const clsSMBusParameter& parameter);
    void stripe(platform::ui::ListView& list) const;
    // Calls each(list, row key, parameter) for every parameter of a cell the user may read.
    void forEachVisibleProperty(int cell,
        const std::function<void(platform::ui::ListView&, const std::string&, clsSMBusParameter&)>& each);

    MonitorContext& c_;
};

} // namespace zv
