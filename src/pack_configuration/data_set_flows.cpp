// The data-set flows of PackConfigurationFlows: Load Data-Set to Device, Import Data-Set to
// Zentavia and Save Data-Set.

#include "core/globals.h"
#include "core/ini_values.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "monitor/main_title.h"
#include "pack_configuration/pack_flows.h"
#include "pack_configuration/ppcsv_file.h"
#include "params/hex_text.h"
#include "params/number_text.h"
#include "platform/atomic_file.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

#include <cmath>
#include <filesystem>
#include <set>

namespace zv {

// One parameter line of a data-set with the place of its parameter.
struct DataSetRecord {
    std::string name;
    std::string value;
    int FileNumber = 0;
    int FileIndex = 0;
    int SubBlockDataType = 0;
    double SubBlockDataScaling = 0;
};

namespace {

constexpr int kHourglass = 11;
constexpr int kDefaultPointer = 0;
constexpr int kBitField = 0;
constexpr int kText = 6;
constexpr int kHexText = 7;
constexpr int kBlockFormat = 5;
constexpr int kWritableBelow = 3;
constexpr int kParameterTabs = 11;
constexpr const char* kAdvancedCaption = "Advanced";
constexpr const char* kPathDataSet = "Path_DataSet";

// Files whose unnamed records are left out rather than written as zero.
bool keepsGaps(int file)
{
    return file == 15 || file == 37;
}

std::string trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}

// A number once its "." is removed: digits with an optional sign.
bool numericWithoutPoint(std::string_view text)
{
    std::string digits;
    for (const char c : trimmed(text))
        if (c != '.')
            digits += c;
    if (!digits.empty() && (digits[0] == '-' || digits[0] == '+'))
        digits.erase(0, 1);
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
}

// A data-set names gateway parameters only: a cell's place would make its file's other sections
// zero.
clsSMBusParameter* findInModel(clsCellWeft& driver, const std::string& name)
{
    return driver.FindParameter(name, 0).parameter;
}

} // namespace

std::vector<std::string> PackConfigurationFlows::dataSetLines()
{
    clsCellWeft& d = driver();
    const AppVersion version = appVersion();
    DisplaySettings display = d.Parameters.display;
    display.TemperatureUnits = 0; // temperatures in kelvin, the unit a data-set is loaded in
    PpcsvHeader header { version.major, version.minor, version.revision, s_.globals.gTargetName,
        d.nodes.Count(), display.CapacityMode == 1, display.VScale, display.IPScale };
    std::vector<PpcsvTab> tabs;
    for (int tab = 0; tab < kParameterTabs; ++tab) {
        const std::string caption
            = GetINIValue(s_.globals.gTargetSection, "PT" + std::to_string(tab + 1), s_.globals.gINIFile);
        if (caption.empty() || caption == kAdvancedCaption)
            continue;
        PpcsvTab block { caption, tab, {} };
        for (const clsSMBusParameter& parameter : d.GatewayParameters) {
            if (parameter.TabOrder != tab || parameter.WritePrivilegeLevel >= kWritableBelow)
                continue;
            PpcsvRow row { parameter.ParameterName, {}, {} };
            if (parameter.EngineeringUnitsString.empty() || parameter.EngineeringUnitsString.front() != '&')
                row.units = parameter.ScaledUnits(display);
            if (parameter.SubBlockDataType == kBitField) {
                row.value = convertToHex(parameter.value, 0).value_or("");
            } else if (parameter.SubBlockDataType == kText) {
                row.value = parameter.value.toText(display.locale);
            } else {
                row.value = parameter.ToString(2, display);
                for (auto& c : row.value)
                    if (c == display.locale.decimalSeparator)
                        c = '.';
            }
            block.rows.push_back(std::move(row));
        }
        tabs.push_back(std::move(block));
    }
    return ppcsvLines(header, tabs);
}

bool PackConfigurationFlows::SaveDataSet(const std::string& path)
{
    try {
        if (hooks_.Parameters_ReadAll && !hooks_.Parameters_ReadAll())
            return false;
        std::string text;
        for (const auto& line : dataSetLines())
            text += line + "\r\n";
        writeFileReplacing(path, text);
    } catch (const std::exception& error) {
        failure(std::string("An error has occurred.\r\nError: ") + error.what(), "Save Data-Set");
        return false;
    }
    notify("Save Pack Parameters Summary", "Pack parameters has been saved.");
    return true;
}

void PackConfigurationFlows::mnuPPsavePackConfiguration_Click()
{
    if (hooks_.IsTheDeviceWired && !hooks_.IsTheDeviceWired())
        return;
    const auto path = askSave(pack_texts::kDataSetFilter, kPathDataSet);
    if (!path)
        return;
    disable();
    pointer(kHourglass);
    (void)SaveDataSet(*path);
    pointer(kDefaultPointer);
    enable();
}

