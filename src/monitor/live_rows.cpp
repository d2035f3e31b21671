#include "monitor/live_rows.h"

#include "monitor/list_values.h"
#include "monitor/parameter_tabs.h"
#include "params/smbus_parameter.h"
#include "platform/ui/list_view.h"

namespace zv {

namespace {

using platform::ui::ListView;
using platform::ui::SubItemStyle;

constexpr platform::Rgb kRed = 0x0000FF;
constexpr platform::Rgb kBlack = 0x000000;

// The bits of a cell's status word.
constexpr long kPumpNorth = 1;
constexpr long kPumpSouth = 2;
constexpr long kOverVoltage = 4;
constexpr long kUnderVoltage = 8;
constexpr long kOverTemperature = 16;
constexpr long kUnderTemperature = 32;

// The parameters of a cell by position: voltage, temperature and the status word.
constexpr int kCellVoltage = 1;
constexpr int kCellTemperature = 2;
constexpr int kCellStatus = 6;

enum PackColumn { kVoltageColumn = 1, kTemperatureColumn, kCurrentColumn, kSocColumn, kBoardColumn };

std::string text(const ParameterList& gateway, const char* name, int mode, const DisplaySettings& display)
{
    const clsSMBusParameter* parameter = gateway.FindByName(name);
    return parameter ? parameter->ToString(mode, display) : std::string();
}

// Red with the high or the low icon when either bit is set (high first), else black without one.
SubItemStyle alarmStyle(long status, long highBit, long lowBit)
{
    if (status & highBit)
        return { "ErrorHi", kRed };
    if (status & lowBit)
        return { "ErrorLo", kRed };
    return { "", kBlack };
}

void showCell(ListView& lvNodes, const std::string& key, const clsNode& cell, const DisplaySettings& display)
{
    const ParameterList& p = cell.NodeParameters;
    const long status = valueBits(p.Item(kCellStatus), display);
    if (const clsSMBusParameter* voltage = p.Item(kCellVoltage)) {
        lvNodes.setSubItem(
            key, 1, voltage->value.toText(display.locale) + " " + voltage->EngineeringUnitsString);
        lvNodes.setSubItemStyle(key, 1, alarmStyle(status, kOverVoltage, kUnderVoltage));
    }
    if (const clsSMBusParameter* temperature = p.Item(kCellTemperature)) {
        lvNodes.setSubItem(key, 2, temperature->ToString(1, display));
        lvNodes.setSubItemStyle(key, 2, alarmStyle(status, kOverTemperature, kUnderTemperature));
    }
    const char* pump = status & kPumpNorth ? "North" : status & kPumpSouth ? "South" : "None";
    const char* icon = status & kPumpNorth ? "pNorth" : status & kPumpSouth ? "pSouth" : "";
    lvNodes.setSubItem(key, 3, pump);
    const auto* row = lvNodes.row(key);
    SubItemStyle style = row->subStyles.size() >= 3 ? row->subStyles[2] : SubItemStyle {};
    style.icon = icon;
    lvNodes.setSubItemStyle(key, 3, style);
}

} // namespace

void showPackRow(ListView& lvGateway, const ParameterList& gateway, const DisplaySettings& display)
{
    lvGateway.setSubItem(kGatewayRow, kVoltageColumn, text(gateway, "Pack Voltage", 0, display));
    lvGateway.setSubItem(kGatewayRow, kTemperatureColumn, text(gateway, "Temperature", 1, display));
    lvGateway.setSubItem(kGatewayRow, kCurrentColumn, text(gateway, "Current", 0, display));
    const clsSMBusParameter* soc = gateway.FindByName("Relative State of Charge");
    lvGateway.setSubItem(kGatewayRow, kSocColumn,
        soc ? soc->value.toText(display.locale) + soc->EngineeringUnitsString : std::string());
}

void showBoardTemperature(ListView& lvGateway, const ParameterList& gateway, const DisplaySettings& display)
{
    lvGateway.setSubItem(kGatewayRow, kBoardColumn, text(gateway, "Board Temperature", 1, display));
}

void showCellRows(ListView& lvNodes, const NodeList& nodes, const DisplaySettings& display)
{
    for (int i = 1; i <= nodes.Count(); ++i) {
        const std::string key = cellKey(i);
        if (lvNodes.row(key))
            showCell(lvNodes, key, *nodes.Item(i), display);
    }
}

} // namespace zv
