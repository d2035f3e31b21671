#pragma once
// The HLK dongle serial link: opening and configuring the dongle, one command and its reply,
// and the dongle's unsolicited traffic. The lowest layer of the driver on the dongle transport.

#include "link/hlk_reply.h"
#include "link/link_deadline.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
class SerialPort;
class Timer;
enum class CommEvent;
} // namespace zv::platform

namespace zv {

class CellWeftEvents;

// Result numbers of SMBus_Init.
inline constexpr int kLinkUp = 0;
inline constexpr int kDongleNotAnswering = 10001;
// Errors raised by the link.
inline constexpr int kErrTimeout = 10017;
inline constexpr int kErrUnexpectedReply = 10018;
inline constexpr int kErrNotOpened = 10019;

// Which window is active, as far as the unsolicited traffic cares.
enum class UnsolicitedTarget { Other, BootStrapLoader, SBDataDynamic };

struct DongleLinkServices {
    platform::SerialPort& port;
    platform::EventLoop& loop;
    CellWeftEvents& events;
    // The communications log (log_ModemEvent): text and whether it was transmitted.
    std::function<void(const std::string&, bool)> modemLog;
    // A line for the status bar and the event log.
    std::function<void(const std::string&)> logEvent;
    // Alarm broadcasts go to MapAlarmsToStatus.
    std::function<void(int)> alarmBroadcast;
    std::function<UnsolicitedTarget()> activeWindow;
    // Non-null under /breakonerror: failures also show a box.
    platform::Dialogs* breakOnError = nullptr;
};

class DongleLink {
public:
    explicit DongleLink(DongleLinkServices services);
    ~DongleLink();
    DongleLink(const DongleLink&) = delete;
    DongleLink& operator=(const DongleLink&) = delete;

    // Opens the port and configures the dongle: 0, 8002, 8005, 10001 or another port error.
    [[nodiscard]] int SMBus_Init();
    void ResetHLK();
    [[nodiscard]] bool ConfigureHLK();
    void i2c_send(const std::string& message);
    // One command and its reply; segments is the number of "*" prompts the reply must hold.
    [[nodiscard]] bool i2c_send_receive(
        const std::string& message, const std::string& expected, std::string& response, int segments = 1);
    void SMBusRaiseError(int number, const std::string& description);
    // The description of the last error raised, empty before the first.
    [[nodiscard]] const std::string& lastError() const { return lastError_; }
    // False once the port is closed, by the program or because the device went away.
    [[nodiscard]] bool portOpen() const;

    void setSMBusStatus(const std::string& text);
    void setSMBusTXStatus(const std::string& text);
    void setSMBusRXStatus(const std::string& text);
    [[nodiscard]] const std::string& SMBusStatus() const { return smbusStatus_; }
    [[nodiscard]] const std::string& SMBusTXStatus() const { return txStatus_; }
    [[nodiscard]] const std::string& SMBusRXStatus() const { return rxStatus_; }

    int SMBusCommPort = 1;
    int BaudIndex = 2;
    int ClockIndex = 2;
    std::uint8_t SMBusWriteAddress = 0x16;
    int Status = 0; // 0 connected, 1 offline
    long SNACount = 0;
    long BroadcastCount = 0;
    bool ResponseTimedOut = false;
    int LoaderReplyByte = -1; // the last "/SRC" byte while the loader window is active
    // The deadline of the device operation under way: past it no command is sent and no reply
    // awaited, so every retry ladder above ends at once.
    LinkDeadline deadline;

private:
    void onComm(platform::CommEvent event);
    void handleLine(const std::string& line);
    void handleSrcLine(const std::string& line);
    [[nodiscard]] bool configureStep(
        const std::string& command, const std::string& expected, const std::string& failure);
    [[nodiscard]] std::string drainInput();

    DongleLinkServices s_;
    std::unique_ptr<platform::Timer> tmrTimeout_;
    hlk::LineCollector lines_;
    std::string lastError_;
    std::string smbusStatus_;
    std::string txStatus_;
    std::string rxStatus_;
};

} // namespace zv
