#pragma once
// clsCellWeft, the one driver object: a facade over the dongle link, the SMBus transactions,
// the USB adapter link, the device file protocol, the directory, the configuration readers, the conversions
// and the parameter access. It raises its events through CellWeftEvents and never touches a window.

#include "device_files/directory.h"
#include "device_files/file_protocol.h"
#include "driver/file_transfer.h"
#include "driver/parameter_access.h"
#include "link/dongle_link.h"
#include "link/smbus_transactions.h"
#include "params/configuration_reader.h"
#include "params/raw_conversion.h"
#include "params/smbus_parameter.h"
#include "usb/usb_link.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zv::platform {
class Dialogs;
class EventLoop;
class SerialPort;
class SettingsStore;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class CellWeftEvents;

// What the driver needs of the application around it.
struct CellWeftServices {
    platform::SerialPort& port;
    platform::EventLoop& loop;
    platform::Dialogs& dialogs;
    const platform::SettingsStore& settings;
    AppGlobals& globals;
    std::string programFolder;
    std::function<void(const std::string&, bool)> modemLog; // log_ModemEvent
    std::function<void(const std::string&)> logEvent; // LogEvent
    std::function<void(std::string_view, std::string_view, std::string_view, std::string_view)> readWriteLog;
    std::function<void(const std::string&)> infoStatus; // the main window's "Info" panel
    std::function<void(const std::string&)> splashStatus; // the splash status line
    std::function<bool()> mainWindowActive;
    std::function<UnsolicitedTarget()> activeWindow;
    std::function<void()> linkRecovered; // GetUserLevelFromHardware after SMBus_ReInit
    DemoFileSource demo; // set in demo mode
    // The USB adapter (gTransport 1); when empty, the one that UsbAdapter in Zentavia.ini names.
    std::function<std::unique_ptr<UsbAdapter>()> usbAdapter;
    // Ends the program when the USB adapter is missing: releases gMain, unloads the forms.
    std::function<void()> endProgram;
};

class clsCellWeft {
public:
    clsCellWeft(CellWeftServices services, CellWeftEvents& events);
    clsCellWeft(const clsCellWeft&) = delete;
    clsCellWeft& operator=(const clsCellWeft&) = delete;

    // Link and bus. SMBus_ReInit, SMBus_ReInit2 and GetScaling take the transport of gTransport.
    [[nodiscard]] int SMBus_Init();
    [[nodiscard]] bool SMBus_ReInit();
    [[nodiscard]] bool SMBus_ReInit2();
    // A link that was lost, brought back: the port reopened (or a new adapter object), the dongle
    // reset and configured, the device unlocked and its command set opened. Quiet: the caller
    // reports a failure.
    [[nodiscard]] bool RecoverLink();
    [[nodiscard]] bool GetScaling();
    [[nodiscard]] bool usbTransport() const;
    // SMBus block read of the transport in use.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> readBlock(std::uint8_t command);

    // Device files.
    [[nodiscard]] FileReply FileAccessRequest(const FileRequest& request)
    {
        return Files.FileAccessRequest(request);
    }
    [[nodiscard]] bool GetFile(int file, std::string& text) { return Transfer.GetFile(file, text); }
    [[nodiscard]] bool PutFile(int file, const std::vector<std::uint8_t>& data)
    {
        return Transfer.PutFile(file, data);
    }
    [[nodiscard]] bool WriteCommandFile(const std::string& commandHex, int writeWait = 0)
    {
        return Files.WriteCommandFile(commandHex, writeWait);
    }
    [[nodiscard]] bool GetDir(const DemoCapture& capture = {});

    // Parameters.
    [[nodiscard]] bool GetAllValues(const DemoCapture& capture = {})
    {
        return Parameters.GetAllValues(capture);
    }
    [[nodiscard]] bool ReadParameter(std::string_view name, int node)
    {
        return Parameters.ReadParameter(name, node);
    }
    [[nodiscard]] bool WriteParameter(std::string_view name, int node)
    {
        return Parameters.WriteParameter(name, node);
    }
    [[nodiscard]] ParameterPlace FindParameter(std::string_view key, int node, int fileIndex = 0) const
    {
        return Parameters.FindParameter(key, node, fileIndex);
    }
    [[nodiscard]] bool RebuildLAN(bool quiet) { return Parameters.RebuildLAN(quiet); }
    int MapAlarmsToStatus(int alarmWord) { return Parameters.MapAlarmsToStatus(alarmWord); }
    [[nodiscard]] int readConfig(int which);

    // The parts, in the order they are built.
    DongleLink Link;
    SmbusTransactions Bus;
    UsbLink Usb;
    ParameterList GatewayParameters;
    NodeList nodes;
    oDirectory Directory;
    ValueConversion Conversion;
    ConfigurationReader Config;
    FileProtocol Files;
    FileTransfer Transfer;
    ParameterAccess Parameters;

    int Status() const { return Link.Status; }

private:
    [[nodiscard]] bool reInit(bool quiet);

    CellWeftServices s_;
    CellWeftEvents& events_;
};

} // namespace zv
