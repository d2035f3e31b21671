#include "startup/target_detection.h"

#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "core/active_form.h"
#include "core/globals.h"
#include "core/ini_values.h"
#include "core/paths.h"
#include "core/registry.h"
#include "core/settings_table.h"
#include "device_files/directory.h"
#include "driver/cls_main.h"
#include "driver/target_operations.h"
#include "platform/dialogs.h"
#include "startup/target_globals.h"

#include <cstdio>

namespace zv {

namespace {

constexpr int kPasswordFile = 3;
constexpr int kConfigFile = 9;
constexpr int kStoredKeyFile = 16;
constexpr int kStoredKeyRecord = 2;
constexpr int kAlgorithmBit3 = 0x08;
constexpr int kScanPauseMs = 2000;
constexpr int kUsbReopenPauseMs = 1000;
constexpr const char* kAlgorithmEnable = "Algorithm Enable";
constexpr const char* kSetBit3Command = "0D000000";
constexpr const char* kCommitCommand = "03000000";

constexpr const char* kUnsupportedTarget
    = "The likely cause for this error is out of date firmware which does not support auto-detecting target "
      "application. In this case you can select your target application from the dropdown list below and "
      "click "
      "'Load'. It is highly recommended that you update to the latest firmware. If you have the latest "
      "firmware "
      "please click 'Bootloader' to install now.";

std::string hex(int value, int digits)
{
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, static_cast<unsigned>(value));
    return text;
}

bool isSealedLevel(int level)
{
    return level == 0 || level == 1;
}

} // namespace

TargetDetection::TargetDetection(DetectionServices services, DetectionHooks hooks)
    : s_(std::move(services))
    , hooks_(std::move(hooks))
{
}

void TargetDetection::ShowStartupFault(StartupFault reason)
{
    s_.activeForm.set(&s_.splash);
    s_.splash.showFault(reason);
    if (main_)
        main_->CellWeft().Link.Status = 1;
    s_.splash.show();
}

bool TargetDetection::usb() const
{
    return s_.globals.usbTransport();
}

int TargetDetection::unlockFailure(int result)
{
    ShowStartupFault(StartupFault::UnableToConnect);
    return usb() ? detect::usbUnlockResult(result) : detect::kNoAnswer;
}

int detect::usbUnlockResult(int result)
{
    switch (result) {
    case -1:
        return kUsbUnlockFailed;
    case -2:
        return kUsbUnlockFailed2;
    case -3:
        return kUsbUnlockFailed3;
    default:
        return kUsbFailed;
    }
}

int TargetDetection::ReconnectTarget()
{
    if (!usb() && main_->CellWeft().SMBus_Init() != kLinkUp) {
        ShowStartupFault(StartupFault::UnableToConnect);
        return detect::kNoAnswer;
    }
    return DetectTarget(false);
}

int TargetDetection::DetectTarget(bool targetChosen)
{
    auto& d = main_->CellWeft();
    if (usb()) {
        d.Usb.usbRelease();
        s_.loop.wait(kUsbReopenPauseMs);
        (void)d.Usb.usbOpen();
    }
    TargetOperations target(d);
    if (const int unlocked = target.UnlockDevice(); unlocked != 0)
        return unlockFailure(unlocked);
    if (!target.EnableUlmarCommandSet()) {
        ShowStartupFault(StartupFault::CommunicationError);
        return detect::kLoaded;
    }
    (void)d.GetScaling();
    switch (target.GetHardwareState()) {
    case -1:
        ShowStartupFault(StartupFault::CommunicationError);
        return detect::kCommunicationError;
    case detect::kApplicationLoader:
        ShowStartupFault(StartupFault::ApplicationLoader);
        return detect::kApplicationLoader;
    case detect::kSystemLoader:
        ShowStartupFault(StartupFault::SystemLoader);
        return detect::kSystemLoader;
    default:
        break;
    }
    s_.splash.show();
    s_.splash.setStatus("Loading application...");
    if (!targetChosen) {
        const int id = target.GetTargetID();
        if (id < 0) {
            ShowStartupFault(StartupFault::UnableToConnect);
            return detect::kNoAnswer;
        }
        if (!identifyTarget(targetIdText(id)))
            return detect::kUnknownTarget;
    }
    if (s_.globals.gTargetID == "1003" && isSealedLevel(target.GetAccessLevel()))
        return sealed();

    const int loaded = loadConfiguration();
    if (loaded != detect::kLoaded)
        return loaded;
    MigrateStoredKey();
    hooks_.showMainForm();
    return detect::kLoaded;
}

int TargetDetection::DetectDemoTarget(bool targetChosen)
{
    s_.splash.show();
    s_.splash.setStatus("Loading application...");
    if (!targetChosen) {
        const std::string id
            = modCryptText::DecryptText(GetINIValue("Target", "ID", s_.globals.gDemoFile), kPackKey);
        if (!identifyTarget(id))
            return detect::kUnknownTarget;
    }
    const int loaded = loadConfiguration();
    if (loaded == detect::kLoaded) {
        auto& display = main_->CellWeft().Parameters.display;
        display.VScale = 1;
        display.IPScale = 1;
    }
    return loaded;
}

