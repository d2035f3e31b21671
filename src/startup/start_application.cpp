#include "startup/start_application.h"

#include "core/active_form.h"
#include "core/globals.h"
#include "core/ini_values.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "link/dongle_link.h"
#include "platform/dialogs.h"
#include "platform/serial_port.h"
#include "platform/val.h"

#include <exception>
#include <filesystem>

namespace zv {

Startup::Startup(DetectionServices detectionServices, platform::SettingsStore& settings, StartupParts parts,
    DetectionHooks hooks)
    : detection(detectionServices, hooks)
    , globals_(detectionServices.globals)
    , loop_(detectionServices.loop)
    , dialogs_(detectionServices.dialogs)
    , settings_(settings)
    , programFolder_(detectionServices.programFolder)
    , activeForm_(detectionServices.activeForm)
    , splash_(detectionServices.splash)
    , parts_(std::move(parts))
    , hooks_(std::move(hooks))
{
    splash_.btnRestart.onClick = [this] { StartApplication(); };
    splash_.btnExit.onClick = [this] { parts_.endProgram(); };
    splash_.cmdExit.onClick = [this] { parts_.endProgram(); };
    splash_.cmdLoad.onClick = [this] { detection.cmdLoad_Click(); };
    splash_.CmdBootloader.onClick = [this] { detection.CmdBootloader_Click(); };
    splash_.btnScan.onClick = [this] { detection.btnScan_Click(); };
    splash_.onCloseBox = [this] {
        if (!parts_.otherWindowUp || !parts_.otherWindowUp())
            parts_.endProgram();
    };
}

void Startup::StartApplication()
{
    try {
        startSequence();
    } catch (const std::exception& error) {
        if (parts_.reportError)
            parts_.reportError(error.what());
    }
}

void Startup::startSequence()
{
    if (parts_.BuildMenuPolicy)
        parts_.BuildMenuPolicy();
    std::error_code error;
    std::filesystem::current_path(programFolder_, error);
    if (error)
        dialogs_.messageBox(error.message(), platform::Buttons::OK, platform::Icon::Critical, "Zentavia");
    readSetup();
    // The settings come before gMain here: the driver takes the port, baud and clock as it is made.
    globals_.settings = readStartupSettings(settings_, programFolder_);
    main_ = &parts_.createMain();
    detection.setMain(main_);
    if (globals_.gShowLog && parts_.showModemLog)
        parts_.showModemLog();
    globals_.gNoPassword.fill(0xFF);
    globals_.gPasswordBytes.fill(0);
    globals_.gPasswordText.clear();

    splash_.hideTargetChoice();
    splash_.setFaultButtonsVisible(false);
    splash_.show();
    activeForm_.set(&splash_);
    splash_.setStatus("Initializing communications...");
    loop_.processEvents();
    main_->CellWeft().Link.SMBusCommPort = globals_.settings.CommPort;

    if (globals_.gDemo) {
        if (detection.DetectDemoTarget(false) == detect::kLoaded)
            showMainForm();
        return;
    }
    if (globals_.usbTransport()) {
        if (parts_.openUsbAdapter && parts_.openUsbAdapter()) {
            actOnDetection(detection.DetectTarget(false));
        } else {
            detection.ShowStartupFault(StartupFault::CommunicationError);
            showMainForm();
        }
        return;
    }
    startDongle();
}

void Startup::readSetup()
{
    const std::string& ini = globals_.gINIFile;
    globals_.gTransport = static_cast<int>(Val(GetINIValue("Setup", "Communications", ini)));
    (void)GetINIValue("Setup", "Protocol", ini);
    int address = static_cast<int>(Val(GetINIValue("Setup", "Address", ini)));
    if (address == 0 && globals_.usbTransport())
        address = kUsbDefaultAddress7;
    globals_.setAddress(address);
}

void Startup::startDongle()
{
    const int result = main_->CellWeft().SMBus_Init();
    if (result == platform::kPortErrorInUse) {
        splash_.unload();
        (void)askCommPortError(result);
        return;
    }
    if (result == platform::kPortErrorNoSuchPort || result == kDongleNotAnswering) {
        switch (searchForDongle()) {
        case SearchResult::Found:
            break;
        case SearchResult::Settled:
            return;
        case SearchResult::NotFound:
            splash_.unload();
            (void)askCommPortError(kNoDongleFound);
            return;
        }
    } else if (result != kLinkUp) {
        // Any other number (70: no permission) goes to the dialog as it is; nothing is stored.
        splash_.unload();
        (void)askCommPortError(result);
        return;
    }
    connectedToDongle();
}

Startup::SearchResult Startup::searchForDongle()
{
    auto& link = main_->CellWeft().Link;
    const std::vector<int> ports = parts_.availablePorts ? parts_.availablePorts() : std::vector<int> {};
    for (const int port : ports) {
        link.SMBusCommPort = port;
        splash_.setStatus("Searching for HLK dongle on COM" + std::to_string(port) + "...");
        loop_.processEvents();
        const int result = main_->CellWeft().SMBus_Init();
        if (result == kLinkUp) {
            splash_.setStatus("HLK dongle found on COM" + std::to_string(port));
            loop_.processEvents();
            loop_.wait(kFoundPauseMs);
            link.SMBusCommPort = port;
            return SearchResult::Found;
        }
        if (result == kDongleNotAnswering) {
            loop_.wait(kNextPortPauseMs);
            continue;
        }
        const CommPortChoice choice = parts_.commPortError(result);
        if (choice == CommPortChoice::Connected) {
            connectedToDongle();
            return SearchResult::Settled;
        }
        if (choice == CommPortChoice::ExitApplication) {
            parts_.endProgram();
            return SearchResult::Settled;
        }
    }
    return SearchResult::NotFound;
}

bool Startup::askCommPortError(int code)
{
    switch (parts_.commPortError(code)) {
    case CommPortChoice::Connected:
        connectedToDongle();
        return true;
    case CommPortChoice::ContinueDisconnected:
        main_->CellWeft().Link.Status = 1;
        showMainForm();
        return true;
    case CommPortChoice::ExitApplication:
        parts_.endProgram();
        break;
    }
    return false;
}

void Startup::connectedToDongle()
{
    const auto& link = main_->CellWeft().Link;
    writeSetting(settings_, "CommPort", std::to_string(link.SMBusCommPort));
    writeSetting(settings_, "Baud", std::to_string(link.BaudIndex));
    writeSetting(settings_, "Clock", std::to_string(link.ClockIndex));
    actOnDetection(detection.DetectTarget(false));
}

void Startup::actOnDetection(int result)
{
    switch (result) {
    case detect::kLoaded:
        showMainForm();
        break;
    case detect::kApplicationLoader:
    case detect::kSystemLoader:
        (void)detection.OpenBootStrapLoader();
        break;
    default:
        // The login is open for a sealed target; every other code stays on its splash screen.
        break;
    }
}

void Startup::showMainForm()
{
    if (!hooks_.mainFormLoaded())
        hooks_.showMainForm();
}

} // namespace zv