bool PackConfigurationFlows::writeDataSetFile(int file, const std::vector<DataSetRecord>& records)
{
    clsCellWeft& d = driver();
    const auto* entry = d.Directory.DirectoryElements.fileEntry(file);
    if (!entry || entry->FileChunk == 0)
        return false;
    const int format = static_cast<int>(entry->FileFormat());
    std::string data;
    for (int position = 0; position < static_cast<int>(entry->FileLength()); ++position) {
        const DataSetRecord* record = nullptr;
        for (const auto& candidate : records)
            if (candidate.FileNumber == file && candidate.FileIndex == position)
                record = &candidate;
        if (!record) {
            if (!keepsGaps(file))
                data += std::string(static_cast<std::size_t>(format) * 2, '0');
            continue;
        }
        std::string value = record->value;
        if (numericWithoutPoint(value)) {
            const double scale = record->SubBlockDataScaling == 0 ? 1.0 : record->SubBlockDataScaling;
            const auto number = parseNumber(trimmed(value), '.');
            value = generalNumberText(std::round(number.value_or(0) / scale), kInvariantLocale);
        }
        const int byteCount = (record->SubBlockDataType == kHexText || format == kBlockFormat)
            ? static_cast<int>(entry->FileChunk)
            : format;
        const std::string raw
            = d.Conversion.GetConfigurationValue(value, std::to_string(record->SubBlockDataType), byteCount);
        if (raw.empty())
            return false;
        data += raw;
    }
    PackProperties image;
    image.FileNumber = static_cast<std::uint8_t>(file);
    image.FileChunk = static_cast<std::uint16_t>(entry->FileChunk);
    image.FileMaxBytes = static_cast<std::uint16_t>(entry->FileMaxBytes);
    image.FileSize = static_cast<std::uint16_t>(keepsGaps(file) ? data.size() / 2 : entry->FileSize);
    image.FileData = data;
    return writeElement(image);
}

bool PackConfigurationFlows::PP_LoadTabParametersFromFile(const std::string& path)
{
    clsCellWeft& d = driver();
    std::vector<PpcsvEntry> entries;
    try {
        entries = parsePpcsv(readWholeFile(path));
    } catch (const std::exception& error) {
        failure(std::string("An error has occurred.\r\nError: ") + error.what(), "Error Parsing File");
        return false;
    }
    const auto fault = checkDataSet(entries, [&d](const std::string& name) -> std::optional<int> {
        const auto* parameter = findInModel(d, name);
        return parameter ? std::optional<int>(parameter->SubBlockDataType) : std::nullopt;
    });
    if (fault) {
        failure(fault->text, fault->title);
        return false;
    }
    std::vector<DataSetRecord> records;
    std::set<int> files;
    for (const PpcsvEntry& entry : entries) {
        const clsSMBusParameter& parameter = *findInModel(d, entry.name);
        DataSetRecord record { entry.name, entry.value.value_or(""), parameter.FileNumber,
            parameter.FileIndex, parameter.SubBlockDataType, parameter.SubBlockDataScaling };
        if (record.SubBlockDataType == kBitField) {
            const auto number = convertToInt(trimmed(record.value));
            if (!number) {
                failure("An error has occurred while parsing the 'ppcsv' file on line number "
                        + std::to_string(entry.line) + ".\r\nPlease correct the problem and try again.",
                    "Error Parsing File");
                return false;
            }
            record.value = std::to_string(*number);
        }
        files.insert(record.FileNumber);
        records.push_back(std::move(record));
    }
    for (const int file : files) {
        if (!writeDataSetFile(file, records) || (!d.Files.waitUntilIdle())) {
            failure("An error has occurred while loading the pack configuration file.", "");
            return false;
        }
    }
    (void)d.GetScaling();
    chemistryStep();
    return true;
}

void PackConfigurationFlows::chemistryStep()
{
    clsCellWeft& d = driver();
    if (clsSMBusParameter* chemistry = d.FindParameter("Chemistry ID", 0).parameter) {
        (void)d.Parameters.ReadParameter(*chemistry);
        const std::string id = "0000" + trimmed(chemistry->value.toText(kInvariantLocale));
        const std::string name = id.substr(id.size() - 4) + ".chem";
        const std::string folder = (std::filesystem::path(s_.programFolder) / "Chemistry").string() + "/";
        if (std::filesystem::exists(folder + name)) {
            if (hooks_.loadChemistry)
                hooks_.loadChemistry(folder + name);
        } else {
            box("The chemistry file " + name + " could not be located at the path:\r\n" + folder
                    + "\r\nPlease try again, if this problem persists, please reinstall the Zentavia",
                static_cast<int>(platform::Icon::Critical), "Chemistry File Missing");
        }
    }
    if (s_.dialogs.messageBox(
            "Would you like to override learned chemistry data with the auxiliary data file?",
            platform::Buttons::YesNo, platform::Icon::Question, "Override Learned Chemistry Data")
        != platform::Answer::Yes)
        return;
    const auto aux = askOpen(pack_texts::kAuxFilter, "Path_Auxiliary");
    if (!aux || !readPackFile(*aux))
        return;
    if (!writeElement(*d.Directory.PackConfigurationFile.Item(1))) {
        failure("An error has occurred while loading the pack configuration file.", "");
        return;
    }
    box("Chemistry data has been overridden\r\nwith the auxiliary data file.",
        static_cast<int>(platform::Icon::Information), "Override Ra Data!");
}

