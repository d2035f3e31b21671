#include "cli/cli_session.h"

#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "cli/cli_error.h"
#include "cli/directory_cache.h"
#include "connection/port_dialog_services.h"
#include "core/paths.h"
#include "core/target_table.h"
#include "driver/target_operations.h"
#include "link/smbus_transactions.h"
#include "params/configuration_reader.h"
#include "platform/ini_file.h"
#include "platform/port_devices.h"
#include "platform/serial_port.h"
#include "platform/val.h"
#include "startup/frm_splash.h"
#include "startup/target_detection.h"
#include "startup/target_globals.h"
#include "usb/usb_adapter_factory.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <ostream>

namespace zv::cli {

namespace {

using detect::kCommunicationError;
using detect::kNoAnswer;
constexpr int kCommandSetClosed = 0;

std::string resultCode(int code)
{
    char text[32];
    std::snprintf(text, sizeof text, "Result code 0x%04X", code);
    return text;
}

// The text of the splash's fault screen with the detection result it comes with.
CliError startupFault(const std::string& text, int code)
{
    return CliError(text + "\n" + resultCode(code));
}

CliError cannotConnect(int code)
{
    return startupFault(faultText(StartupFault::UnableToConnect, "\n"), code);
}

CliError communicationFailed(int code)
{
    return startupFault(faultText(StartupFault::CommunicationError, "\n"), code);
}

// A port that cannot be opened says why in its own words; a dongle that does not answer, or
// another failure, is told as the connection dialogs tell it.
CliError linkFailure(int number, const std::string& portText)
{
    if (!portText.empty() && number != kDongleNotAnswering)
        return CliError(std::string(kConnectionFailedTitle) + "\n" + portText);
    const auto texts = connectFailureTexts(number, false);
    std::string description = texts.description;
    for (auto at = description.find("\r\n"); at != std::string::npos; at = description.find("\r\n", at))
        description.erase(at, 1);
    return CliError(texts.title + "\n" + description);
}

CliError configurationFault()
{
    return startupFault(faultText(StartupFault::ConfigurationFiles, "\n"), kCommunicationError);
}

bool isPortNumber(const std::string& text)
{
    return !text.empty() && text.size() < 6
        && std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); });
}

void rejectSealed(int level)
{
    if (level == 0 || level == 1)
        throw startupFault(faultText(StartupFault::Sealed), detect::kSealed);
}

} // namespace

CliSession::CliSession(SessionServices services, LinkOptions options)
    : s_(std::move(services))
    , options_(std::move(options))
{
    readSetup();
}

CliSession::~CliSession()
{
    disconnect();
}

void CliSession::readSetup()
{
    globals_.gINIFile = joinPath(s_.programFolder, "Zentavia.ini");
    globals_.gDemoFile = joinPath(s_.programFolder, "demo.ini");
    globals_.gDemo = options_.demo;
    const auto ini = platform::IniFile::load(globals_.gINIFile);
    // --usb takes the USB adapter, --port the dongle; else Zentavia.ini decides.
    globals_.gTransport = static_cast<int>(Val(ini.value("Setup", "Communications")));
    if (!options_.usbDevice.empty())
        globals_.gTransport = kTransportUsbAdapter;
    else if (!options_.port.empty() && globals_.usbTransport())
        globals_.gTransport = 0;
    const int address = options_.address.value_or(static_cast<int>(Val(ini.value("Setup", "Address"))));
    if (address > 0)
        globals_.setAddress(address);
    globals_.settings = readStartupSettings(s_.settings, s_.programFolder);
}

void CliSession::choosePort()
{
    if (options_.port.empty())
        return;
    if (isPortNumber(options_.port)) {
        const int number = std::stoi(options_.port);
        if (number < 1)
            throw CliError("--port: a port number starts at 1", kExitUsage);
        globals_.settings.CommPort = number;
        return;
    }
    // A device path stands in for the configured port number for this run.
    s_.settings.setValue(std::string(platform::kPortsKeyPath),
        "COM" + std::to_string(globals_.settings.CommPort), options_.port);
}

