#pragma once
// The data-set form (.ppcsv): parameter values by name, one a line, grouped by the parameter
// tabs, after a header that tells what the values were read from. CR LF line ends.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct PpcsvHeader {
    int major = 0;
    int minor = 0;
    int revision = 0;
    std::string target;
    int cells = 0;
    bool capacityMode = false;
    int vScale = 1;
    int ipScale = 1;
};

struct PpcsvRow {
    std::string name;
    std::string units;
    std::string value;
};

struct PpcsvTab {
    std::string caption;
    int position = 0;
    std::vector<PpcsvRow> rows;
};

// The lines of the file, without their ends. A tab without rows is left out.
[[nodiscard]] std::vector<std::string> ppcsvLines(
    const PpcsvHeader& header, const std::vector<PpcsvTab>& tabs);

// One parameter line of a data-set: its line number (from 1, every line counted), the name
// (field 0, trimmed) and the value (field 2), none when the line has fewer fields.
struct PpcsvEntry {
    int line = 0;
    std::string name;
    std::optional<std::string> value;
};

// Skips empty lines and those beginning with "#" or "<"; splits at tabs when the line holds one,
// else at commas.
[[nodiscard]] std::vector<PpcsvEntry> parsePpcsv(std::string_view text);

// What stops the load of a data-set: a box with its title and text.
struct DataSetFault {
    std::string title;
    std::string text;
};

// The data type of a parameter of the model; none when there is no parameter of that name.
using ParameterTypeLookup = std::function<std::optional<int>(const std::string& name)>;

// Checks the entries in file order against the model: an unknown name, a name given twice, or a
// missing value for a parameter that is not a text (type 6). The first fault, or none.
[[nodiscard]] std::optional<DataSetFault> checkDataSet(
    const std::vector<PpcsvEntry>& entries, const ParameterTypeLookup& typeOf);

} // namespace zv
