#include "driver/cls_main.h"

#include "platform/dialogs.h"

namespace zv {

namespace {

// Link errors the user only sees in the event log.
bool isQuietLinkError(int number)
{
    return number >= 10001 && number <= 10020;
}

} // namespace

clsMain::clsMain(CellWeftServices services, platform::Dialogs& dialogs)
    : dialogs_(dialogs)
    , cellWeft_(std::make_unique<clsCellWeft>(std::move(services), *this))
{
}

void clsMain::SMBusError(int number, const std::string& description, const std::string&)
{
    if (hooks.smbusError)
        hooks.smbusError(number, description);
    if (isQuietLinkError(number))
        return;
    dialogs_.messageBox(description, platform::Buttons::OK, platform::Icon::Exclamation, "");
}

void clsMain::showActivity()
{
    const auto picture = RXActivity && TXActivity ? LinkActivityPicture::netBoth
        : RXActivity                              ? LinkActivityPicture::netRX
                                                  : LinkActivityPicture::netTX;
    if (hooks.hlkPanel)
        hooks.hlkPanel(picture, "Communicating");
    if (hooks.restartCommStatusTimer)
        hooks.restartCommStatusTimer();
}

void clsMain::SMBusTXStatusChanged()
{
    TXActivity = true;
    showActivity();
}

void clsMain::SMBusRXStatusChanged()
{
    RXActivity = true;
    showActivity();
}

void clsMain::progress(int percent, const std::string& text)
{
    if (hooks.updateProgress)
        hooks.updateProgress(percent, text);
    if (percent >= 100 && hooks.startAndStopProgress)
        hooks.startAndStopProgress();
}

void clsMain::ReadAllParametersStatus(int percent)
{
    progress(percent, "Reading Parameters ");
}

void clsMain::ReadWriteFileStatus(int percent)
{
    progress(percent, "Accessing File ");
}

void clsMain::ReadDirectoryStatus(int percent)
{
    if (hooks.readDirectoryStatus)
        hooks.readDirectoryStatus(percent);
}

void clsMain::BroadcastAlarmReceived(int alarmWord)
{
    if (hooks.broadcastAlarm)
        hooks.broadcastAlarm(alarmWord);
}

void clsMain::FileAccessStatus(const std::string& message, int fileNumber)
{
    if (hooks.fileAccessStatus)
        hooks.fileAccessStatus(message, fileNumber);
}

void clsMain::FirmwareDownloadStatus(int percent, const std::string& text)
{
    if (hooks.firmwareDownloadStatus)
        hooks.firmwareDownloadStatus(percent, text);
}

void clsMain::FirmwareDownloadComplete(bool success)
{
    if (hooks.firmwareDownloadComplete)
        hooks.firmwareDownloadComplete(success);
}

void clsMain::HardwareResetting()
{
    if (hooks.hardwareResetting)
        hooks.hardwareResetting();
}

} // namespace zv