DemoFileSource CliSession::loadCapture() const
{
    if (!std::filesystem::exists(globals_.gDemoFile))
        throw CliError("The demonstration file is missing. Aborting demo mode startup.");
    auto capture = std::make_shared<platform::IniFile>(platform::IniFile::load(globals_.gDemoFile));
    return [capture](const std::string& key) { return capture->value("Data", key); };
}

void CliSession::createDriver()
{
    CellWeftServices services { s_.port, s_.loop, s_.dialogs, s_.settings, globals_, s_.programFolder };
    if (globals_.gDemo)
        services.demo = loadCapture();
    if (globals_.usbTransport()) {
        const auto setting
            = options_.usbDevice.empty() ? readUsbAdapterSetting(globals_.gINIFile) : options_.usbDevice;
        services.usbAdapter = [factory = s_.usbAdapters, setting] {
            return factory ? factory(setting) : makeUsbAdapter(setting);
        };
    }
    services.endProgram = [] {}; // a missing adapter ends this run through openAdapter
    main_ = std::make_unique<clsMain>(std::move(services), s_.dialogs);
    main_->hooks.fileAccessStatus = [this](const std::string& message, int file) {
        s_.diagnostics << "File " << file << ": " << message << '\n';
    };
}

clsMain& CliSession::main()
{
    connect();
    return *main_;
}

TargetOperations CliSession::target()
{
    return TargetOperations(driver());
}

void CliSession::openAdapter()
{
    auto& usb = driver().Usb;
    (void)usb.usbOpen();
    if (!usb.opened())
        throw CliError(faultText(StartupFault::CommunicationError, "\n"));
}

void CliSession::openLink()
{
    auto& d = driver();
    const bool usb = globals_.usbTransport();
    if (usb) {
        openAdapter();
    } else if (const int result = d.SMBus_Init(); result != kLinkUp) {
        throw linkFailure(result, s_.port.errorText());
    }
    linkUp_ = true;
    auto ops = target();
    if (const int result = ops.UnlockDevice(); result != 0)
        throw cannotConnect(usb ? detect::usbUnlockResult(result) : kNoAnswer);
    targetAnswered_ = true;
    if (!ops.EnableUlmarCommandSet())
        throw communicationFailed(kCommandSetClosed);
    (void)d.GetScaling();
    const int state = ops.GetHardwareState();
    if (state == -1)
        throw communicationFailed(kCommunicationError);
    if ((state == kSystemLoaderState || state == kApplicationLoaderState)
        && !options_.acceptLoader) // a loader runs
        throw startupFault(faultHeadline(StartupFault::SystemLoader), state);
}

void CliSession::connect()
{
    if (connected_)
        return;
    if (!globals_.gDemo && !globals_.usbTransport())
        choosePort();
    createDriver();
    if (!globals_.gDemo)
        openLink();
    connected_ = true;
}

std::string CliSession::demoTargetId() const
{
    const auto cipher = platform::IniFile::load(globals_.gDemoFile).value("Target", "ID");
    return modCryptText::DecryptText(cipher, kPackKey);
}

void CliSession::identify()
{
    connect();
    if (identified_)
        return;
    auto& d = driver();
    if (globals_.gDemo) {
        globals_.gTargetID = demoTargetId();
    } else {
        const int id = target().GetTargetID();
        if (id < 0)
            throw cannotConnect(kNoAnswer);
        globals_.gTargetID = targetIdText(id);
    }
    const auto record = findTargetById(readTargetTable(globals_.gINIFile), globals_.gTargetID);
    if (const auto problem = targetTableProblem(globals_.gINIFile); !record && !problem.empty())
        throw startupFault(problem, detect::kUnknownTarget);
    if (!record)
        throw startupFault("The attached device is reporting an unsupported target application.\nTargetID = "
                + globals_.gTargetID,
            detect::kUnknownTarget);
    applyTarget(globals_, *record);
    d.Config.GatewayConfigFileName = gatewayConfigFile(*record, s_.programFolder);
    d.Config.NodeConfigFileName = nodeConfigFile(*record, s_.programFolder);
    if (!globals_.gDemo && globals_.gTargetID == "1003")
        if (const int level = target().GetAccessLevel(); level >= 0) {
            if (options_.password)
                (void)unseal(level);
            else
                rejectSealed(level);
        }
    identified_ = true;
}

