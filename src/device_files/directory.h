#pragma once
// The directory model: the device's directory, the pack configuration being moved between
// device and disk, and the items of a log definition.

#include "device_files/directory_element.h"
#include "params/dynamic_value.h"
#include "params/keyed_list.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zv {

class FileProtocol;
class CellWeftEvents;

// One file of a pack configuration.
struct PackProperties {
    bool Cloned = false; // read from the device (true) or from disk
    std::uint8_t FileNumber = 0;
    std::string FileName;
    std::uint16_t FileIndex = 0;
    std::uint16_t FileSize = 0;
    std::uint16_t FileChunk = 0;
    std::uint16_t FileLength = 0;
    std::uint16_t FileMaxBytes = 0;
    DynamicValue FileData; // upper-case hex text
    std::string ParamName;
    std::string ParamDataType;
    DynamicValue ParamValue;
};

// One item of a log definition.
struct clsLogFileElements {
    std::uint16_t FileElement = 0;
    std::uint16_t FileNumber = 0;
    std::string FileLabel;
    std::string FileDataType;
    std::string value;
};

class PackConfigurationFile : public KeyedList<PackProperties> {
public:
    PackProperties& Add(const std::string& fileName, const std::string& key = {});
};

class LogFile : public KeyedList<clsLogFileElements> {
public:
    clsLogFileElements& Add(const std::string& label, const std::string& key = {});
    int FileCount = 0;
};

// Writes one captured text to the demo capture: section "Data", the given key.
using DemoCapture = std::function<void(const std::string& key, const std::string& hexText)>;

class oDirectory {
public:
    zv::DirectoryElements DirectoryElements;
    zv::PackConfigurationFile PackConfigurationFile;
    zv::LogFile LogFile;

    // Reads the directory, one record a request; entries named "Error" are left out. With a
    // capture each raw record also goes to it as "Dir<i>". False on a failed read, the entries
    // read so far kept.
    [[nodiscard]] bool GetDir(FileProtocol& files, CellWeftEvents& events, const DemoCapture& capture = {});
    // Every record the last GetDir read, in the device's order, those named "Error" too.
    std::vector<clsDirectoryElements> RecordsRead;
};

[[nodiscard]] std::vector<std::uint8_t> hexToBytes(std::string_view hex);

} // namespace zv
