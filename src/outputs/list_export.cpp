#include "outputs/list_export.h"

#include "core/local_time.h"
#include "driver/cls_main.h"
#include "monitor/main_title.h"
#include "outputs/csv_text.h"
#include "outputs/output_services.h"
#include "outputs/save_path.h"
#include "params/number_text.h"
#include "platform/event_loop.h"
#include "platform/ui/list_view.h"

#include <exception>

namespace zv {

namespace {

constexpr const char* kComma = ",";

std::vector<std::string> rowFields(const platform::ui::ListRow& row)
{
    std::vector<std::string> fields { trimBlanks(row.text) };
    fields.insert(fields.end(), row.subItems.begin(), row.subItems.end());
    return fields;
}

std::string firstSubItem(const platform::ui::ListRow& row)
{
    return row.subItems.empty() ? std::string() : row.subItems.front();
}

} // namespace

std::vector<std::string> listViewCsvLines(const platform::ui::ListView& list, const ListTrailer& trailer)
{
    std::vector<std::string> titles;
    for (const auto& column : list.columns())
        titles.push_back(column.header);
    std::vector<std::string> lines { csvLine(titles, kComma) };
    for (const auto& row : list.rows())
        lines.push_back(csvLine(rowFields(row), kComma));
    const auto pair = [](const char* name, const std::string& value) {
        return csvLine({ name, value }, kComma);
    };
    lines.push_back(pair("Zentavia", trailer.version));
    lines.push_back(pair("Timestamp", trailer.timestamp));
    lines.push_back(pair("Epoch Hour", trailer.epochHour));
    lines.push_back(pair("Firmware Version", trailer.firmwareVersion));
    lines.push_back(pair("Chemistry ID", trailer.chemistryId));
    return lines;
}

std::vector<std::string> checkedRowsCsvLines(
    const platform::ui::ListView& list, const std::string& caption, const std::string& dateTime)
{
    std::vector<std::string> lines { "Parameters - " + caption + " " + dateTime };
    for (const auto& row : list.rows()) {
        if (row.checked)
            lines.push_back(csvLine(rowFields(row), kComma));
    }
    return lines;
}

std::vector<std::string> parameterPrintLines(
    const platform::ui::ListView& list, const std::string& caption, const std::string& date)
{
    std::vector<std::string> lines { "Parameters - " + caption, "Date " + date };
    for (const auto& row : list.rows())
        lines.push_back(trimBlanks(row.text) + "\t" + firstSubItem(row));
    return lines;
}

ListExport::ListExport(OutputServices& services)
    : s_(services)
{
}

std::string ListExport::gatewayValue(const char* name) const
{
    clsMain* main = connectedMain(s_);
    if (!main)
        return {};
    auto& driver = main->CellWeft();
    const clsSMBusParameter* parameter = driver.GatewayParameters.FindByName(name);
    return parameter ? parameter->value.toText(driver.Conversion.locale()) : std::string();
}

ListTrailer ListExport::trailer() const
{
    const AppVersion version = appVersion();
    ListTrailer t;
    t.version = std::to_string(version.major) + "." + std::to_string(version.minor) + "."
        + std::to_string(version.revision);
    t.timestamp = dateAndTime(s_.clock.now());
    t.epochHour = gatewayValue("Epoch Hour");
    t.firmwareVersion = gatewayValue("Firmware Version");
    t.chemistryId = gatewayValue("Chemistry ID");
    return t;
}

void ListExport::SaveListViewToCSV(const platform::ui::ListView& list)
{
    try {
        const auto path = askSavePath(s_.dialogs, s_.settings, s_.programFolder,
            { "Comma Separated Values (*.csv)|*.csv|", "Safety History.csv", "Path_ListViewCSV" });
        if (!path)
            return;
        writeTextLines(*path, listViewCsvLines(list, trailer()));
    } catch (const std::exception& error) {
        showOutputError(s_.dialogs, error.what());
    }
}

void ListExport::SaveTabToCSV(platform::ui::ListView& list, const std::string& caption)
{
    try {
        const auto path = askSavePath(s_.dialogs, s_.settings, s_.programFolder,
            { "Parameter Data (*.csv)|*.csv|", caption + ".csv", "Path_ParameterCSV" });
        if (!path)
            return;
        writeTextLines(*path, checkedRowsCsvLines(list, caption, dateAndTime(s_.clock.now())));
        for (const auto& row : list.rows())
            list.setChecked(row.key, false);
    } catch (const std::exception& error) {
        showOutputError(s_.dialogs, error.what());
    }
}

void ListExport::PrintParameters(const platform::ui::ListView& list, const std::string& caption)
{
    const auto lines = parameterPrintLines(list, caption, shortDate(s_.clock.now()));
    if (!s_.dialogs.printText(lines.front(), lines))
        showOutputError(s_.dialogs, "The list could not be printed on the default printer.");
}

} // namespace zv