bool PackConfigurationFlows::loadDataSetToDevice(const std::string& path)
{
    disable();
    pointer(kHourglass);
    quietFailure.clear();
    const bool loaded = PP_LoadTabParametersFromFile(path);
    if (loaded) {
        s_.loop.processEvents();
        if (hooks_.Parameters_ReadAll)
            (void)hooks_.Parameters_ReadAll();
        if (hooks_.CommitChanges && !hooks_.CommitChanges())
            quietFailure = "The data-set was written but not committed to flash.";
    }
    pointer(kDefaultPointer);
    enable();
    return loaded && quietFailure.empty();
}

void PackConfigurationFlows::mnuPPloadPackConfigurationToDevice_Click()
{
    if (hooks_.IsTheDeviceWired && !hooks_.IsTheDeviceWired())
        return;
    const auto path = askOpen(pack_texts::kDataSetFilter, kPathDataSet);
    if (path)
        (void)loadDataSetToDevice(*path);
}

bool PackConfigurationFlows::kelvinPreference()
{
    DisplaySettings& display = driver().Parameters.display;
    if (display.TemperatureUnits != 0) {
        if (s_.dialogs.messageBox(
                "This operation requires the temperature preference to be set to Kelvin.\r\n"
                "Would you like to automatically set it now and continue?",
                platform::Buttons::YesNo, platform::Icon::Question, "Preference Change Required")
            != platform::Answer::Yes)
            return false;
        display.TemperatureUnits = 0;
        s_.globals.settings.TemperatureUnits = 0;
        writeSetting(s_.settings, "TemperatureUnits", "0");
        if (hooks_.redraw)
            hooks_.redraw();
    }
    return true;
}

bool PackConfigurationFlows::ImportDataSet(const std::string& path)
{
    if (!kelvinPreference())
        return false;
    clsCellWeft& d = driver();
    const DisplaySettings& display = d.Parameters.display;
    std::vector<PpcsvEntry> entries;
    try {
        entries = parsePpcsv(readWholeFile(path));
    } catch (const std::exception& error) {
        failure(std::string("An error has occurred.\r\nError: ") + error.what(), "Error Parsing File");
        return false;
    }
    disable();
    pointer(kHourglass);
    const auto done = [this](bool ok) {
        pointer(kDefaultPointer);
        enable();
        return ok;
    };
    if (hooks_.Parameters_ReadAll && !hooks_.Parameters_ReadAll())
        return done(false);
    const auto fault = checkDataSet(entries, [&d](const std::string& name) -> std::optional<int> {
        const auto* parameter = findInModel(d, name);
        return parameter ? std::optional<int>(parameter->SubBlockDataType) : std::nullopt;
    });
    if (fault) {
        failure(fault->text, fault->title);
        return done(false);
    }
    const NumberLocale& locale = display.locale;
    for (const PpcsvEntry& entry : entries) {
        clsSMBusParameter& parameter = *findInModel(d, entry.name);
        const std::string text = trimmed(entry.value.value_or(""));
        bool differs = false;
        DynamicValue newValue;
        if (parameter.SubBlockDataType == kBitField) {
            const auto fileValue = convertToInt(text);
            const auto deviceValue = parameter.value.asNumber(locale);
            differs = fileValue && (!deviceValue || static_cast<std::int64_t>(*deviceValue) != *fileValue);
            if (fileValue)
                newValue = static_cast<double>(*fileValue);
        } else if (parameter.SubBlockDataType == kText || parameter.SubBlockDataType == kHexText) {
            differs = text != trimmed(parameter.value.toText(locale));
            newValue = text;
        } else {
            const auto fileValue = parseNumber(text, '.');
            const auto deviceValue = parseNumber(parameter.ToString(2, display), locale.decimalSeparator);
            differs = fileValue && (!deviceValue || *deviceValue != *fileValue);
            if (fileValue)
                newValue = generalNumberText(*fileValue, locale);
        }
        if (differs) {
            parameter.NewValue = newValue;
            if (hooks_.UpdateTabs)
                hooks_.UpdateTabs(parameter);
        }
    }
    return done(true);
}

void PackConfigurationFlows::mnuPPImportPackConfiguration_Click()
{
    if (hooks_.IsTheDeviceWired && !hooks_.IsTheDeviceWired())
        return;
    if (!kelvinPreference())
        return;
    const auto path = askOpen(pack_texts::kDataSetFilter, kPathDataSet);
    if (path)
        (void)ImportDataSet(*path);
}

} // namespace zv