bool TargetDetection::identifyTarget(const std::string& id)
{
    s_.globals.gTargetID = id.size() >= 4 ? id.substr(id.size() - 4) : std::string(4 - id.size(), '0') + id;
    const auto table = readTargetTable(s_.globals.gINIFile);
    if (const auto target = findTargetById(table, s_.globals.gTargetID)) {
        selectTarget(*target);
        return true;
    }
    std::vector<std::string> names;
    for (const TargetRecord& target : table)
        names.push_back(target.Name);
    if (const auto problem = targetTableProblem(s_.globals.gINIFile); !problem.empty()) {
        s_.splash.showTargetChoice(problem, std::move(names));
        return false;
    }
    s_.splash.showTargetChoice(
        "The attached device is reporting an unsupported target application.\r\nTargetID = "
            + s_.globals.gTargetID + "\r\n" + kUnsupportedTarget,
        std::move(names));
    return false;
}

void TargetDetection::selectTarget(const TargetRecord& target)
{
    applyTarget(s_.globals, target);
    auto& config = main_->CellWeft().Config;
    config.GatewayConfigFileName = gatewayConfigFile(target, s_.programFolder);
    config.NodeConfigFileName = nodeConfigFile(target, s_.programFolder);
    StaticDefinitionFile = readStaticDefinitionFile(s_.settings, s_.programFolder, target.Name, target.SLOG);
    DynamicDefinitionFile
        = readDynamicDefinitionFile(s_.settings, s_.programFolder, target.Name, target.DLOG);
}

int TargetDetection::sealed()
{
    ShowStartupFault(StartupFault::Sealed);
    if (hooks_.mainFormLoaded && hooks_.mainFormLoaded())
        hooks_.hideMainForm();
    if (hooks_.openLogin)
        hooks_.openLogin();
    else
        s_.splash.holdWithButtons();
    return detect::kSealed;
}

// Steps from the directory to the cells, shared by the device and the demo capture.
int TargetDetection::loadConfiguration()
{
    auto& d = main_->CellWeft();
    auto& g = s_.globals;
    if (!d.GetDir()) {
        ShowStartupFault(StartupFault::CommunicationError);
        return detect::kCommunicationError;
    }
    if (d.readConfig(1) != kConfigRead) {
        ShowStartupFault(StartupFault::ConfigurationFiles);
        return detect::kCommunicationError;
    }
    if (g.gAltConfigPrompt)
        PromptAlternateConfig();
    s_.splash.setStatus("Connected...");
    for (const int file : { 9, 5, 11, 18 }) {
        std::string text;
        (void)d.GetFile(file, text);
    }
    main_->UserAccessLevel() = g.gDemo ? 2 : parameterNumber("Access Level");
    if ((g.gTargetID == "1001" || g.gTargetID == "1002") && !g.gDemo
        && isSealedLevel(main_->UserAccessLevel()))
        return sealed();
    readTargetGlobals(d, g);
    d.Link.Status = 0;

    const int actual = parameterNumber("Actual Number Of Cells");
    g.gCellsMatch = parameterNumber("Expected Number Of Cells") == actual;
    d.Parameters.gCellsMatch = g.gCellsMatch;
    lanNotice.loaded(g);
    if (g.gDemo) {
        (void)d.RebuildLAN(true);
    } else {
        d.nodes.Clear();
        if (actual > 0) {
            g.gNodeCount = static_cast<std::uint8_t>(actual);
            for (int n = 1; n <= actual; ++n)
                d.nodes.Add();
        }
    }
    g.gNodeCount = static_cast<std::uint8_t>(d.nodes.Count());
    d.Parameters.gNodeCount = g.gNodeCount;
    (void)d.readConfig(2);
    s_.splash.setStatus(std::to_string(g.gNodeCount) + " cells found.  Starting Zentavia.");
    s_.loop.processEvents();
    d.Parameters.CountParametersPerFile();
    s_.splash.startDismissTimer();
    return detect::kLoaded;
}

int TargetDetection::parameterNumber(const char* name) const
{
    return static_cast<int>(gatewayNumber(main_->CellWeft(), name).value_or(0));
}

bool TargetDetection::PromptAlternateConfig()
{
    if (s_.dialogs.messageBox("Would you like to load alternate configuration files?",
            platform::Buttons::YesNo, platform::Icon::Question, "Load Alternate Configuration")
        != platform::Answer::Yes)
        return true;
    return chooseConfigFile(kGatewayConfigFile, "Zentavia Master Config (*.cfg)|*.cfg|",
               "Please select the Master Configuration File")
        && chooseConfigFile(kCellConfigFile, "Zentavia Cell Config (*.cfg)|*.cfg|",
            "Please select the Cell Configuration File");
}

