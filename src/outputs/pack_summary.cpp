#include "outputs/pack_summary.h"

#include "core/globals.h"
#include "driver/cls_main.h"
#include "outputs/csv_text.h"
#include "outputs/output_services.h"
#include "outputs/save_path.h"
#include "params/number_text.h"
#include "platform/dialogs.h"
#include "platform/ui/list_view.h"
#include "platform/ui/tab_strip.h"

#include <cstdio>
#include <exception>
#include <stdexcept>

namespace zv {

namespace {

constexpr int kPasswordFile = 16;
constexpr int kCalibrationFile = 24;
constexpr int kSummaryPasswords = 2; // levels 1 and 2
constexpr int kTextBlock = 5; // FormatData: a block of groups
constexpr int kCharacters = 6; // ... of characters
constexpr const char* kManufactureDate = "Manufacture Date";

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t at = text.find(separator); at != std::string::npos; at = text.find(separator, start)) {
        parts.push_back(text.substr(start, at - start));
        start = at + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

} // namespace

bool qualifies(SummaryMode mode, const clsSMBusParameter& parameter)
{
    switch (mode) {
    case SummaryMode::Dynamic:
        return parameter.WritePrivilegeLevel > 3;
    case SummaryMode::Static:
        return parameter.WritePrivilegeLevel < 3;
    case SummaryMode::All:
        break;
    }
    return true;
}

std::string packedDateText(unsigned word)
{
    char text[16];
    std::snprintf(text, sizeof text, "%02u/%02u/%04u", (word >> 5) & 0x0Fu, word & 0x1Fu,
        1980u + ((word >> 9) & 0x7Fu));
    return text;
}

PackSummary::PackSummary(OutputServices& services)
    : s_(services)
{
}

std::string PackSummary::field(const std::string& text) const
{
    return csvField(text, s_.globals.gListSep);
}

std::string PackSummary::rowLine(
    const std::string& name, const std::string& valueColumn, const clsSMBusParameter& parameter) const
{
    const std::string& d = s_.globals.gListSep;
    std::string line = field(name);
    if (name == kManufactureDate) {
        const auto word = parameter.value.asNumber(kInvariantLocale);
        return line + d + (word ? packedDateText(static_cast<unsigned>(*word)) : std::string());
    }
    // Each blank of the value column becomes a separator, so value and units are two fields.
    for (const auto& part : split(valueColumn, ' '))
        line += d + field(part);
    return line;
}

std::vector<std::string> PackSummary::rowsOf(
    const platform::ui::ListView& list, const ParameterList& parameters, SummaryMode mode) const
{
    std::vector<std::string> rows;
    for (const auto& row : list.rows()) {
        const std::string name = trimBlanks(row.text);
        const clsSMBusParameter* parameter = parameters.FindByName(name);
        if (parameter && qualifies(mode, *parameter))
            rows.push_back(
                rowLine(name, row.subItems.empty() ? std::string() : row.subItems.front(), *parameter));
    }
    return rows;
}

void PackSummary::addTabs(std::vector<std::string>& lines, const platform::ui::TabStrip* tabs,
    const std::vector<platform::ui::ListView*>& lists, const ParameterList& parameters,
    SummaryMode mode) const
{
    if (!tabs)
        return;
    const auto& all = tabs->tabs();
    for (std::size_t i = 0; i < all.size() && i < lists.size(); ++i) {
        if (!all[i].visible || !lists[i])
            continue;
        const auto rows = rowsOf(*lists[i], parameters, mode);
        if (rows.empty())
            continue;
        lines.emplace_back();
        lines.push_back("<" + all[i].caption + ">");
        lines.insert(lines.end(), rows.begin(), rows.end());
    }
}

void PackSummary::addPasswords(std::vector<std::string>& lines, clsCellWeft& driver) const
{
    FileRequest request;
    request.file = kPasswordFile;
    request.count = kSummaryPasswords;
    const FileReply reply = driver.FileAccessRequest(request);
    if (!reply.ok)
        throw std::runtime_error("The passwords could not be read from the device.");
    const auto* entry = driver.Directory.DirectoryElements.fileEntry(kPasswordFile);
    const int chunk = entry ? static_cast<int>(entry->FileChunk) : 0;
    const NumberLocale& locale = driver.Conversion.locale();
    const std::string all
        = driver.Conversion.FormatData(reply.text, kTextBlock, -1, kCharacters, 0, chunk).toText(locale);
    const auto passwords = split(all, locale.listSeparator());
    const std::string& d = s_.globals.gListSep;
    lines.emplace_back();
    lines.emplace_back("<Passwords>");
    for (int level = 1; level <= kSummaryPasswords; ++level) {
        const auto index = static_cast<std::size_t>(level - 1);
        lines.push_back("Level " + std::to_string(level) + d
            + field(index < passwords.size() ? passwords[index] : std::string()));
    }
}

void PackSummary::addCalibration(std::vector<std::string>& lines, clsCellWeft& driver) const
{
    const std::string& d = s_.globals.gListSep;
    const NumberLocale& locale = driver.Conversion.locale();
    lines.emplace_back();
    lines.emplace_back("<Calibration>");
    for (const auto& parameter : driver.GatewayParameters) {
        if (parameter.FileNumber == kCalibrationFile && parameter.SubBlockDataType == 0)
            lines.push_back(field(parameter.ParameterName) + d + field(parameter.value.toText(locale)) + d
                + field(parameter.EngineeringUnitsString));
    }
}

void PackSummary::addCells(std::vector<std::string>& lines, clsCellWeft& driver, SummaryMode mode) const
{
    const ParameterViews views = s_.views();
    lines.emplace_back();
    lines.emplace_back("[Cell Parameters]");
    for (int cell = driver.nodes.Count(); cell >= 1; --cell) {
        // Selecting the cell's row loads its parameters into the cell tabs.
        if (views.nodeList)
            views.nodeList->userSelect("n" + std::to_string(cell));
        lines.emplace_back();
        lines.push_back("[Cell " + std::to_string(cell) + "]");
        addTabs(lines, views.cellTabs, views.cellLists, driver.nodes.Item(cell)->NodeParameters, mode);
    }
}

std::vector<std::string> PackSummary::Lines(SummaryMode mode)
{
    clsMain* main = connectedMain(s_);
    if (!main)
        throw std::runtime_error("No pack is connected.");
    clsCellWeft& driver = main->CellWeft();
    const ParameterViews views = s_.views();
    std::vector<std::string> lines { "[System Parameters]" };
    addTabs(lines, views.packTabs, views.packLists, driver.GatewayParameters, mode);
    if (main->UserAccessLevel() > 1)
        addPasswords(lines, driver);
    addCalibration(lines, driver);
    if (mode != SummaryMode::Static)
        addCells(lines, driver, mode);
    return lines;
}

void PackSummary::Save(SummaryMode mode)
{
    try {
        const auto path = askSavePath(s_.dialogs, s_.settings, s_.programFolder,
            { "Pack Summary Files (*.csv)|*.csv|", "", "Path_Parameters" });
        if (!path)
            return;
        {
            Hourglass hourglass(s_.monitor);
            if (s_.monitor.readAllParameters && !s_.monitor.readAllParameters())
                return;
            writeTextLines(*path, Lines(mode));
        }
        s_.dialogs.notify(
            "Save Pack Parameters Summary", "Pack parameters has been saved.", platform::Icon::Information);
    } catch (const std::exception& error) {
        showOutputError(s_.dialogs, error.what());
    }
}

} // namespace zv
