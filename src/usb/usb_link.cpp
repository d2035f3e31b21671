#include "usb/usb_link.h"

#include "core/globals.h"
#include "link/hlk_text.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/text.h"

namespace zv {

namespace {

constexpr int kIdleFirstSleepMs = 10;
// Pause between two busy status reads, so that a busy target is not read without a break.
constexpr int kIdlePollPauseMs = 5;
constexpr int kStatusBusy = 255;

const char* const kDeviceNotFoundText
    = "USB-BRIDGE interface adapter was not found.\n"
      "\n"
      "Please check that the USB cable is connected to the adapter and the I/O cable is connected to the "
      "EVM.\n"
      "If you are not using the USB-BRIDGE interface adapter then run 'USB Dongle Configuration.exe' to set "
      "the HLK adapter as the default dongle.\n"
      "Goto: Start >> All Programs >> Norvale Systems >> Zentavia >> USB Dongle Configuration";

std::uint8_t lowByte(int value)
{
    return static_cast<std::uint8_t>(value & 0xFF);
}

std::uint8_t highByte(int value)
{
    return static_cast<std::uint8_t>((value >> 8) & 0xFF);
}

std::string wordText(std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high)
{
    const std::uint8_t bytes[] = { address, command, low, high };
    return usbLogText(bytes);
}

std::string blockText(std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data)
{
    std::vector<std::uint8_t> bytes { address, command, static_cast<std::uint8_t>(data.size()) };
    bytes.insert(bytes.end(), data.begin(), data.end());
    return usbLogText(bytes);
}

} // namespace

std::string usbStatusText(int status)
{
    switch (status) {
    case kUsbOk:
        return "no error";
    case kUsbNoAck:
        return "the device did not acknowledge (status 1)";
    case kUsbPecError:
        return "PEC error (status 2)";
    case kUsbTimeout:
        return "no answer from the adapter (status 3)";
    case kUsbBadRequest:
        return "the adapter refused the request (status 4)";
    case kUsbNotConnected:
        return "the adapter is not connected (status 5)";
    default:
        return "status " + std::to_string(status);
    }
}

std::string usbLogText(std::span<const std::uint8_t> bytes)
{
    std::string text;
    for (const auto b : bytes)
        text += platform::byteHex(b) + " ";
    return text;
}

UsbLink::UsbLink(UsbLinkServices services)
    : s_(std::move(services))
{
}

UsbLink::~UsbLink() = default;

std::uint8_t UsbLink::targetAddress() const
{
    return static_cast<std::uint8_t>(s_.globals.gAddress7);
}

std::string UsbLink::usbOpen()
{
    UsbRetryDelay = 25;
    if (s_.globals.gAddress7 == 0)
        s_.globals.setAddress(kUsbDefaultAddress7);
    UsbAdapter_ = s_.createAdapter ? s_.createAdapter() : nullptr;
    if (!UsbAdapter_ || UsbAdapter_->Connect(true) == kUsbAbsent) {
        s_.dialogs.messageBox(
            kDeviceNotFoundText, platform::Buttons::OK, platform::Icon::Critical, "Device Not Found");
        usbRelease();
        if (s_.endProgram)
            s_.endProgram();
        return "-1";
    }
    UsbAdapter_->Configure(1, 1, 1);
    (void)UsbAdapter_->Connect(true);
    const auto version = UsbAdapter_->GetVersion();
    UsbVersionText = version.value_or("Error");
    return version.value_or("-1");
}

bool UsbLink::reconnect()
{
    UsbAdapter_ = s_.createAdapter ? s_.createAdapter() : nullptr;
    if (!UsbAdapter_ || UsbAdapter_->Connect(true) != kUsbOk) {
        usbRelease();
        return false;
    }
    UsbAdapter_->Configure(1, 1, 1);
    return true;
}

void UsbLink::usbRelease()
{
    UsbAdapter_.reset();
}

int UsbLink::withRetries(std::uint8_t address, const std::function<int()>& transfer,
    const std::function<std::string()>& logText, bool transmitted, bool stopAfterFailure)
{
    if (!UsbAdapter_)
        return kUsbOk;
    const auto expired = [this] { return deadline && deadline->expired(s_.loop.milliseconds()); };
    int status = kUsbTimeout;
    const bool target = address == targetAddress();
    for (int attempt = 1; attempt <= (target && status == kUsbNoAck ? kNoAckTries : kTries) && !expired();
         ++attempt) {
        status = transfer();
        if (s_.modemLog)
            s_.modemLog(logText(), transmitted);
        lastStatus = status;
        if (status == kUsbOk || stopAfterFailure || expired())
            break;
        // Every failed try is followed by the pause: a failing transfer costs about 75 ms.
        s_.loop.wait(UsbRetryDelay);
    }
    return status;
}

int UsbLink::usbBlockRead(std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data)
{
    return withRetries(
        address, [&] { return UsbAdapter_->ReadBlock(address, command, data); },
        [&] { return blockText(address, command, data); }, false);
}

int UsbLink::usbBlockWrite(std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data)
{
    return withRetries(
        address, [&] { return UsbAdapter_->WriteBlock(address, command, data); },
        [&] { return blockText(address, command, data); }, true, UsbNoBlockRetry);
}

int UsbLink::usbReadWord(std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low)
{
    return withRetries(
        address, [&] { return UsbAdapter_->ReadWord(address, command, high, low); },
        [&] { return wordText(address, command, low, high); }, false);
}

int UsbLink::usbWriteWord(std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high)
{
    return withRetries(
        address, [&] { return UsbAdapter_->WriteWord(address, command, low, high); },
        [&] { return wordText(address, command, low, high); }, true);
}

int UsbLink::usbReadIntWord(std::uint8_t address, std::uint8_t command, int& value)
{
    std::uint8_t high = highByte(value);
    std::uint8_t low = lowByte(value);
    const int status = usbReadWord(address, command, high, low);
    value = high * 256 + low;
    return status;
}

int UsbLink::usbWriteIntWord(std::uint8_t address, std::uint8_t command, int value)
{
    return usbWriteWord(address, command, lowByte(value), highByte(value));
}

int UsbLink::usbWaitIdle()
{
    s_.loop.sleep(kIdleFirstSleepMs);
    std::uint8_t status = 0;
    std::uint8_t extra = 0;
    return usbWaitIdleStatus(status, extra);
}

int UsbLink::usbWaitIdleStatus(std::uint8_t& status, std::uint8_t& extra)
{
    const auto start = s_.loop.milliseconds();
    int result = 0;
    for (;;) {
        // The status byte is the first data byte of the word, the extra byte the second.
        if (usbReadWord(targetAddress(), smbus::kFileStatus, extra, status) != kUsbOk) {
            // No status was read: the one of an earlier read must not pass for this one.
            status = 0;
            extra = 0;
            result = 1;
            break;
        }
        if (status != kStatusBusy)
            break;
        if (s_.loop.milliseconds() - start >= kUsbIdleLimitMs) {
            result = 1;
            break;
        }
        s_.loop.wait(kIdlePollPauseMs);
    }
    targetOperationDone();
    return result;
}

void UsbLink::targetOperationDone()
{
    if (s_.clearStatusTexts)
        s_.clearStatusTexts();
}

bool UsbLink::writeManufacturerAccess(int word)
{
    const bool ok = usbWriteIntWord(targetAddress(), smbus::kManufacturerAccess, word) == kUsbOk;
    targetOperationDone();
    return ok;
}

int UsbLink::queryManufacturerAccess(int request, int requestFailed, int answerUnreadable)
{
    int result = requestFailed;
    if (usbWriteIntWord(targetAddress(), smbus::kManufacturerAccess, request) == kUsbOk) {
        int value = 0;
        result = usbReadIntWord(targetAddress(), smbus::kManufacturerAccess, value) == kUsbOk
            ? value
            : answerUnreadable;
    }
    targetOperationDone();
    return result;
}

int UsbLink::usbGetTargetID()
{
    return queryManufacturerAccess(manufacturer_access::kTargetId, -1000, -1001);
}

int UsbLink::usbGetAccessLevel()
{
    return queryManufacturerAccess(manufacturer_access::kAccessLevel, -1, -2);
}

int UsbLink::usbGetHardwareState()
{
    int value = 0;
    const int status = usbReadIntWord(targetAddress(), smbus::kManufacturerAccess, value);
    targetOperationDone();
    return status == kUsbOk ? value : -1;
}

bool UsbLink::usbEnableUlmarCommandSet()
{
    return writeManufacturerAccess(manufacturer_access::kEnableCommandSet);
}

bool UsbLink::usbDisableUlmarCommandSet()
{
    return writeManufacturerAccess(manufacturer_access::kDisableCommandSet);
}

int UsbLink::usbUnlockDevice()
{
    return writeManufacturerAccess(manufacturer_access::kUnlock) ? 0 : -1;
}

bool UsbLink::usbLockDevice()
{
    return writeManufacturerAccess(manufacturer_access::kLock);
}

bool UsbLink::usbGetScaling()
{
    if (s_.globals.gDemo) {
        scaling_ = Scaling {};
        return true;
    }
    int specificationInfo = 0;
    int mode = 0;
    const bool ok = usbReadIntWord(targetAddress(), smbus::kSpecificationInfo, specificationInfo) == kUsbOk
        && usbReadIntWord(targetAddress(), smbus::kBatteryMode, mode) == kUsbOk;
    targetOperationDone();
    if (ok)
        scaling_ = scalingFrom(specificationInfo, mode);
    return ok;
}

} // namespace zv
