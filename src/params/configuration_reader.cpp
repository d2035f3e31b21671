#include "params/configuration_reader.h"

#include "params/config_line.h"
#include "params/hex_text.h"
#include "params/runtime_error.h"

#include <filesystem>
#include <fstream>
#include <istream>

namespace zv {
namespace {

constexpr const char* kMissingFileText = "A required configuration file was not found\r\n"
                                         "Please contact Norvale Systems.";
const std::string kMissingFileLine = "A required configuration file was not found\r\n";
constexpr const char* kContactLine = "Please contact Norvale Systems.";
constexpr const char* kSelectedFileText
    = "Error reading the select file. Please select a valid configuration file";

std::ifstream openForReading(const std::string& path)
{
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        throw RuntimeError::fileNotFound();
    }
    std::ifstream in(path, std::ios::binary);
    if (!in || std::filesystem::is_directory(path, ignored)) {
        throw RuntimeError::pathFileAccess();
    }
    return in;
}

// A line without its line end (LF or CR LF).
bool readLine(std::istream& in, std::string& line)
{
    if (!std::getline(in, line)) {
        return false;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return true;
}

} // namespace

ConfigurationReader::ConfigurationReader(platform::Dialogs& dialogs, ParameterList& gatewayParameters,
    NodeList& nodes, const DirectoryElements& directory)
    : dialogs_(dialogs)
    , gatewayParameters_(gatewayParameters)
    , nodes_(nodes)
    , directory_(directory)
{
    AlarmMap.fill(kNoAlarmMapping);
}

int ConfigurationReader::readConfig(int which)
{
    if (which == kBothConfigFiles || which == kGatewayConfigFile) {
        gatewayParameters_.Clear();
        const int result = parseFile(GatewayConfigFileName, FileKind::Gateway);
        if (result != kConfigRead) {
            return result;
        }
    }
    if (which == kBothConfigFiles || which == kCellConfigFile) {
        for (auto& node : nodes_) {
            node.NodeParameters.Clear();
        }
        const int result = parseFile(NodeConfigFileName, FileKind::Cell);
        if (result > kConfigReadCopiesFollow) {
            return result;
        }
        for (int i = 2; i <= nodes_.Count(); ++i) {
            nodes_.Copy(1, i);
        }
        return result;
    }
    return kConfigRead;
}

int ConfigurationReader::parseFile(const std::string& path, FileKind kind)
{
    std::ifstream in;
    try {
        in = openForReading(path);
    } catch (const RuntimeError& error) {
        return report(namingFile(error, path));
    }
    readingFile_ = path;
    const int result = parseConfigText(in, kind);
    readingFile_.clear();
    return result;
}

int ConfigurationReader::parseConfigText(std::istream& in, FileKind kind)
{
    try {
        ParameterList* list = &gatewayParameters_;
        if (kind == FileKind::Cell) {
            clsNode* firstNode = nodes_.Item(1);
            if (firstNode == nullptr) {
                throw RuntimeError::objectMissing();
            }
            list = &firstNode->NodeParameters;
        }
        parseLines(in, *list, kind);
        if (in.bad()) {
            throw RuntimeError::pathFileAccess();
        }
        return kind == FileKind::Cell && 1 < nodes_.Count() ? kConfigReadCopiesFollow : kConfigRead;
    } catch (const RuntimeError& error) {
        return report(error);
    }
}

void ConfigurationReader::parseLines(std::istream& in, ParameterList& list, FileKind kind)
{
    int runningNumber = 1;
    int lineNumber = 0;
    std::string line;
    while (readLine(in, line)) {
        ++lineNumber;
        if (isConfigComment(line)) {
            if (const auto version = configVersionOf(line)) {
                ConfigVersion = *version;
            }
            continue;
        }
        clsSMBusParameter& parameter = list.Add(std::to_string(runningNumber));
        try {
            readParameterColumns(line, parameter, locale);
        } catch (const RuntimeError& error) {
            // The error names the file, the line and what it holds, so that a corrupt file is
            // never taken for a fault of the hardware.
            constexpr std::size_t kShownChars = 60;
            const std::string where = (readingFile_.empty() ? std::string("line ") : readingFile_ + ", line ")
                + std::to_string(lineNumber);
            throw RuntimeError(error.number(),
                std::string(error.what()) + " in " + where + ": \"" + line.substr(0, kShownChars)
                    + (line.size() > kShownChars ? "...\"" : "\""));
        }
        if (kind == FileKind::Gateway) {
            applyDirectoryLevels(parameter);
        }
        ++runningNumber;
    }
}

void ConfigurationReader::applyDirectoryLevels(clsSMBusParameter& parameter) const
{
    const auto number = convertToInt(parameter.ParameterNumber);
    if (!number || *number <= kLastCommandParameterNumber) {
        return;
    }
    const clsDirectoryElements* entry = directory_.fileEntry(parameter.FileNumber);
    if (entry == nullptr) {
        throw RuntimeError::objectMissing();
    }
    parameter.ReadPrivilegeLevel = static_cast<std::uint8_t>(entry->readLevel());
    parameter.WritePrivilegeLevel = static_cast<std::uint8_t>(entry->writeLevel());
}

int ConfigurationReader::writeConfig(int which)
{
    if (which == kBothConfigFiles || which == kGatewayConfigFile) {
        const int result = writeFile(GatewayConfigFileName, FileKind::Gateway);
        if (result != kConfigRead) {
            return result;
        }
    }
    if (which == kBothConfigFiles || which == kCellConfigFile) {
        return writeFile(NodeConfigFileName, FileKind::Cell);
    }
    return kConfigRead;
}

int ConfigurationReader::writeFile(const std::string& path, FileKind kind) const
{
    try {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        if (!out) {
            throw RuntimeError::pathFileAccess();
        }
        const auto writeList = [&](const ParameterList& list) {
            for (const auto& parameter : list) {
                out << parameterColumns(parameter) << "\r\n";
            }
        };
        if (kind == FileKind::Gateway) {
            writeList(gatewayParameters_);
        } else {
            bool first = true;
            for (const auto& node : nodes_) {
                if (!first) {
                    out << "#NextNode\r\n";
                }
                first = false;
                writeList(node.NodeParameters);
            }
        }
        out.flush();
        if (!out) {
            throw RuntimeError::pathFileAccess();
        }
        return kConfigRead;
    } catch (const RuntimeError& error) {
        return report(error);
    }
}

bool ConfigurationReader::ReadAlarmConfiguration()
{
    AlarmMap.fill(kNoAlarmMapping);
    std::ifstream in;
    try {
        in = openForReading(AlarmConfigFileName);
    } catch (const RuntimeError& error) {
        report(namingFile(error, AlarmConfigFileName), false);
        return false;
    }
    return readAlarmText(in);
}

bool ConfigurationReader::readAlarmText(std::istream& in)
{
    AlarmMap.fill(kNoAlarmMapping);
    std::string line;
    while (readLine(in, line)) {
        if (const auto mapping = parseAlarmLine(line)) {
            AlarmMap[static_cast<std::size_t>(mapping->source)]
                = static_cast<std::int16_t>(mapping->destination);
        }
    }
    if (in.bad()) {
        report(RuntimeError::pathFileAccess(), false);
        return false;
    }
    return true;
}

RuntimeError ConfigurationReader::namingFile(const RuntimeError& error, const std::string& path)
{
    return { error.number(), std::string(error.what()) + ": " + path };
}

int ConfigurationReader::report(const RuntimeError& error, bool parameterFile) const
{
    using platform::Buttons;
    using platform::Icon;
    if (error.number() == kErrorObjectMissing) {
        return kConfigObjectMissing;
    }
    if (error.number() == kErrorFileNotFound) {
        // The error's description ends with the path of the file that is missing.
        const std::string description = error.what();
        const auto path = description.find(": ");
        dialogs_.messageBox(path == std::string::npos
                ? kMissingFileText
                : kMissingFileLine + description.substr(path + 2) + "\r\n" + kContactLine,
            Buttons::OK, Icon::Critical, "");
    } else if (packParameterMode && parameterFile) {
        dialogs_.messageBox(kSelectedFileText, Buttons::OK, Icon::None, "File Error");
    } else {
        dialogs_.messageBox("Error Description: " + std::string(error.what()) + "\r\n"
                + "Error Number: " + std::to_string(error.number()),
            Buttons::OK, Icon::Critical, "Error");
    }
    return kConfigFailed;
}

} // namespace zv
