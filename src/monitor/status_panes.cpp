#include "monitor/status_panes.h"

#include "core/error_handler.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/lamp_rule.h"
#include "monitor/main_title.h"
#include "monitor/parameter_tabs.h"
#include "monitor/unexpected_error.h"
#include "params/number_text.h"
#include "params/runtime_error.h"
#include "platform/val.h"

#include <cmath>
#include <optional>
#include <vector>

namespace zv {

namespace {

using platform::ui::ListColumn;
using platform::ui::ListRow;
using platform::ui::ListView;
using platform::ui::SubItemStyle;

inline constexpr int kBits = 16;
inline constexpr const char* kFetRow = "fet";
inline constexpr int kFetLamps = 3; // D-FET, C-FET, P-FET; the fourth is the fuse
inline constexpr int kFuseColumn = 3;
inline constexpr long kFuseBlownBit = 0x8000;
inline constexpr int kFetWidth = 1250; // four lamps side by side in the column of the panes
inline constexpr int kFlagWidth = 2600; // room for a safety bit's name
inline constexpr int kSecondPairRow = 17;

// The alert and status words of the safety grid, in the order ReadSafetyData shows them.
struct SafetyPair {
    const char* alert;
    const char* status;
    int firstRow;
    int column;
};
inline constexpr SafetyPair kSafetyPairs[] {
    { "Safety Alert", "Safety Status", 1, 0 },
    { "Safety Alert1", "Safety Status1", kSecondPairRow, 0 },
    { "Permanent Disable Alert", "Permanent Disable Status", 1, 1 },
    { "Charge Alert", "Charge Status", 1, 2 },
};

// The column titles of lvFlags 0 and what a click on each lists.
struct SafetyColumn {
    const char* title;
    const char* heading;
    std::vector<const char*> words;
};
const SafetyColumn kSafetyColumns[] {
    { "Safety", "[Safety Flags]", { "Safety Alert", "Safety Alert1" } },
    { "Failure", "[Failure Flags]", { "Permanent Disable Alert" } },
    { "Charge", "[Charge Flags]", { "Charge Alert" } },
};

std::string rowKey(int row)
{
    return std::to_string(row);
}

std::string bitKey(int bit)
{
    return std::to_string(bit) + "bit";
}

bool bitSet(long word, int bit)
{
    return ((word >> (bit - 1)) & 1) != 0;
}

const clsSMBusParameter& required(const clsSMBusParameter* parameter)
{
    if (!parameter)
        throw RuntimeError::objectMissing();
    return *parameter;
}

// The name of bit (1-based); empty for a bit with no meaning or no parameter.
std::string bitName(const clsSMBusParameter* parameter, int bit)
{
    const clsBitString* item = parameter ? parameter->BitString.Item(bit) : nullptr;
    return item ? item->data : std::string();
}

// The whole number of a value; nothing for "#Error" and other texts.
std::optional<long> wordOf(const DynamicValue& value, const DisplaySettings& display)
{
    const auto number = value.asNumber(display.locale);
    if (!number)
        return std::nullopt;
    return std::lround(*number);
}

// The bits that are faults when set, from the units column.
long faultMask(const clsSMBusParameter& parameter)
{
    return std::lround(Val(parameter.EngineeringUnitsString));
}

// The icon of a lamp: the row's own in column 0, a sub-item's in another column.
std::string lampAt(const ListView& list, const std::string& key, int column)
{
    const ListRow* row = list.row(key);
    if (!row)
        return {};
    if (column == 0)
        return row->icon;
    const auto slot = static_cast<std::size_t>(column - 1);
    return slot < row->subStyles.size() ? row->subStyles[slot].icon : std::string();
}

void setLamp(ListView& list, const std::string& key, int column, const lamp::Lamp& lamp)
{
    if (column == 0) {
        list.setIcon(key, lamp.icon);
        list.setBold(key, lamp.bold);
        return;
    }
    const ListRow& row = *list.row(key);
    const auto slot = static_cast<std::size_t>(column - 1);
    SubItemStyle style = slot < row.subStyles.size() ? row.subStyles[slot] : SubItemStyle {};
    style.icon = lamp.icon;
    style.bold = lamp.bold;
    list.setSubItemStyle(key, column, style);
}

} // namespace

StatusPanes::StatusPanes(MonitorContext& context)
    : c_(context)
{
}

const clsSMBusParameter* StatusPanes::gateway(std::string_view name) const
{
    return c_.main.CellWeft().GatewayParameters.FindByName(name);
}

void StatusPanes::guarded(const char* procedure, const char* module, const std::function<void()>& body)
{
    try {
        body();
    } catch (const std::exception& e) {
        if (c_.errors)
            c_.errors->AutoHandler(unexpectedError(e), module, procedure);
    }
}

void StatusPanes::buildRows()
{
    frmMain& f = c_.form;
    f.lvFET.setColumns(
        { { "DFET", kFetWidth }, { "CFET", kFetWidth }, { "PFET", kFetWidth }, { "Fuse", kFetWidth } });
    f.lvFET.clear();
    const SubItemStyle off { .icon = lamp::kOff };
    f.lvFET.addRow({ .key = kFetRow,
        .text = "D-FET",
        .icon = lamp::kOff,
        .subItems = { "C-FET", "P-FET", "Fuse" },
        .subStyles = { off, off, off } });
    buildSafetyRows();
    f.lvFlags[kSystemFlagsList].setColumns({ { "System Flags 1" }, { "System Flags 2" } });
    f.lvFlags[kBatteryFlagsList].setColumns({ { "SBData Flags" } });
    buildNumberedRows(kSystemFlagsList);
    buildNumberedRows(kBatteryFlagsList);
    if (f.lvStatus.columns().empty())
        f.lvStatus.setColumns({ { "", 3600 } });
    if (f.SSTabFlags.tabCount() == 0) {
        f.SSTabFlags.setTabs({ { "safety", "Safety" }, { "system", "System" }, { "sbdata", "SBData" } });
        f.SSTabFlags.setSelectedIndex(0);
    }
    SSTabFlags_Click();
}

void StatusPanes::buildSafetyRows()
{
    ListView& list = c_.form.lvFlags[kSafetyFlagsList];
    std::vector<ListColumn> columns;
    for (const SafetyColumn& column : kSafetyColumns)
        columns.push_back({ .header = column.title, .widthTwips = kFlagWidth, .icon = lamp::kHelp });
    list.setColumns(std::move(columns));
    list.clear();
    const clsSMBusParameter* first = gateway("Safety Status");
    const clsSMBusParameter* second = gateway("Safety Status1");
    const clsSMBusParameter* failure = gateway("Permanent Disable Status");
    const clsSMBusParameter* charge = gateway("Charge Status");
    const SubItemStyle off { .icon = lamp::kOff };
    for (int bit = 1; bit <= kBits; ++bit) {
        list.addRow({ .key = rowKey(bit),
            .text = bitName(first, bit),
            .icon = lamp::kOff,
            .subItems = { bitName(failure, bit), bitName(charge, bit) },
            .subStyles = { off, off } });
    }
    for (int bit = 1; bit <= kBits; ++bit)
        list.addRow({ .key = rowKey(kBits + bit), .text = bitName(second, bit), .icon = lamp::kOff });
}

void StatusPanes::buildNumberedRows(int index)
{
    ListView& list = c_.form.lvFlags[static_cast<std::size_t>(index)];
    list.clear();
    const bool twoWords = list.columns().size() > 1;
    for (int bit = 1; bit <= kBits; ++bit) {
        ListRow row { .key = rowKey(bit), .text = "Bit " + std::to_string(bit), .icon = lamp::kOff };
        if (twoWords) {
            row.subItems = { "" };
            row.subStyles = { SubItemStyle { .icon = lamp::kOff } };
        }
        list.addRow(std::move(row));
    }
}

void StatusPanes::UpdatalvFET(const clsSMBusParameter* parameter)
{
    guarded("UpdatalvFET", "Main", [&] {
        ListView& list = c_.form.lvFET;
        if (list.rowCount() == 0)
            return;
        const clsSMBusParameter& fet = required(parameter);
        const auto word = wordOf(fet.value, c_.main.CellWeft().Parameters.display);
        if (!word)
            return;
        const long mask = faultMask(fet);
        // Only named bits take a lamp, in order: D-FET (the row), C-FET, P-FET.
        int column = 0;
        for (int bit = 1; bit <= kBits && column < kFetLamps; ++bit) {
            if (bitName(&fet, bit).empty())
                continue;
            setLamp(list, kFetRow, column,
                lamp::flagLamp(lampAt(list, kFetRow, column), bitSet(*word, bit), bitSet(mask, bit)));
            ++column;
        }
    });
}

void StatusPanes::UpdatalvFlags(const clsSMBusParameter* parameter, int index, int column)
{
    guarded("UpdatalvFlags", "Main", [&] {
        ListView& list = c_.form.lvFlags.at(static_cast<std::size_t>(index));
        const clsSMBusParameter& flags = required(parameter);
        const auto word = wordOf(flags.value, c_.main.CellWeft().Parameters.display);
        if (!word)
            return;
        const long mask = faultMask(flags);
        const int slot = column - 1;
        // An unnamed bit keeps its row: rows follow the bit numbers.
        for (int bit = 1; bit <= kBits; ++bit) {
            const std::string key = rowKey(bit);
            if (bitName(&flags, bit).empty() || !list.row(key))
                continue;
            setLamp(list, key, slot,
                lamp::flagLamp(lampAt(list, key, slot), bitSet(*word, bit), bitSet(mask, bit)));
        }
    });
}

void StatusPanes::UpdateSafetyFlags(
    const clsSMBusParameter* alert, const clsSMBusParameter* status, int firstRow, int column)
{
    guarded("UpdateSafetyFlags", "Main", [&] {
        ListView& list = c_.form.lvFlags[kSafetyFlagsList];
        const DisplaySettings& display = c_.main.CellWeft().Parameters.display;
        const auto alertWord = wordOf(required(alert).value, display);
        const auto statusWord = wordOf(required(status).value, display);
        if (!alertWord || !statusWord)
            return;
        for (int bit = 1; bit <= kBits; ++bit) {
            const std::string key = rowKey(firstRow + bit - 1);
            if (list.row(key))
                setLamp(
                    list, key, column, lamp::safetyLamp(bitSet(*alertWord, bit), bitSet(*statusWord, bit)));
        }
    });
}

void StatusPanes::ShowSafetyFlagsLamp(const clsSMBusParameter* parameter)
{
    guarded("ShowSafetyFlagsLamp", "Main", [&] {
        ListView& list = c_.form.lvFET;
        const auto word = wordOf(required(parameter).value, c_.main.CellWeft().Parameters.display);
        if (list.rowCount() == 0 || !word)
            return;
        const bool blown = (*word & kFuseBlownBit) != 0;
        setLamp(list, kFetRow, kFuseColumn, { blown ? lamp::kRed : lamp::kGreen, blown });
    });
}

void StatusPanes::UpdatalvStatus(const clsSMBusParameter* parameter, bool batteryStatus)
{
    guarded("UpdatalvStatus", "Main", [&] {
        ListView& list = c_.form.lvStatus;
        if (list.rowCount() == 0)
            return;
        const clsSMBusParameter& shown = required(parameter);
        const auto word = wordOf(shown.value, c_.main.CellWeft().Parameters.display);
        const char* caption = batteryStatus ? kBatteryStatusCaption : kBitEncodedCaption;
        if (!word || c_.form.fraStatus.caption() != caption)
            return;
        // The rows of "Battery Status" carry their family from the click; a bit list takes it
        // from the fault mask.
        const long mask = batteryStatus ? 0 : faultMask(shown);
        for (int bit = 1; bit <= kBits; ++bit) {
            const std::string key = bitKey(bit);
            if (bitName(&shown, bit).empty() || !list.row(key))
                continue;
            setLamp(
                list, key, 0, lamp::bitListLamp(list.row(key)->icon, bitSet(*word, bit), bitSet(mask, bit)));
        }
    });
}

void StatusPanes::showSafetyWords()
{
    for (const SafetyPair& pair : kSafetyPairs)
        UpdateSafetyFlags(gateway(pair.alert), gateway(pair.status), pair.firstRow, pair.column);
    ShowSafetyFlagsLamp(gateway("Safety Flags"));
}

void StatusPanes::showSampleFlags()
{
    UpdatalvFlags(gateway("Battery Status"), kBatteryFlagsList, 1);
    UpdatalvFlags(gateway("System Flags"), kSystemFlagsList, 1);
    UpdatalvFlags(gateway("Internal Flags 2"), kSystemFlagsList, 2);
    UpdatalvFET(gateway("FET Status"));
}

void StatusPanes::lvGateway_Click()
{
    guarded("lvGateway_Click", "Main", [this] {
        frmMain& f = c_.form;
        f.lvStatus.clear();
        f.fraStatus.setCaption(kBatteryStatusCaption);
        const clsSMBusParameter* status = gateway("Battery Status");
        const long mask = faultMask(required(status));
        for (int bit = 1; bit <= kBits; ++bit) {
            const std::string name = bitName(status, bit);
            if (!name.empty())
                f.lvStatus.addRow({ .key = bitKey(bit),
                    .text = name,
                    .icon = bitSet(mask, bit) ? lamp::kErrorDim : lamp::kInfoDim });
        }
        c_.globals.CurrentNode = 0;
        UpdatalvStatus(status, true);
    });
}

void StatusPanes::showBitEncoded(const clsSMBusParameter& parameter)
{
    frmMain& f = c_.form;
    f.fraStatus.setCaption(kBitEncodedCaption);
    f.lvStatus.clear();
    const DynamicValue& shown = parameter.NewValue.hasContent() ? parameter.NewValue : parameter.value;
    const long word = wordOf(shown, c_.main.CellWeft().Parameters.display).value_or(0);
    for (int bit = 1; bit <= kBits; ++bit) {
        const std::string name = bitName(&parameter, bit);
        if (name.empty())
            continue;
        const bool set = bitSet(word, bit);
        f.lvStatus.addRow({ .key = bitKey(bit), .text = name, .icon = set ? lamp::kCheck : "", .bold = set });
    }
    UpdatalvStatus(&parameter, false);
}

void StatusPanes::BroadcastAlarmReceived(int alarmWord)
{
    guarded("CellWeft_BroadcastAlarmReceived", "clsMain", [&] {
        frmMain& f = c_.form;
        if (c_.globals.CurrentNode != 0 || f.fraStatus.caption() != kBatteryStatusCaption)
            return;
        const clsSMBusParameter* status = gateway("Battery Status");
        for (int bit = 1; bit <= kBits; ++bit) {
            const std::string key = bitKey(bit);
            if (bitName(status, bit).empty() || !f.lvStatus.row(key))
                continue;
            setLamp(f.lvStatus, key, 0,
                lamp::bitListLamp(f.lvStatus.row(key)->icon, bitSet(alarmWord, bit), false));
        }
    });
}

std::string StatusPanes::columnMeanings(int column) const
{
    if (column < 0 || column >= static_cast<int>(std::size(kSafetyColumns)))
        return {};
    const SafetyColumn& meaning = kSafetyColumns[column];
    std::string text = std::string(meaning.heading) + "\r\n";
    for (const char* word : meaning.words) {
        const clsSMBusParameter* alert = gateway(word);
        for (int bit = 1; bit <= kBits; ++bit) {
            std::string name = bitName(alert, bit);
            if (name == "Unused")
                continue;
            for (auto at = name.find("(alert)"); at != std::string::npos; at = name.find("(alert)", at + 3))
                name.replace(at, 7, " = ");
            text += name + "\r\n";
        }
    }
    return text;
}

void StatusPanes::showColumnMeanings(int column)
{
    const std::string text = columnMeanings(column);
    if (!text.empty())
        (void)c_.dialogs.messageBox(text, platform::Buttons::OK, platform::Icon::None, kAppTitle);
}

void StatusPanes::SSTabFlags_Click()
{
    frmMain& f = c_.form;
    const int shown = f.SSTabFlags.selectedIndex();
    for (std::size_t i = 0; i < f.lvFlags.size(); ++i)
        f.lvFlags[i].setVisible(static_cast<int>(i) == shown);
}

} // namespace zv
