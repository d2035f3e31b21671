#include "firmware_loader/firmware_loader.h"

#include "core/globals.h"
#include "core/target_table.h"
#include "driver/cls_main.h"
#include "driver/target_operations.h"
#include "firmware_loader/image_download.h"
#include "platform/event_loop.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace zv {

namespace {

constexpr int kConnectPauseMs = 2000;
constexpr std::size_t kAppAndData = 2;
constexpr const char* kAppTitle = "Zentavia";

std::string fileNameOf(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

template <typename Hook, typename... Args> void call(const Hook& hook, Args&&... args)
{
    if (hook)
        hook(std::forward<Args>(args)...);
}

} // namespace

FirmwareLoader::FirmwareLoader(LoaderServices services, LoaderView view)
    : s_(std::move(services))
    , view_(std::move(view))
{
    auto& hooks = s_.main.hooks;
    previousStatusHook_ = std::move(hooks.firmwareDownloadStatus);
    previousCompleteHook_ = std::move(hooks.firmwareDownloadComplete);
    hooks.firmwareDownloadStatus = [this](int percent, const std::string& text) { onStatus(percent, text); };
    hooks.firmwareDownloadComplete = [this](bool success) { onComplete(success); };
}

FirmwareLoader::~FirmwareLoader()
{
    s_.main.hooks.firmwareDownloadStatus = std::move(previousStatusHook_);
    s_.main.hooks.firmwareDownloadComplete = std::move(previousCompleteHook_);
}

void FirmwareLoader::status(const std::string& text)
{
    call(view_.status, text);
}

void FirmwareLoader::info(const std::string& text, platform::Icon icon)
{
    call(view_.info, text, icon);
}

void FirmwareLoader::onStatus(int percent, const std::string& text)
{
    call(view_.progress, percent);
    if (!text.empty())
        status(text);
    call(previousStatusHook_, percent, text);
}

void FirmwareLoader::onComplete(bool success)
{
    call(previousCompleteHook_, success);
    if (success) {
        info(kDownloadSucceededText, platform::Icon::Information);
        return;
    }
    downloadFailed_ = true;
    if (view_.beep)
        view_.beep();
    info(kDownloadFailedText, platform::Icon::Critical);
}

LoadOutcome FirmwareLoader::LoadImage(const std::string& path, bool automatic)
{
    using platform::Buttons;
    using platform::Icon;
    const std::string name = fileNameOf(path);
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (s_.reportLoadError)
            s_.reportLoadError("File not found: " + path);
        return LoadOutcome::Unreadable;
    }
    std::ostringstream text;
    text << in.rdbuf();
    EncImage image = parseEncText(text.str());

    sections_.clear();
    compatible_ = false;
    call(view_.downloadEnabled, false);
    if (image.fault == EncFault::NotFirmware) {
        s_.dialogs.messageBox(automatic ? "The file is not a valid firmware file."
                                        : "The file " + name + " is not a valid firmware file.",
            Buttons::OK, Icon::Critical, "Invalid File Format");
        return LoadOutcome::NotFirmware;
    }
    if (image.fault == EncFault::Invalid) {
        s_.dialogs.messageBox(
            "Error: File " + name + " is invalid.", Buttons::OK, Icon::Critical, "Invalid File Format");
        return LoadOutcome::Invalid;
    }
    sections_ = std::move(image.sections);

    LoadedImageView shown;
    shown.fileName = name;
    shown.sectionCount = sections_.size();
    const bool appAndData = sections_.size() == kAppAndData;
    shown.versionLabel1 = appAndData ? "App Version:" : "File Version:";
    shown.versionLabel2 = appAndData ? "Data Version:" : "File Version:";
    shown.version1 = std::to_string(sections_[0].version);
    shown.version2 = sections_.size() > 1 ? std::to_string(sections_[1].version) : "n/a";
    call(view_.showImage, shown);
    status("Ready");

    compatible_ = firmwareFitsTarget(s_.globals.gTargetID, sections_[0].version);
    if (!compatible_)
        s_.dialogs.messageBox("Error: File " + name + " is not compatible with this device.", Buttons::OK,
            Icon::Critical, "Invalid File Version");
    call(view_.downloadEnabled, compatible_);
    return compatible_ ? LoadOutcome::Loaded : LoadOutcome::Incompatible;
}

