#pragma once
// The USB adapter link: SMBus word and block operations over the adapter with a uniform retry
// (3 tries, 25 ms apart, each logged to the communications log), and the ManufacturerAccess
// operations of the target in the adapter's terms. Framing and PEC are the adapter's.

#include "link/link_deadline.h"
#include "link/smbus_transactions.h"
#include "usb/usb_adapter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zv::platform {
class Dialogs;
class EventLoop;
} // namespace zv::platform

namespace zv {

struct AppGlobals;

struct UsbLinkServices {
    platform::EventLoop& loop;
    platform::Dialogs& dialogs;
    AppGlobals& globals; // gAddress7, gDemo
    std::function<std::unique_ptr<UsbAdapter>()> createAdapter;
    // The communications log (log_ModemEvent): text and whether it was transmitted.
    std::function<void(const std::string&, bool)> modemLog;
    // Ends the program when there is no adapter: releases gMain, unloads the forms, quits.
    std::function<void()> endProgram;
    // Empties the driver's SMBusTXStatus and SMBusRXStatus: there is no dongle reply to show.
    std::function<void()> clearStatusTexts;
};

inline constexpr int kUsbDefaultAddress7 = 11;
inline constexpr int kUsbIdleLimitMs = 10000;

class UsbLink {
public:
    explicit UsbLink(UsbLinkServices services);
    ~UsbLink();
    UsbLink(const UsbLink&) = delete;
    UsbLink& operator=(const UsbLink&) = delete;

    // Creates and connects the adapter: its version text, or "-1" when it gives none. Without an
    // adapter it shows "Device Not Found" and ends the program.
    std::string usbOpen();
    void usbRelease();
    // A lost link: a new adapter object, connected and configured. False, without a box, when the
    // adapter is not there (unplugged, or its socket gone); the next try makes a new one again.
    [[nodiscard]] bool reconnect();
    [[nodiscard]] bool opened() const { return UsbAdapter_ != nullptr; }
    // gAddress7, the address of the target operations.
    [[nodiscard]] std::uint8_t targetAddress() const;

    // Each returns the status of its last try; 0 at once, touching nothing, when released.
    int usbBlockRead(std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data);
    int usbBlockWrite(std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data);
    int usbReadWord(std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low);
    int usbWriteWord(std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high);
    int usbReadIntWord(std::uint8_t address, std::uint8_t command, int& value);
    int usbWriteIntWord(std::uint8_t address, std::uint8_t command, int value);

    // Reads the file status (0x3D) until it is not 255: 0, or 1 when 10 s pass or it cannot be
    // read. usbWaitIdle first sleeps 10 ms; usbWaitIdleStatus hands out the last status bytes.
    int usbWaitIdle();
    int usbWaitIdleStatus(std::uint8_t& status, std::uint8_t& extra);

    // The target operations of the dongle path, with its results.
    [[nodiscard]] int usbGetTargetID(); // id, -1000 request failed, -1001 answer unreadable
    [[nodiscard]] int usbGetAccessLevel(); // level, -1 request failed, -2 answer unreadable
    [[nodiscard]] int usbGetHardwareState(); // word of command 0, or -1
    [[nodiscard]] bool usbEnableUlmarCommandSet();
    [[nodiscard]] bool usbDisableUlmarCommandSet();
    [[nodiscard]] int usbUnlockDevice(); // 0 or -1
    [[nodiscard]] bool usbLockDevice();
    [[nodiscard]] bool usbGetScaling();
    [[nodiscard]] const Scaling& scaling() const { return scaling_; }

    static constexpr int kTries = 3;
    // The target (at gAddress7) that does not acknowledge (status 1) is busy or restarting: it gets
    // the attempts of the dongle's ladder, still 25 ms apart and within the operation's deadline.
    // Another address that does not answer (a bus scan) keeps the three tries.
    static constexpr int kNoAckTries = 11;
    int UsbRetryDelay = 25;
    std::string UsbVersionText;
    bool UsbNoBlockRetry = false; // set while the firmware loader writes blocks
    // The deadline of the device operation under way (the driver's one); past it a transfer
    // fails with status 3 without reaching the adapter.
    const LinkDeadline* deadline = nullptr;
    int lastStatus = 0; // the status of the last transfer tried

private:
    // Up to three tries of one transfer; stops early on success or when stopAfterFailure.
    int withRetries(std::uint8_t address, const std::function<int()>& transfer,
        const std::function<std::string()>& logText, bool transmitted, bool stopAfterFailure = false);
    [[nodiscard]] bool writeManufacturerAccess(int word);
    [[nodiscard]] int queryManufacturerAccess(int request, int requestFailed, int answerUnreadable);
    void targetOperationDone();

    UsbLinkServices s_;
    std::unique_ptr<UsbAdapter> UsbAdapter_;
    Scaling scaling_;
};

// What a transfer's status means, for the message of a request that failed on it.
[[nodiscard]] std::string usbStatusText(int status);

// The communications log line of a transfer: each byte as two upper-case hex digits and a blank.
[[nodiscard]] std::string usbLogText(std::span<const std::uint8_t> bytes);

} // namespace zv
