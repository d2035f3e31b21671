#pragma once
// The status panes of the main window: the FET row (lvFET), the safety, system and battery flag
// grids (the three lvFlags in the tabs of SSTabFlags) and the bit list (lvStatus in fraStatus),
// driven by the words of the poll and by the alarm words the pack broadcasts. Each lamp follows
// the rules of lamp_rule.h.

#include "monitor/monitor_context.h"

#include <functional>
#include <string>
#include <string_view>

namespace zv {

class clsSMBusParameter;

inline constexpr const char* kBatteryStatusCaption = "Battery Status";

// The list indexes of lvFlags.
inline constexpr int kSafetyFlagsList = 0;
inline constexpr int kSystemFlagsList = 1;
inline constexpr int kBatteryFlagsList = 2;

class StatusPanes {
public:
    explicit StatusPanes(MonitorContext& context);

    // The columns and rows of lvFET and the three lvFlags, every lamp off, and the tabs of
    // SSTabFlags; at load and at a change of user level.
    void buildRows();

    // The lamp procedures; a missing parameter goes to the common handler, a word that is not a
    // number leaves the lamps as they are.
    void UpdatalvFET(const clsSMBusParameter* parameter);
    void UpdatalvFlags(const clsSMBusParameter* parameter, int list, int column);
    void UpdateSafetyFlags(
        const clsSMBusParameter* alert, const clsSMBusParameter* status, int firstRow, int column);
    void ShowSafetyFlagsLamp(const clsSMBusParameter* parameter);
    void UpdatalvStatus(const clsSMBusParameter* parameter, bool batteryStatus);

    // What ReadSafetyData shows: the four alert/status pairs, then the "Fuse" lamp.
    void showSafetyWords();
    // What a sample shows: the battery, system and internal flags and the FET row.
    void showSampleFlags();

    // lvGateway click: the bits of "Battery Status" in lvStatus.
    void lvGateway_Click();
    // lvParameters click on a bit-encoded parameter: its bits in lvStatus.
    void showBitEncoded(const clsSMBusParameter& parameter);
    // clsMain's CellWeft_BroadcastAlarmReceived: the alarm word on the "Battery Status" rows.
    void BroadcastAlarmReceived(int alarmWord);
    // Column-title click of lvFlags 0: the meanings of that column's bits in a box.
    void showColumnMeanings(int column);
    // SSTabFlags click: only the list of the shown tab is visible.
    void SSTabFlags_Click();

    // The box text of a column title of lvFlags 0 ("Safety", "Failure", "Charge").
    [[nodiscard]] std::string columnMeanings(int column) const;

private:
    [[nodiscard]] const clsSMBusParameter* gateway(std::string_view name) const;
    void buildSafetyRows();
    void buildNumberedRows(int list);
    // Runs one lamp procedure; an error goes to the common handler under procedure and module.
    void guarded(const char* procedure, const char* module, const std::function<void()>& body);

    MonitorContext& c_;
};

} // namespace zv
