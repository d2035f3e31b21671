#include "driver/cellweft.h"

#include "core/globals.h"
#include "core/setting_limits.h"
#include "core/settings_table.h"
#include "link/cellweft_events.h"
#include "platform/event_loop.h"
#include "usb/usb_adapter_factory.h"

#include <filesystem>

namespace zv {

namespace {

constexpr int kReInitPauseMs = 1000;

int settingNumber(const platform::SettingsStore& store, std::string_view name, const std::string& folder)
{
    return static_cast<int>(readBoundedSetting(store, name, folder).value);
}

FileProtocolSettings fileSettings(const platform::SettingsStore& store, const std::string& folder)
{
    FileProtocolSettings settings;
    settings.T_cmd_to_sts = settingNumber(store, "T_cmd_to_sts", folder);
    settings.T_sts_to_sts = settingNumber(store, "T_sts_to_sts", folder);
    settings.MAX_BLOCK_TRANSFER = settingNumber(store, "MAX_BLOCK_TRANSFER", folder);
    settings.busyLimitMs = settingNumber(store, "T_busy_limit", folder);
    settings.requestLimitMs = settingNumber(store, "T_request_limit", folder);
    return settings;
}

std::function<std::unique_ptr<UsbAdapter>()> usbAdapterSource(const CellWeftServices& services)
{
    if (services.usbAdapter)
        return services.usbAdapter;
    return [iniFile = services.globals.gINIFile] { return makeUsbAdapter(readUsbAdapterSetting(iniFile)); };
}

} // namespace

clsCellWeft::clsCellWeft(CellWeftServices services, CellWeftEvents& events)
    : Link(DongleLinkServices { services.port, services.loop, events, services.modemLog, services.logEvent,
        [this](int word) { MapAlarmsToStatus(word); }, services.activeWindow,
        services.globals.gBreakOnError ? &services.dialogs : nullptr })
    , Bus(Link, services.loop, events)
    , Usb(UsbLinkServices { services.loop, services.dialogs, services.globals, usbAdapterSource(services),
          services.modemLog, services.endProgram,
          [this] {
              Link.setSMBusTXStatus("");
              Link.setSMBusRXStatus("");
          } })
    , Conversion(services.dialogs, NumberLocale { services.globals.gDecimalSep })
    , Config(services.dialogs, GatewayParameters, nodes, Directory.DirectoryElements)
    , Files(FileProtocolServices { Link, services.loop, events, services.dialogs,
                [this] { return SMBus_ReInit(); }, services.globals.gBreakOnError, services.demo,
                [this] { return usbTransport() ? &Usb : nullptr; } },
          fileSettings(services.settings, services.programFolder))
    , Transfer(Files, Directory, GatewayParameters, nodes, Conversion, services.globals.gDemo)
    , Parameters(ParameterAccessServices { Transfer, Files, Directory, GatewayParameters, nodes, Conversion,
          events, services.dialogs, [this](std::uint8_t command) { return readBlock(command); },
          services.readWriteLog, services.splashStatus, services.mainWindowActive })
    , s_(std::move(services))
    , events_(events)
{
    Link.SMBusWriteAddress = s_.globals.SMBusWriteAddress ? s_.globals.SMBusWriteAddress : 0x16;
    Link.BaudIndex = s_.globals.settings.Baud;
    Link.ClockIndex = s_.globals.settings.Clock;
    Link.SMBusCommPort = s_.globals.settings.CommPort;
    Parameters.display.TemperatureUnits = s_.globals.settings.TemperatureUnits;
    Parameters.display.locale = NumberLocale { s_.globals.gDecimalSep };
    Config.locale = Parameters.display.locale;
    Config.packParameterMode = s_.globals.gAltConfigPrompt;
    Usb.deadline = &Link.deadline;
    // A pace or bound out of its range was refused for its default: said once, in the event log.
    if (s_.logEvent)
        for (const auto& problem : settingLimitProblems(s_.settings, s_.programFolder))
            s_.logEvent(problem);
}

int clsCellWeft::SMBus_Init()
{
    return Link.SMBus_Init();
}

bool clsCellWeft::usbTransport() const
{
    return s_.globals.usbTransport();
}

bool clsCellWeft::GetScaling()
{
    const bool usb = usbTransport();
    if (usb ? !Usb.usbGetScaling() : !Bus.GetScaling())
        return false;
    const Scaling& scaling = usb ? Usb.scaling() : Bus.scaling();
    Parameters.display.VScale = scaling.VScale;
    Parameters.display.IPScale = scaling.IPScale;
    Parameters.display.CapacityMode = scaling.CapacityMode;
    return true;
}

std::optional<std::vector<std::uint8_t>> clsCellWeft::readBlock(std::uint8_t command)
{
    if (!usbTransport())
        return Bus.SMBus_ReadBlock(command);
    std::vector<std::uint8_t> data;
    if (Usb.usbBlockRead(Usb.targetAddress(), command, data) != kUsbOk)
        return std::nullopt;
    return data;
}

bool clsCellWeft::GetDir(const DemoCapture& capture)
{
    const bool ok = Directory.GetDir(Files, events_, capture);
    if (ok)
        Parameters.CountParametersPerFile();
    return ok;
}

int clsCellWeft::readConfig(int which)
{
    const int result = Config.readConfig(which);
    // The alarm broadcasts are mapped by Alarm.cfg, read with the gateway file. Without the file
    // no alarm bit is mapped.
    if (which != kCellConfigFile) {
        Config.AlarmConfigFileName = s_.programFolder + "/Configuration Files/Alarm.cfg";
        if (std::filesystem::exists(Config.AlarmConfigFileName))
            (void)Config.ReadAlarmConfiguration();
        Parameters.AlarmMap = Config.AlarmMap;
    }
    Parameters.CountParametersPerFile();
    return result;
}

bool clsCellWeft::reInit(bool quiet)
{
    if (s_.globals.gDemo)
        return false;
    const auto info = [&](const std::string& text) {
        if (!quiet && s_.infoStatus && s_.mainWindowActive && s_.mainWindowActive())
            s_.infoStatus(text);
    };
    if (usbTransport()) {
        if (Usb.usbUnlockDevice() != 0)
            info("Error: Unlocking the target failed.");
        if (!Usb.usbEnableUlmarCommandSet())
            info("Error: Enabling command set failed.");
    } else if (!Link.portOpen()) {
        // The device node went away and closed the port: open it again, which also resets and
        // configures the dongle.
        if (Link.SMBus_Init() != kLinkUp) {
            info("Lost of communications between the PC and Dongle");
            return false;
        }
        if (Bus.UnlockDevice() != 0)
            info("The dongle was detected but the hardware is not responding. Error: Unlock failed.");
        if (!Bus.EnableUlmarCommandSet())
            info("The dongle was detected but the hardware is not responding. Error: Enabling command set "
                 "failed.");
    } else {
        Link.ResetHLK();
        if (!Link.ConfigureHLK()) {
            info("Lost of communications between the PC and Dongle");
            return false;
        }
        if (Bus.UnlockDevice() != 0)
            info("The dongle was detected but the hardware is not responding. Error: Unlock failed.");
        if (!Bus.EnableUlmarCommandSet())
            info("The dongle was detected but the hardware is not responding. Error: Enabling command set "
                 "failed.");
    }
    if (s_.mainWindowActive && s_.mainWindowActive() && s_.linkRecovered)
        s_.linkRecovered();
    return true;
}

bool clsCellWeft::RecoverLink()
{
    if (s_.globals.gDemo)
        return true;
    if (usbTransport())
        return Usb.reconnect() && Usb.usbUnlockDevice() == 0 && Usb.usbEnableUlmarCommandSet();
    return Link.SMBus_Init() == kLinkUp && Bus.UnlockDevice() == 0 && Bus.EnableUlmarCommandSet();
}

bool clsCellWeft::SMBus_ReInit()
{
    if (s_.globals.gDemo)
        return false;
    s_.loop.wait(kReInitPauseMs);
    return reInit(false);
}

bool clsCellWeft::SMBus_ReInit2()
{
    return reInit(true);
}

} // namespace zv