bool FirmwareLoader::DownloadImage()
{
    clsCellWeft& driver = s_.main.CellWeft();
    // A dongle that does not come back through the reset (a pack pulled and plugged in again
    // closes the port) is opened anew, so that a retry can reach the pack.
    if (!driver.SMBus_ReInit2() && !driver.usbTransport() && driver.SMBus_Init() == 0)
        (void)driver.SMBus_ReInit2();
    call(view_.busy, true);
    status("Downloading...");
    deviceChanged = true;
    const int blockSize = driver.Files.settings().MAX_BLOCK_TRANSFER;
    for (const BootSection& section : sections_) {
        call(view_.progress, 0);
        downloadFailed_ = false;
        const FileReply reply = driver.FileAccessRequest(sectionRequest(section, blockSize));
        if (!reply.ok || downloadFailed_) {
            status("Error");
            call(view_.busy, false);
            (void)driver.SMBus_ReInit2();
            return false;
        }
        status("Complete");
        (void)driver.SMBus_ReInit2();
    }
    return true;
}

bool FirmwareLoader::connectionFailed(const std::string& text)
{
    s_.dialogs.messageBox(text, platform::Buttons::OK, platform::Icon::Critical, kLoaderTitle);
    s_.main.CellWeft().Link.Status = 1;
    if (s_.logEvent)
        s_.logEvent(text);
    return false;
}

bool FirmwareLoader::ConnectToTarget()
{
    clsCellWeft& driver = s_.main.CellWeft();
    AppGlobals& g = s_.globals;
    TargetOperations ops(driver);
    if (ops.GetHardwareState() == -1)
        return connectionFailed(std::string(kConnectionFailedText) + "\n" + kCheckAndTryAgain);
    status("Connecting to target... Please wait.");
    s_.loop.wait(kConnectPauseMs);
    const int id = ops.GetTargetID();
    if (id < 0)
        return connectionFailed(std::string(kUnableToConnect) + "\n" + kCheckAndReconnect);
    g.gTargetID = targetIdText(id);
    const std::string iniFile = g.gINIFile.empty() ? s_.programFolder + "/Zentavia.ini" : g.gINIFile;
    const auto record = findTargetById(readTargetTable(iniFile), g.gTargetID);
    if (record) {
        applyTarget(g, *record);
        driver.Config.GatewayConfigFileName = gatewayConfigFile(*record, s_.programFolder);
        driver.Config.NodeConfigFileName = nodeConfigFile(*record, s_.programFolder);
    }
    if (ops.UnlockDevice() != 0 || !ops.EnableUlmarCommandSet() || !driver.GetDir())
        return connectionFailed(std::string(kConnectionFailedText) + "\n" + kCheckAndReconnect);
    if (!record || driver.readConfig(1) != 0)
        return connectionFailed(std::string(kConfigurationError) + "\n" + kCheckAndReconnect);
    status("Connected... Gathering information");
    driver.Link.Status = 0;
    return true;
}

SystemInformation FirmwareLoader::GetSystemInformation()
{
    clsCellWeft& driver = s_.main.CellWeft();
    const int state = TargetOperations(driver).GetHardwareState();
    call(view_.title, std::string(kLoaderTitle) + titleSuffix(state));
    information_ = readSystemInformation(driver, state);
    if (!information_.read)
        info("Unable to read system information.", platform::Icon::Critical);
    call(view_.showSystemInformation, information_);
    return information_;
}

int FirmwareLoader::verify()
{
    const int code = GetSystemInformation().verification;
    const auto message = verificationMessage(code);
    info(message.text, message.icon);
    return code;
}

DownloadOutcome FirmwareLoader::downloadWithVerification(const std::function<std::optional<bool>()>& preserve)
{
    info(kAppTitle, platform::Icon::None);
    const std::int64_t startMs = s_.loop.milliseconds();
    if (preserve) {
        const auto downloaded = preserve();
        if (!downloaded)
            return DownloadOutcome::Aborted;
        if (!*downloaded)
            return DownloadOutcome::DownloadFailed;
    } else if (!DownloadImage()) {
        return DownloadOutcome::DownloadFailed;
    }
    if (connectedBySelf)
        (void)ConnectToTarget();
    int code = verify();
    if (code != kVerifiedOk) {
        (void)ConnectToTarget();
        code = verify();
    }
    const auto seconds = (s_.loop.milliseconds() - startMs) / 1000;
    status("Completed in " + std::to_string(seconds) + " Seconds");
    call(view_.title, std::string(kLoaderTitle));
    call(view_.busy, false);
    return code == kVerifiedOk ? DownloadOutcome::Verified : DownloadOutcome::NotVerified;
}

} // namespace zv