// Asks until the chosen file reads; a cancelled dialog goes back to the target's own file.
bool TargetDetection::chooseConfigFile(int which, const char* filter, const char* title)
{
    auto& config = main_->CellWeft().Config;
    std::string& fileName
        = which == kGatewayConfigFile ? config.GatewayConfigFileName : config.NodeConfigFileName;
    const std::string ownFile = fileName;
    const platform::FileDialogOptions options { title, filter,
        joinPath(s_.programFolder, "Configuration Files") };
    while (true) {
        const auto chosen = s_.dialogs.openFiles(options);
        if (chosen.empty()) {
            fileName = ownFile;
            (void)main_->CellWeft().readConfig(which);
            return false;
        }
        fileName = chosen.front();
        // The cells are not built yet: a cell file that reads but finds no node 1 is good.
        const int result = main_->CellWeft().readConfig(which);
        if (result == kConfigRead || (which == kCellConfigFile && result != kConfigFailed))
            return true;
    }
}

void TargetDetection::MigrateStoredKey()
{
    auto& d = main_->CellWeft();
    auto& g = s_.globals;
    if (main_->UserAccessLevel() == 0)
        return;
    const FileReply stored = d.FileAccessRequest({ .file = kStoredKeyFile, .offset = kStoredKeyRecord });
    if (!stored.ok || stored.text == kRecordNeverWritten)
        return;
    (void)writeRecord(kPasswordFile, 0, hexToBytes(stored.text));
    std::string text;
    (void)d.GetFile(kConfigFile, text);
    if (!g.gAlgEnableBit3) {
        setParameterBit3(true);
        (void)d.WriteCommandFile(kSetBit3Command);
        (void)d.WriteParameter(kAlgorithmEnable, 0);
    }
    (void)writeRecord(kStoredKeyFile, kStoredKeyRecord, std::vector<std::uint8_t>(8, 0xFF));
    if (g.gPasswordBytes != g.gNoPassword) {
        TargetOperations target(d);
        (void)target.UnlockDevice();
        (void)target.EnableUlmarCommandSet();
        (void)writeRecord(kPasswordFile, 0, { g.gPasswordBytes.begin(), g.gPasswordBytes.end() });
    }
    (void)d.WriteCommandFile(kCommitCommand);
    if (!g.gAlgEnableBit3) {
        (void)d.GetFile(kConfigFile, text);
        setParameterBit3(false);
        (void)d.WriteParameter(kAlgorithmEnable, 0);
    }
}

// Sets bit 3 of "Algorithm Enable", or toggles it back (exclusive or with 8).
void TargetDetection::setParameterBit3(bool on)
{
    clsSMBusParameter* parameter = main_->CellWeft().GatewayParameters.FindByName(kAlgorithmEnable);
    if (!parameter)
        return;
    const int value = parameterNumber(kAlgorithmEnable);
    parameter->NewValue = on ? (value | kAlgorithmBit3) : (value ^ kAlgorithmBit3);
}

bool TargetDetection::writeRecord(int file, int offset, std::vector<std::uint8_t> bytes)
{
    return main_->CellWeft()
        .FileAccessRequest(
            { .access = 1, .file = file, .offset = offset, .count = 1, .data = std::move(bytes) })
        .ok;
}

void TargetDetection::cmdLoad_Click()
{
    const auto target
        = findTargetByName(readTargetTable(s_.globals.gINIFile), s_.splash.cmbTarget.selectedText());
    if (!target)
        return;
    s_.globals.gTargetID = target->ID;
    selectTarget(*target);
    s_.splash.hideTargetChoice();
    const bool mainWasUp = hooks_.mainFormLoaded && hooks_.mainFormLoaded();
    const int result = s_.globals.gDemo ? DetectDemoTarget(true) : DetectTarget(true);
    if (result != detect::kLoaded)
        return;
    if (s_.globals.gDemo && !mainWasUp)
        hooks_.showMainForm();
    else if (hooks_.loadMainForm)
        hooks_.loadMainForm();
}

void TargetDetection::CmdBootloader_Click()
{
    if (OpenBootStrapLoader())
        s_.splash.unload();
}

bool TargetDetection::OpenBootStrapLoader()
{
    if (!hooks_.openBootStrapLoader) {
        s_.splash.holdWithButtons();
        return false;
    }
    hooks_.openBootStrapLoader();
    return true;
}

void TargetDetection::btnScan_Click()
{
    s_.splash.setFaultButtonsVisible(false);
    bool found = false;
    for (int address = 2; address <= 254 && !found; address += 2) {
        s_.splash.setStatus("Scanning SMBus Address 0x" + hex(address, 2));
        s_.loop.processEvents();
        if (!hooks_.usbProbeAddress || !hooks_.usbProbeAddress(address))
            continue;
        found = true;
        (void)SetINIValue("Setup", "Address", std::to_string(address >> 1), s_.globals.gINIFile);
        s_.globals.setAddress(address >> 1);
        s_.splash.setStatus("Found target device at address 0x" + hex(address, 2) + "!");
        s_.loop.wait(kScanPauseMs);
    }
    if (!found)
        s_.splash.setStatus("No target found on SMBus!");
    s_.splash.setFaultButtonsVisible(true);
    if (found && hooks_.connectStep)
        hooks_.connectStep();
}

} // namespace zv
