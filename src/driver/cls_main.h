#pragma once
// clsMain owns the driver and receives its events; it turns them into what the user sees
// through hooks that the windows fill in.

#include "driver/cellweft.h"
#include "link/cellweft_events.h"

#include <functional>
#include <memory>
#include <string>

namespace zv {

// The picture of the "HLK" status panel while the link is busy.
enum class LinkActivityPicture { netNone, netRX, netTX, netBoth };

struct MainHooks {
    std::function<void(LinkActivityPicture, const std::string&)> hlkPanel;
    std::function<void(int percent, const std::string& text)> updateProgress; // UpdateProgress
    std::function<void()> startAndStopProgress;
    std::function<void(int percent)> readDirectoryStatus;
    std::function<void(const std::string& message, int file)> fileAccessStatus;
    std::function<void(int word)> broadcastAlarm;
    std::function<void(int percent, const std::string& text)> firmwareDownloadStatus;
    std::function<void(bool success)> firmwareDownloadComplete;
    std::function<void()> hardwareResetting;
    std::function<void()> restartCommStatusTimer; // tmrCommStatus
    // Every SMBusError, quiet or not, with its number (the event log's record of link errors).
    std::function<void(int number, const std::string& description)> smbusError;
};

class clsMain : public CellWeftEvents {
public:
    clsMain(CellWeftServices services, platform::Dialogs& dialogs);

    clsCellWeft& CellWeft() { return *cellWeft_; }
    // The level the target granted; negative: it could not be read.
    int& UserAccessLevel() { return cellWeft_->Parameters.UserAccessLevel; }

    MainHooks hooks;
    bool Communicating = false; // between OnCommunication and OnCommunicationsComplete
    bool RXActivity = false;
    bool TXActivity = false;
    void ClearRXTXFlags() { RXActivity = TXActivity = false; }

    // CellWeftEvents
    void SMBusError(int number, const std::string& description, const std::string& source) override;
    void SMBusTXStatusChanged() override;
    void SMBusRXStatusChanged() override;
    void ReadAllParametersStatus(int percent) override;
    void ReadWriteFileStatus(int percent) override;
    void ReadDirectoryStatus(int percent) override;
    void BroadcastAlarmReceived(int alarmWord) override;
    void FileAccessStatus(const std::string& message, int fileNumber) override;
    void FirmwareDownloadStatus(int percent, const std::string& text) override;
    void FirmwareDownloadComplete(bool success) override;
    void HardwareResetting() override;
    void OnCommunication() override { Communicating = true; }
    void OnCommunicationsComplete() override { Communicating = false; }

private:
    void showActivity();
    void progress(int percent, const std::string& text);

    platform::Dialogs& dialogs_;
    std::unique_ptr<clsCellWeft> cellWeft_;
};

} // namespace zv
