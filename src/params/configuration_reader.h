#pragma once
// Reads the gateway and cell configuration files into the parameter lists, writes them back,
// and reads Alarm.cfg into AlarmMap. Failures are shown in the system's boxes and told by
// result codes: 0 read, 2 read with copies to more nodes, 3 an object missing (not reported),
// 4 any other error (reported).

#include "device_files/directory_element.h"
#include "params/alarm_config.h"
#include "params/number_text.h"
#include "params/smbus_parameter.h"
#include "platform/dialogs.h"

#include <cstdint>
#include <iosfwd>
#include <string>

namespace zv {

class RuntimeError;

enum ConfigResult : int {
    kConfigRead = 0,
    kConfigReadCopiesFollow = 2,
    kConfigObjectMissing = 3,
    kConfigFailed = 4,
};

// Which files readConfig and writeConfig handle.
enum ConfigSelection : int { kBothConfigFiles = 0, kGatewayConfigFile = 1, kCellConfigFile = 2 };

// Parameter numbers above this take their levels from the directory entry of their file.
inline constexpr std::int64_t kLastCommandParameterNumber = 0x23;

class ConfigurationReader {
public:
    ConfigurationReader(platform::Dialogs& dialogs, ParameterList& gatewayParameters, NodeList& nodes,
        const DirectoryElements& directory);

    std::string GatewayConfigFileName;
    std::string NodeConfigFileName;
    std::string AlarmConfigFileName; // program folder + "/Configuration Files/Alarm.cfg"
    bool packParameterMode = false; // the /pp flag: errors name a selected file
    NumberLocale locale;
    std::int32_t ConfigVersion = 0;
    AlarmMapTable AlarmMap {};

    // which: kBothConfigFiles, kGatewayConfigFile or kCellConfigFile.
    [[nodiscard]] int readConfig(int which);
    [[nodiscard]] int writeConfig(int which);
    [[nodiscard]] int ReadConfigurationFiles() { return readConfig(kBothConfigFiles); }
    // False after a reported failure; AlarmMap then holds what was read before it.
    [[nodiscard]] bool ReadAlarmConfiguration();

    enum class FileKind { Gateway, Cell };
    // The parsing of readConfig on an open stream: fills the gateway list or node 1, shows the
    // box of a failure and gives the result code.
    [[nodiscard]] int parseConfigText(std::istream& in, FileKind kind);
    // The reading of ReadAlarmConfiguration on an open stream.
    [[nodiscard]] bool readAlarmText(std::istream& in);

private:
    [[nodiscard]] int parseFile(const std::string& path, FileKind kind);
    void parseLines(std::istream& in, ParameterList& list, FileKind kind);
    void applyDirectoryLevels(clsSMBusParameter& parameter) const;
    [[nodiscard]] int writeFile(const std::string& path, FileKind kind) const;
    // Shows the box of the error and gives the result code. The /pp box stands only for the
    // parameter files.
    int report(const RuntimeError& error, bool parameterFile = true) const;
    // The error with the path of its file after its description.
    [[nodiscard]] static RuntimeError namingFile(const RuntimeError& error, const std::string& path);

    platform::Dialogs& dialogs_;
    ParameterList& gatewayParameters_;
    NodeList& nodes_;
    const DirectoryElements& directory_;
    std::string readingFile_; // the file parseFile reads, named by the error of a line
};

} // namespace zv
