#include "startup/frm_splash.h"

#include <array>

namespace zv {

namespace {

struct FaultScreen {
    const char* firstLine;
    const char* secondLine; // empty: none
};

constexpr const char* kCheckHardware = "Please check power and the connections to the hardware.";

constexpr std::array<FaultScreen, 6> kFaultScreens { {
    { "Unable to connect to device", kCheckHardware },
    { "Communication error to hardware. Connection failed", kCheckHardware },
    { "An error has occurred while reading the configuration files.", kCheckHardware },
    { "The hardware needs to be (re)programmed.", "Loading System Bootloader..." },
    { "The hardware needs to be (re)programmed.", "Loading Bootloader..." },
    { "The target device is sealed!", "" },
} };

} // namespace

frmSplash::frmSplash(platform::EventLoop& loop, std::string versionText)
    : Window("frmSplash")
    , tmrSplash(loop.createTimer())
{
    setCaption("Zentavia");
    lblVersion.setCaption(std::move(versionText));
    cmdLoad.setCaption("Load");
    CmdBootloader.setCaption("Bootloader");
    cmdExit.setCaption("Exit");
    btnExit.setCaption("Exit");
    btnRestart.setCaption("Restart");
    btnScan.setCaption("Scan");
    setLoadControlsVisible(false);
    setFaultButtonsVisible(false);
    tmrSplash->setInterval(kSplashIntervalMs);
    tmrSplash->onTick = [this] {
        tmrSplash->setEnabled(false);
        unload();
    };
    addControls({ &lblStatus, &lblVersion, &cmbTarget, &cmdLoad, &CmdBootloader, &cmdExit, &btnExit,
        &btnRestart, &btnScan });
}

std::string faultHeadline(StartupFault reason)
{
    return kFaultScreens.at(static_cast<std::size_t>(reason)).firstLine;
}

std::string faultText(StartupFault reason, const std::string& lineEnd)
{
    const FaultScreen& screen = kFaultScreens.at(static_cast<std::size_t>(reason));
    std::string text = screen.firstLine;
    if (*screen.secondLine)
        text += lineEnd + screen.secondLine;
    return text;
}

void frmSplash::showFault(StartupFault reason)
{
    setStatus(faultText(reason));
    if (reason <= StartupFault::ConfigurationFiles) {
        setLoadControlsVisible(false);
        setFaultButtonsVisible(true);
        tmrSplash->setEnabled(false);
    } else {
        startDismissTimer();
    }
}

void frmSplash::showTargetChoice(std::string text, std::vector<std::string> targetNames)
{
    setStatus(std::move(text));
    cmbTarget.setItems(std::move(targetNames));
    cmbTarget.setListIndex(0);
    setLoadControlsVisible(true);
}

void frmSplash::hideTargetChoice()
{
    setLoadControlsVisible(false);
}

void frmSplash::setFaultButtonsVisible(bool visible)
{
    btnScan.setVisible(visible);
    btnRestart.setVisible(visible);
    btnExit.setVisible(visible);
}

void frmSplash::startDismissTimer()
{
    tmrSplash->setEnabled(false);
    tmrSplash->setInterval(kSplashIntervalMs);
    tmrSplash->setEnabled(true);
}

void frmSplash::holdWithButtons()
{
    tmrSplash->setEnabled(false);
    setFaultButtonsVisible(true);
}

void frmSplash::handleUnload()
{
    tmrSplash->setEnabled(false);
}

void frmSplash::setLoadControlsVisible(bool visible)
{
    cmbTarget.setVisible(visible);
    cmdLoad.setVisible(visible);
    CmdBootloader.setVisible(visible);
    cmdExit.setVisible(visible);
}

bool frmSplash::handleCloseRequest()
{
    if (onCloseBox)
        onCloseBox();
    return true;
}

} // namespace zv