bool CliSession::readCachedDirectory()
{
    if (options_.directoryCache.empty() || globals_.gDemo)
        return false;
    std::string targetId = globals_.gTargetID;
    if (targetId.empty()) {
        const int id = target().GetTargetID();
        if (id < 0)
            return false;
        targetId = targetIdText(id);
    }
    const DirectoryCache cache(options_.directoryCache);
    if (!cache.knows(targetId))
        return false;
    auto& d = driver();
    const FileReply first = d.FileAccessRequest({ .file = 0, .offset = 0, .count = 1 });
    if (!first.ok)
        throw communicationFailed(kCommunicationError);
    const auto records = cache.find(targetId, first.text);
    if (!records || !loadDirectory(d.Directory, *records))
        return false;
    d.Parameters.CountParametersPerFile();
    return true;
}

void CliSession::readDirectory()
{
    connect();
    if (directoryRead_)
        return;
    if (!readCachedDirectory()) {
        std::vector<std::string> records;
        const bool ok = driver().GetDir([&](const std::string& key, const std::string& text) {
            if (key.starts_with("Dir"))
                records.push_back(text);
        });
        if (!ok)
            throw communicationFailed(kCommunicationError);
        if (!options_.directoryCache.empty() && !globals_.gDemo)
            freshDirectory_ = std::move(records);
    }
    directoryRead_ = true;
}

void CliSession::storeDirectory()
{
    // Stored once the firmware is known, that is with the configuration loaded.
    if (freshDirectory_.empty())
        return;
    const std::string firmware
        = std::to_string(globals_.gFirmwareVersion) + "." + std::to_string(globals_.gFirmwareBuild);
    DirectoryCache(options_.directoryCache).store(globals_.gTargetID, firmware, freshDirectory_);
    freshDirectory_.clear();
}

void CliSession::loadConfiguration()
{
    identify();
    readDirectory();
    if (configured_)
        return;
    auto& d = driver();
    if (d.readConfig(kGatewayConfigFile) != kConfigRead)
        throw configurationFault();
    std::string text;
    for (const int file : { 9, 5, 11, 18 })
        (void)d.GetFile(file, text);
    const int level = static_cast<int>(gatewayNumber(d, "Access Level").value_or(-1));
    d.Parameters.UserAccessLevel = level;
    if (globals_.gTargetID == "1001" || globals_.gTargetID == "1002") {
        if (options_.password)
            d.Parameters.UserAccessLevel = unseal(level);
        else
            rejectSealed(level);
    }
    readTargetGlobals(d, globals_);
    d.Link.Status = 0;
    (void)d.RebuildLAN(true);
    globals_.gCellsMatch = d.Parameters.gCellsMatch;
    globals_.gNodeCount = static_cast<std::uint8_t>(d.nodes.Count());
    if (d.readConfig(kCellConfigFile) > kConfigReadCopiesFollow)
        throw configurationFault();
    configured_ = true;
    storeDirectory();
}

void CliSession::detect()
{
    loadConfiguration();
}

void CliSession::disconnect()
{
    if (!main_ || globals_.gDemo)
        return;
    auto& d = driver();
    if (targetAnswered_) {
        auto ops = target();
        (void)ops.DisableUlmarCommandSet();
        (void)ops.LockDevice();
    }
    if (linkUp_ && globals_.usbTransport())
        d.Usb.usbRelease();
    else if (linkUp_)
        d.Link.ResetHLK();
    linkUp_ = targetAnswered_ = connected_ = false;
}

void CliSession::redetect()
{
    if (globals_.gDemo)
        return;
    auto& d = driver();
    (void)d.SMBus_ReInit();
    auto ops = target();
    if (ops.UnlockDevice() != 0 || !ops.EnableUlmarCommandSet())
        throw communicationFailed(kCommandSetClosed);
    (void)d.GetScaling();
    identified_ = directoryRead_ = configured_ = false;
    loadConfiguration();
}

clsCellWeft& CliSession::driver()
{
    if (!main_)
        throw std::logic_error("the session has no driver before connect()");
    return main_->CellWeft();
}

int CliSession::userAccessLevel()
{
    return driver().Parameters.UserAccessLevel;
}

} // namespace zv::cli
