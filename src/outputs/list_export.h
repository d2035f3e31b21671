#pragma once
// A list of the main window to a file or the printer: SaveListViewToCSV (the whole list with a
// trailer naming the program, the time and the pack), the checked rows of a parameter tab to
// CSV, and a parameter tab to the default printer.

#include <string>
#include <vector>

namespace zv::platform::ui {
class ListView;
}

namespace zv {

struct OutputServices;

// The lines of SaveListViewToCSV: the column titles, one line a row, then the trailer.
struct ListTrailer {
    std::string version; // "<major>.<minor>.<revision>"
    std::string timestamp;
    std::string epochHour;
    std::string firmwareVersion;
    std::string chemistryId;
};
[[nodiscard]] std::vector<std::string> listViewCsvLines(
    const platform::ui::ListView& list, const ListTrailer& trailer);

// The lines of a tab export: the heading, then each checked row as text and sub-items.
[[nodiscard]] std::vector<std::string> checkedRowsCsvLines(
    const platform::ui::ListView& list, const std::string& caption, const std::string& dateTime);

// What goes to the printer for a parameter tab.
[[nodiscard]] std::vector<std::string> parameterPrintLines(
    const platform::ui::ListView& list, const std::string& caption, const std::string& date);

class ListExport {
public:
    explicit ListExport(OutputServices& services);

    // The save dialog proposes "Safety History.csv"; a cancel ends quietly.
    void SaveListViewToCSV(const platform::ui::ListView& list);
    // mnuSaveCSVFile: the checked rows of the tab's list; the check marks are cleared after.
    void SaveTabToCSV(platform::ui::ListView& list, const std::string& caption);
    // mnuPrintLvParameters.
    void PrintParameters(const platform::ui::ListView& list, const std::string& caption);

private:
    [[nodiscard]] ListTrailer trailer() const;
    [[nodiscard]] std::string gatewayValue(const char* name) const;

    OutputServices& s_;
};

} // namespace zv
