#pragma once
// Moving parameter values between the device and the parameter objects: read and write by
// parameter, the read of the whole model, the cell list rebuild, the alarm word, and the SMBus
// block polls of the gateway.

#include "params/alarm_config.h"
#include "params/display_settings.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv::platform {
class Dialogs;
}

namespace zv {

class CellWeftEvents;
class FileProtocol;
class FileTransfer;
class NodeList;
class ParameterList;
class SmbusTransactions;
class ValueConversion;
class clsSMBusParameter;
class oDirectory;

inline constexpr int kHistoryFileSkippedByCapture = 34;

struct ParameterAccessServices {
    FileTransfer& transfer;
    FileProtocol& files;
    oDirectory& directory;
    ParameterList& gateway;
    NodeList& nodes;
    const ValueConversion& conversion;
    CellWeftEvents& events;
    platform::Dialogs& dialogs;
    // The SMBus block read of the active transport.
    std::function<std::optional<std::vector<std::uint8_t>>(std::uint8_t)> readBlock;
    // ReadWriteLog(kind, name, number, value).
    std::function<void(std::string_view, std::string_view, std::string_view, std::string_view)> readWriteLog;
    // The splash status line, for "Rebuilding LAN...".
    std::function<void(const std::string&)> splashStatus;
    // True while the main window is the active form.
    std::function<bool()> mainWindowActive;
};

// Where FindParameter found a parameter.
struct ParameterPlace {
    clsSMBusParameter* parameter = nullptr;
    std::string commandNumber;
    int fileIndex = 0;
    int fileNumber = 0;
};

class ParameterAccess {
public:
    explicit ParameterAccess(ParameterAccessServices services);

    // Display state the conversions use (scaling, temperature units, locale).
    DisplaySettings display;
    AlarmMapTable AlarmMap {};
    int UserAccessLevel = 0;
    std::vector<int> ParametersPerFile; // by directory position, 1-based (index 0 unused)
    bool ParametersWritten = false;
    bool gCellsMatch = false;
    int gNodeCount = 0;

    // A name (first case-insensitive match) or, for a numeric key, the parameter at file `key`
    // and element fileIndex. Node 0: the gateway; any other node: the list of node 1.
    [[nodiscard]] ParameterPlace FindParameter(std::string_view key, int node, int fileIndex = 0) const;
    [[nodiscard]] bool ReadParameter(clsSMBusParameter& parameter);
    [[nodiscard]] bool ReadParameter(std::string_view name, int node);
    [[nodiscard]] bool WriteParameter(clsSMBusParameter& parameter);
    [[nodiscard]] bool WriteParameter(std::string_view name, int node);
    // Reads every file the user may read; with a capture every file's text goes to it as
    // "File<n>" (file 34 only when parameters live in it).
    [[nodiscard]] bool GetAllValues(
        const std::function<void(const std::string&, const std::string&)>& capture = {});
    [[nodiscard]] bool RebuildLAN(bool quiet);
    int MapAlarmsToStatus(int alarmWord);
    [[nodiscard]] bool PollGateway();
    [[nodiscard]] bool PollGatewayInfo();
    [[nodiscard]] bool ReadStaticParameters(int node);
    void CountParametersPerFile();

    // The raw hex text NewValue is written as.
    [[nodiscard]] std::string rawText(const clsSMBusParameter& parameter) const;

private:
    [[nodiscard]] ParameterList& listOf(int node) const;
    [[nodiscard]] bool pollBlock(std::uint8_t command, const std::vector<std::string>& names);
    void applyBlock(clsSMBusParameter& parameter, const std::vector<std::uint8_t>& block) const;
    [[nodiscard]] std::optional<int> readCount(const char* name);

    ParameterAccessServices s_;
};

} // namespace zv
