#pragma once
// The events the driver raises, in their declared order. clsMain implements this sink and
// turns the events into screen updates; the driver never touches a window.

#include <string>

namespace zv {

class CellWeftEvents {
public:
    virtual ~CellWeftEvents() = default;
    virtual void SMBusError(int /*number*/, const std::string& /*description*/, const std::string& /*source*/)
    {
    }
    virtual void SMBusStatusChanged() { }
    virtual void SMBusTXStatusChanged() { }
    virtual void SMBusRXStatusChanged() { }
    virtual void ReadAllParametersStatus(int /*percent*/) { }
    virtual void BroadcastAlarmReceived(int /*alarmWord*/) { }
    virtual void TxRetryCounter(int /*count*/) { }
    virtual void RxRetryCounter(int /*count*/) { }
    virtual void ReadDirectoryStatus(int /*percent*/) { }
    virtual void FirmwareDownloadStatus(int /*percent*/, const std::string& /*text*/) { }
    virtual void ReadWriteFileStatus(int /*percent*/) { }
    virtual void FirmwareDownloadComplete(bool /*success*/) { }
    virtual void FileAccessStatus(const std::string& /*message*/, int /*fileNumber*/) { }
    virtual void HardwareResetting() { }
    virtual void OnCommunication() { }
    virtual void OnCommunicationsComplete() { }
};

} // namespace zv
