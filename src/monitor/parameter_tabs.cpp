#include "monitor/parameter_tabs.h"

#include "core/globals.h"
#include "core/ini_values.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/list_values.h"
#include "params/number_text.h"
#include "platform/event_loop.h"

#include <array>
#include <chrono>
#include <ctime>

namespace zv {

namespace {

using platform::ui::ListColumn;
using platform::ui::ListRow;
using platform::ui::ListView;

constexpr platform::Rgb kWhite = 0xFFFFFF;
constexpr int kLockedDataType = 8;
constexpr int kAdvancedTab = 10;
constexpr int kAdvancedLevel = 3;
constexpr int kEditLevel = 2;

std::string rowKey(int row)
{
    return "P" + std::to_string(row);
}

std::string capturedTitle(std::chrono::system_clock::time_point now)
{
    const std::time_t t = std::chrono::system_clock::to_time_t(now);
    std::tm local {};
    localtime_r(&t, &local);
    char text[32];
    std::strftime(text, sizeof text, "%x %X", &local);
    return std::string("Value [Static Data Captured @ ") + text + "]";
}

} // namespace

std::string cellKey(int cell)
{
    return "n" + std::to_string(cell);
}

int cellOfKey(const std::string& key)
{
    if (key.size() < 2 || key[0] != 'n')
        return 0;
    try {
        return std::stoi(key.substr(1));
    } catch (const std::exception&) {
        return 0;
    }
}

ParameterTabs::ParameterTabs(MonitorContext& context)
    : c_(context)
{
}

int ParameterTabs::userLevel() const
{
    return c_.main.UserAccessLevel();
}

ParameterList& ParameterTabs::parametersOf(int node) const
{
    clsCellWeft& driver = c_.main.CellWeft();
    clsNode* cell = node > 0 ? driver.nodes.Item(node) : nullptr;
    return cell ? cell->NodeParameters : driver.GatewayParameters;
}

void ParameterTabs::setUpLists()
{
    frmMain& f = c_.form;
    f.lvGateway.setColumns(
        { { "State" }, { "Voltage" }, { "Max Temp" }, { "Current" }, { "RSOC" }, { "Brd Temp" } });
    f.lvGateway.clear();
    f.lvGateway.addRow({ .key = kGatewayRow, .text = "" });
    f.lvNodes.setColumns({ { "Cell" }, { "Voltage" }, { "Temp" }, { "Pump" } });
    f.lvNodes.setCheckBoxes(true);
    f.lvNodes.clear();
    const int cells = c_.main.CellWeft().nodes.Count();
    for (int cell = 1; cell <= cells; ++cell)
        f.lvNodes.addRow(
            { .key = cellKey(cell), .text = std::to_string(cell), .icon = "Node", .checked = true });
    f.lvNodes.addRow({ .key = cellKey(cells + 1), .text = "n/a" });
    f.CellsChecked = true;
    for (auto& list : f.lvProperties)
        list.setColumns({ { "Cell 1" }, { "Value" } });
    for (auto& list : f.lvParameters)
        list.setColumns({ { "Parameter Name" }, { capturedTitle(c_.loop.now()) } });
    f.fraStatus.setCaption(kBitEncodedCaption);
}

void ParameterTabs::loadTabCaptions()
{
    const AppGlobals& g = c_.globals;
    const auto caption = [&g](const char* prefix, int tab) {
        return GetINIValue(g.gTargetSection, prefix + std::to_string(tab + 1), g.gINIFile);
    };
    const auto fill = [&caption](platform::ui::TabStrip& strip, const char* prefix, int count) {
        std::vector<platform::ui::Tab> tabs;
        for (int tab = 0; tab < count; ++tab) {
            std::string text = caption(prefix, tab);
            const bool visible = !text.empty();
            tabs.push_back({ "Tab" + std::to_string(tab), std::move(text), visible });
        }
        strip.setTabs(std::move(tabs));
        if (strip.selectedIndex() < 0)
            strip.setSelectedIndex(0);
    };
    fill(c_.form.SSTab1, "CT", static_cast<int>(c_.form.lvProperties.size()));
    fill(c_.form.SSTab, "PT", static_cast<int>(c_.form.lvParameters.size()));
}

ListView& ParameterTabs::currentParameters()
{
    const int tab = c_.form.SSTab.selectedIndex();
    return c_.form.lvParameters.at(tab < 0 ? 0 : static_cast<std::size_t>(tab));
}

ListView& ParameterTabs::currentProperties()
{
    const int tab = c_.form.SSTab1.selectedIndex();
    return c_.form.lvProperties.at(tab < 0 ? 0 : static_cast<std::size_t>(tab));
}

clsSMBusParameter* ParameterTabs::parameterOfRow(const ListView& list, const std::string& key, int node) const
{
    const ListRow* row = list.row(key);
    return row ? parametersOf(node).FindByName(trimBlanks(row->text)) : nullptr;
}

std::string ParameterTabs::rowIcon(const clsSMBusParameter& parameter) const
{
    const int level = userLevel();
    if (parameter.WritePrivilegeLevel > level || parameter.SubBlockDataType == kLockedDataType
        || level < kEditLevel)
        return "lock";
    return "readwrite";
}

void ParameterTabs::addParameterRow(ListView& list, int row, const clsSMBusParameter& parameter)
{
    const DisplaySettings& display = c_.main.CellWeft().Parameters.display;
    const bool pending = hasNewValue(parameter);
    ListRow line { .key = rowKey(row), .text = parameter.ParameterName + " ", .icon = rowIcon(parameter) };
    line.subItems = { pending ? editedValueText(parameter, display)
                              : storedValueText(parameter, display, tabValueMode(parameter)) };
    line.bold = pending;
    if (parameter.OffsetMultiplier == 1) {
        line.foreColor = c_.globals.settings.ForeColor1;
        line.subStyles = { { .foreColor = c_.globals.settings.ForeColor2 } };
    }
    list.addRow(std::move(line));
    if (pending)
        c_.form.WritePending(true);
}

void ParameterTabs::LoadTabs()
{
    frmMain& f = c_.form;
    f.WritePending(false);
    ListView& current = currentParameters();
    const std::string selected = current.selectedKey();
    const std::string title = capturedTitle(c_.loop.now());
    std::array<int, 11> rows {};
    for (auto& list : f.lvParameters) {
        list.clear();
        list.setColumns({ { "Parameter Name" }, { title } });
    }
    rows.fill(1);
    f.SSTab.setTabVisible(kAdvancedTab,
        userLevel() >= kAdvancedLevel && !f.SSTab.tabs().empty()
            && !f.SSTab.tabs()[kAdvancedTab].caption.empty());
    if (updateDeviceBits)
        updateDeviceBits();
    for (const clsSMBusParameter& parameter : c_.main.CellWeft().GatewayParameters) {
        if (parameter.ReadPrivilegeLevel > userLevel() || parameter.TabOrder >= rows.size())
            continue;
        addParameterRow(f.lvParameters[parameter.TabOrder], rows[parameter.TabOrder]++, parameter);
    }
    if (!selected.empty() && current.row(selected)) {
        current.setSelectedKey(selected);
        if (parameterClicked)
            parameterClicked(selected);
    }
    for (auto& list : f.lvParameters)
        stripe(list);
}

void ParameterTabs::stripe(ListView& list) const
{
    bool alternate = false;
    for (const ListRow& row : list.rows()) {
        list.setBackColor(row.key, alternate ? c_.globals.settings.AlternateRowColor : kWhite);
        alternate = !alternate;
    }
}

void ParameterTabs::forEachVisibleProperty(
    int cell, const std::function<void(ListView&, const std::string&, clsSMBusParameter&)>& each)
{
    std::array<int, 3> rows {};
    for (clsSMBusParameter& parameter : parametersOf(cell)) {
        if (parameter.ReadPrivilegeLevel > userLevel() || parameter.TabOrder >= rows.size())
            continue;
        const int row = ++rows[parameter.TabOrder];
        each(c_.form.lvProperties[parameter.TabOrder], rowKey(row), parameter);
    }
}

void ParameterTabs::addPropertyRow(ListView& list, const std::string& key, const clsSMBusParameter& parameter)
{
    const DisplaySettings& display = c_.main.CellWeft().Parameters.display;
    const std::string icon = parameter.WritePrivilegeLevel > userLevel() ? "lock" : "readwrite";
    list.addRow({ .key = key,
        .text = parameter.ParameterName + " ",
        .icon = icon,
        .subItems = { storedValueText(parameter, display, 1) } });
}

void ParameterTabs::NodeGrid_Load(int cell)
{
    ListView& current = currentProperties();
    const std::string selected = current.selectedKey();
    for (auto& list : c_.form.lvProperties) {
        list.clear();
        list.setColumns({ { "Cell " + std::to_string(cell) }, { "Value" } });
    }
    forEachVisibleProperty(
        cell, [this](ListView& list, const std::string& key, clsSMBusParameter& parameter) {
            addPropertyRow(list, key, parameter);
        });
    if (!selected.empty())
        current.setSelectedKey(selected);
    for (auto& list : c_.form.lvProperties)
        stripe(list);
}

void ParameterTabs::UpdateTabs(const clsSMBusParameter& parameter)
{
    const DisplaySettings& display = c_.main.CellWeft().Parameters.display;
    for (auto& list : c_.form.lvParameters) {
        for (const ListRow& row : list.rows()) {
            if (trimBlanks(row.text) != parameter.ParameterName)
                continue;
            const bool pending = hasNewValue(parameter);
            list.setSubItem(row.key, 1, editedValueText(parameter, display));
            list.setBold(row.key, pending);
            if (pending)
                c_.form.WritePending(true);
            return;
        }
    }
}

void ParameterTabs::refreshCellValues()
{
    const int cell = cellOfKey(c_.form.lvNodes.selectedKey());
    if (cell <= 0 || cell > c_.main.CellWeft().nodes.Count())
        return;
    ListView& shown = currentProperties();
    const std::string selected = shown.selectedKey();
    const DisplaySettings& display = c_.main.CellWeft().Parameters.display;
    forEachVisibleProperty(
        cell, [&display](ListView& list, const std::string& key, clsSMBusParameter& parameter) {
            if (list.row(key))
                list.setSubItem(key, 1, storedValueText(parameter, display, 1));
        });
    if (!selected.empty()) {
        shown.setSelectedKey({});
        shown.setSelectedKey(selected);
    }
}

void ParameterTabs::refreshGatewayValues()
{
    ListView& list = currentParameters();
    const DisplaySettings& display = c_.main.CellWeft().Parameters.display;
    const bool bitsShown = c_.form.fraStatus.caption() == kBitEncodedCaption;
    for (const ListRow& row : list.rows()) {
        const clsSMBusParameter* parameter = parameterOfRow(list, row.key, 0);
        if (!parameter || parameter->OffsetMultiplier != 1)
            continue;
        // The value just read; a row with a waiting edit stays bold until it is written or reverted.
        list.setSubItem(row.key, 1, parameter->ToString(parameter->SubBlockDataType == 0 ? 3 : 0, display));
        if (parameter->SubBlockDataType == 0 && row.key == list.selectedKey() && bitsShown && showBits)
            showBits(*parameter);
    }
}

} // namespace zv
