#include "driver/parameter_access.h"

#include "device_files/directory.h"
#include "device_files/file_protocol.h"
#include "driver/file_transfer.h"
#include "link/cellweft_events.h"
#include "params/hex_text.h"
#include "params/number_text.h"
#include "params/raw_conversion.h"
#include "params/smbus_parameter.h"
#include "platform/dialogs.h"
#include "platform/text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <map>

namespace zv {

namespace {

constexpr std::uint32_t kCommitBit = 0x400;
constexpr int kBlockFormat = 5;
constexpr int kTextSubType = 6;
constexpr int kHexSubType = 7;
// The rebuild command: command 4, argument 0 (the command file holds these two words).
// Command 4 and its argument, with the two bytes of zeros that the rebuild request carries.
const char* const kRebuildCommand = "040000000000";

const std::vector<std::string> kGatewayPollNames { "Current", "Average Current", "State of Charge",
    "Sense Resistor Temperature", "Charge FET Temperature", "Discharge FET Temperature",
    "Precharge FET Temperature", "Status" };

const std::vector<std::string> kGatewayInfoNames { "Number of CellWeft rebuilds", "Number of CellWeft Polls",
    "Number of CellWeft Poll Errors", "State", "Cell Flags", "Gateway Flags", "Fault Map", "FETs allowed",
    "actual FETs", "Sleep manager status", "Poll rate index", "LAN time stamp", "Temperature time stamp",
    "Current time stamp", "Time stamp", "Timer 0 Event", "Timer 0 Seconds", "Timer 1 Event",
    "Timer 1 Seconds", "Timer 2 Event", "Timer 2 Seconds" };

std::string lower(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

std::string invariantNumber(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

bool isNumericKey(std::string_view key)
{
    return !key.empty()
        && std::all_of(key.begin(), key.end(), [](unsigned char c) { return std::isdigit(c); });
}

} // namespace

ParameterAccess::ParameterAccess(ParameterAccessServices services)
    : s_(std::move(services))
{
}

ParameterList& ParameterAccess::listOf(int node) const
{
    if (node != 0)
        if (auto* first = s_.nodes.Item(1))
            return first->NodeParameters;
    return s_.gateway;
}

ParameterPlace ParameterAccess::FindParameter(std::string_view key, int node, int fileIndex) const
{
    auto& list = listOf(node);
    clsSMBusParameter* found = nullptr;
    if (isNumericKey(key)) {
        const int file = std::stoi(std::string(key));
        for (auto& parameter : list)
            if (parameter.FileNumber == file && parameter.FileIndex == fileIndex) {
                found = &parameter;
                break;
            }
    } else {
        found = list.FindByName(key);
    }
    if (!found)
        return {};
    return { found, found->ParameterNumber, found->FileIndex, found->FileNumber };
}

bool ParameterAccess::ReadParameter(clsSMBusParameter& parameter)
{
    const auto text = s_.transfer.readFile(parameter.FileNumber, FileTransfer::PartWait::DongleIdle);
    if (text) {
        s_.transfer.applyValue(parameter, *text);
        parameter.NewValue = DynamicValue();
    } else
        parameter.value = DynamicValue("#Error");
    if (s_.readWriteLog)
        s_.readWriteLog(
            "Read Parameter:", parameter.ParameterName, "", parameter.value.toText(display.locale));
    return text.has_value();
}

bool ParameterAccess::ReadParameter(std::string_view name, int node)
{
    const auto place = FindParameter(name, node);
    return place.parameter && ReadParameter(*place.parameter);
}

std::string ParameterAccess::rawText(const clsSMBusParameter& parameter) const
{
    const auto* entry = s_.directory.DirectoryElements.fileEntry(parameter.FileNumber);
    const int format = entry ? static_cast<int>(entry->FileFormat()) : 2;
    const int chunk = entry ? static_cast<int>(entry->FileChunk) : 2;
    const int byteCount
        = (parameter.SubBlockDataType == kHexSubType || format == kBlockFormat) ? chunk : format;

    std::string value;
    if (parameter.SubBlockDataType == kTextSubType || parameter.SubBlockDataType == kHexSubType) {
        value = trimBlanks(parameter.NewValue.toText(display.locale));
    } else {
        const double typed = parameter.NewValue.asNumber(display.locale).value_or(0.0);
        const double scale = parameter.SubBlockDataScaling == 0 ? 1.0 : parameter.SubBlockDataScaling;
        const auto unit = lower(parameter.EngineeringUnitsString);
        double raw = typed / scale;
        if (unit == "k/min")
            raw = roundHalfEven(typed / scale);
        else if ((unit == "kelvin" || unit == "k") && display.TemperatureUnits == 1)
            raw = (typed + 273) / scale;
        value = invariantNumber(toFifteenDigits(raw));
    }
    return s_.conversion.GetConfigurationValue(value, std::to_string(parameter.SubBlockDataType), byteCount);
}

bool ParameterAccess::WriteParameter(clsSMBusParameter& parameter)
{
    const auto* entry = s_.directory.DirectoryElements.fileEntry(parameter.FileNumber);
    if (entry && (entry->FileType() & kCommitBit))
        ParametersWritten = true;
    const std::string typed = parameter.NewValue.toText(display.locale);
    FileRequest request;
    request.access = 1;
    request.file = parameter.FileNumber;
    request.offset = parameter.FileIndex;
    request.count = 1;
    request.data = hexToBytes(rawText(parameter));
    const bool ok = !request.data.empty() && s_.files.FileAccessRequest(request).ok;
    if (ok)
        parameter.NewValue = DynamicValue();
    if (s_.readWriteLog)
        s_.readWriteLog(
            "Write Word:", parameter.ParameterName, parameter.ParameterNumber, ok ? typed : "#Error");
    return ok;
}

bool ParameterAccess::WriteParameter(std::string_view name, int node)
{
    const auto place = FindParameter(name, node);
    return place.parameter && WriteParameter(*place.parameter);
}

void ParameterAccess::CountParametersPerFile()
{
    const int entries = s_.directory.DirectoryElements.Count();
    ParametersPerFile.assign(static_cast<std::size_t>(entries) + 1, 0);
    const auto count = [&](const ParameterList& list) {
        for (const auto& parameter : list) {
            const int position = parameter.FileNumber + 1;
            if (position >= 1 && position <= entries)
                ++ParametersPerFile[static_cast<std::size_t>(position)];
        }
    };
    count(s_.gateway);
    if (const auto* first = s_.nodes.Item(1))
        count(first->NodeParameters);
}

bool ParameterAccess::GetAllValues(const std::function<void(const std::string&, const std::string&)>& capture)
{
    const auto& directory = s_.directory.DirectoryElements;
    const int last = directory.Count();
    std::map<int, std::string> texts;
    bool ok = true;
    for (int position = 2; position <= last; ++position) {
        const int file = position - 1;
        const auto* entry = directory.Item(position);
        if (static_cast<int>(entry->readLevel()) > UserAccessLevel)
            continue;
        s_.events.ReadAllParametersStatus(position * 100 / last);
        const bool marked = static_cast<std::size_t>(position) < ParametersPerFile.size()
            && ParametersPerFile[static_cast<std::size_t>(position)] > 0;
        if (!marked && !(capture && file != kHistoryFileSkippedByCapture))
            continue;
        const auto text = s_.transfer.readFile(file, FileTransfer::PartWait::Idle);
        if (!text) {
            ok = false;
            continue;
        }
        texts[file] = *text;
        if (capture)
            capture("File" + std::to_string(file), *text);
    }
    s_.events.ReadAllParametersStatus(100);
    // A read of all shows the device as it is: edits not yet written are dropped. Each file's text
    // is decoded once, then every parameter is cut out of its bytes.
    std::map<int, std::vector<std::uint8_t>> images;
    for (const auto& [number, fileText] : texts)
        images[number] = hexBytes(fileText).value_or(std::vector<std::uint8_t> {});
    for (auto& parameter : s_.gateway)
        if (const auto found = images.find(parameter.FileNumber); found != images.end()) {
            s_.transfer.applyValue(parameter, std::span<const std::uint8_t>(found->second));
            parameter.NewValue = DynamicValue();
        }
    std::string text;
    for (const int perNode : { 6, 12 }) {
        const auto* entry = directory.fileEntry(perNode);
        if (!entry || static_cast<int>(entry->readLevel()) > UserAccessLevel)
            continue;
        if (!s_.transfer.GetFile(perNode, text)) {
            ok = false;
            continue;
        }
        for (auto& node : s_.nodes)
            for (auto& parameter : node.NodeParameters)
                if (parameter.FileNumber == perNode)
                    parameter.NewValue = DynamicValue();
    }
    return ok;
}

std::optional<int> ParameterAccess::readCount(const char* name)
{
    auto* parameter = s_.gateway.FindByName(name);
    if (!parameter)
        return std::nullopt;
    std::string text;
    if (!s_.transfer.GetFile(parameter->FileNumber, text))
        return std::nullopt;
    const auto value = parameter->value.asNumber(display.locale);
    if (!value)
        return std::nullopt;
    return static_cast<int>(*value);
}

bool ParameterAccess::RebuildLAN(bool quiet)
{
    gCellsMatch = false;
    const auto expected = readCount("Expected Number Of Cells");
    auto actual = readCount("Actual Number Of Cells");
    bool ok = expected && actual;
    if (ok && *expected == *actual) {
        gCellsMatch = true;
    } else if (!quiet) {
        if (s_.splashStatus)
            s_.splashStatus("Rebuilding LAN...");
        if (s_.files.WriteCommandFile(kRebuildCommand)) {
            actual = readCount("Actual Number Of Cells");
            gCellsMatch = expected && actual && *expected == *actual;
            ok = actual.has_value();
        } else {
            if (s_.mainWindowActive && s_.mainWindowActive())
                s_.dialogs.messageBox("Rebuild failed", platform::Buttons::OK, platform::Icon::None, "");
            gCellsMatch = false;
            ok = false;
        }
    }
    s_.nodes.Clear();
    if (actual && *actual > 0) {
        gNodeCount = *actual;
        for (int i = 1; i <= *actual; ++i)
            s_.nodes.Add();
    }
    return ok;
}

int ParameterAccess::MapAlarmsToStatus(int alarmWord)
{
    int result = 0;
    for (int bit = 0; bit < 16; ++bit)
        if ((alarmWord >> bit) & 1)
            if (const int destination = AlarmMap[static_cast<std::size_t>(bit)]; destination >= 0)
                result += 1 << destination;
    if (auto* status = s_.gateway.FindByName("Status"))
        status->value = DynamicValue(result);
    s_.events.BroadcastAlarmReceived(result);
    return result;
}

void ParameterAccess::applyBlock(clsSMBusParameter& parameter, const std::vector<std::uint8_t>& block) const
{
    auto value = ConvertRawToValue(block, parameter.SubBlockDataType, parameter.VScale, parameter.IPscale);
    if (value.isNumber() && parameter.SubBlockDataScaling != 0 && parameter.SubBlockDataType != kTextSubType)
        value = DynamicValue(toFifteenDigits(value.number() * parameter.SubBlockDataScaling));
    parameter.value = value;
}

bool ParameterAccess::pollBlock(std::uint8_t command, const std::vector<std::string>& names)
{
    const auto block = s_.readBlock ? s_.readBlock(command) : std::nullopt;
    if (!block)
        return false;
    for (const auto& name : names)
        if (auto* parameter = s_.gateway.FindByName(name))
            applyBlock(*parameter, *block);
    return true;
}

bool ParameterAccess::PollGateway()
{
    return pollBlock(0x80, kGatewayPollNames);
}

bool ParameterAccess::PollGatewayInfo()
{
    return pollBlock(0xEE, kGatewayInfoNames);
}

bool ParameterAccess::ReadStaticParameters(int node)
{
    auto& list = listOf(node);
    CommandList colCommands;
    std::map<int, std::vector<clsSMBusParameter*>> byCommand;
    for (auto& parameter : list) {
        if (parameter.LoggingType != 1)
            continue;
        const auto number = convertToInt(parameter.ParameterNumber);
        if (!number)
            continue;
        const int command
            = static_cast<int>(*number) + (node > 0 ? (node - 1) * parameter.OffsetMultiplier : 0);
        const std::string key = "0x" + platform::byteHex(static_cast<std::uint8_t>(command));
        if (!colCommands.Item(key))
            colCommands.Add(parameter.DataType, static_cast<std::uint8_t>(command), key);
        byCommand[command].push_back(&parameter);
    }
    bool ok = true;
    int done = 0;
    for (const auto& command : colCommands) {
        s_.events.ReadAllParametersStatus(++done * 100 / colCommands.Count());
        auto& members = byCommand[command.CommandNumber];
        if (command.DataType == 0) {
            for (auto* parameter : members)
                ok = ReadParameter(*parameter) && ok;
            continue;
        }
        const auto block = s_.readBlock ? s_.readBlock(command.CommandNumber) : std::nullopt;
        if (!block) {
            ok = false;
            continue;
        }
        for (auto* parameter : members)
            applyBlock(*parameter, *block);
    }
    return ok;
}

} // namespace zv
