#include "link/dongle_link.h"

#include "link/cellweft_events.h"
#include "link/hlk_text.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/serial_port.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zv {

namespace {

constexpr int kResponseTimerMs = 1000;
constexpr int kReplyDeadlineMs = 10000;
constexpr int kResetPauseMs = 25;
constexpr std::uint8_t kHostAddress = 0x10;
constexpr const char* kLineSettings = ",n,8,1";
constexpr std::array<const char*, 3> kResetRates { "19200", "57600", "115200" };

std::string hexByte(int value)
{
    return platform::byteHex(static_cast<std::uint8_t>(value));
}

} // namespace

DongleLink::DongleLink(DongleLinkServices services)
    : s_(std::move(services))
    , tmrTimeout_(s_.loop.createTimer())
{
    tmrTimeout_->setInterval(kResponseTimerMs);
    tmrTimeout_->onTick = [this] {
        ResponseTimedOut = true;
        tmrTimeout_->setEnabled(false);
    };
    s_.port.onComm = [this](platform::CommEvent event) { onComm(event); };
}

DongleLink::~DongleLink()
{
    s_.port.onComm = nullptr;
    if (s_.port.portOpen())
        (void)s_.port.setPortOpen(false);
}

int DongleLink::SMBus_Init()
{
    if (s_.port.portOpen())
        (void)s_.port.setPortOpen(false);
    s_.port.setCommPort(SMBusCommPort);
    s_.loop.processEvents();
    if (const int error = s_.port.setPortOpen(true); error != 0)
        return error;
    s_.port.setInputLen(1);
    s_.port.setRThreshold(1);
    setSMBusStatus("COM " + std::to_string(SMBusCommPort));
    ResetHLK();
    if (!ConfigureHLK()) {
        setSMBusStatus("SMBus Failed");
        return kDongleNotAnswering;
    }
    setSMBusStatus("SMBus Initialized");
    return kLinkUp;
}

void DongleLink::ResetHLK()
{
    s_.port.setHandshaking(0);
    for (const char* rate : kResetRates) {
        s_.port.setSettings(std::string(rate) + kLineSettings);
        i2c_send(std::string(3, '\x12'));
        s_.loop.sleep(kResetPauseMs);
    }
    s_.port.setHandshaking(2);
}

bool DongleLink::configureStep(
    const std::string& command, const std::string& expected, const std::string& failure)
{
    std::string response;
    if (i2c_send_receive(command, expected, response, 1))
        return true;
    if (s_.breakOnError)
        s_.breakOnError->messageBox(failure, platform::Buttons::OK, platform::Icon::Exclamation, "");
    return false;
}

bool DongleLink::ConfigureHLK()
{
    s_.port.setSettings(std::string("19200") + kLineSettings);
    i2c_send("/B" + std::to_string(BaudIndex) + "\r");
    s_.loop.sleep(kResetPauseMs);
    s_.port.setSettings(GetBaudRate(BaudIndex) + kLineSettings);
    return configureStep("/F1\r", "*", "Error setting SMBus flow control")
        && configureStep("/K" + std::to_string(ClockIndex) + "\r", "*", "Error setting HW Clock")
        && configureStep("/I" + hexByte(kHostAddress) + "\r", "*", "Error setting Smart Battery Host address")
        && configureStep("/D" + hexByte(SMBusWriteAddress) + "\r", "*", "Error setting Smart Battery address")
        && configureStep("/G0\r", "*", "Error disabling SMBus general call support")
        && configureStep("/O\r", "/OCC\r\n*", "Error opening SMBus connection");
}

std::string DongleLink::drainInput()
{
    const int saved = s_.port.inputLen();
    s_.port.setInputLen(0);
    std::string text = s_.port.input();
    s_.port.setInputLen(saved);
    return text;
}

void DongleLink::i2c_send(const std::string& message)
{
    if (!s_.port.portOpen())
        return;
    const std::string discarded = drainInput();
    if (s_.modemLog) {
        s_.modemLog(discarded, false);
        s_.modemLog(message, true);
    }
    s_.port.output(message);
    ResponseTimedOut = false;
    tmrTimeout_->setEnabled(false);
    tmrTimeout_->setEnabled(true);
}

bool DongleLink::i2c_send_receive(
    const std::string& message, const std::string& expected, std::string& response, int segments)
{
    s_.events.OnCommunication();
    setSMBusTXStatus(message);
    bool ok = false;
    if (!s_.port.portOpen()) {
        SMBusRaiseError(kErrNotOpened,
            "The SMBus connection has not been opened correctly. Please restart the program and try "
            "again");
        s_.events.OnCommunicationsComplete();
        return false;
    }
    if (deadline.expired(s_.loop.milliseconds())) {
        s_.events.OnCommunicationsComplete();
        return false;
    }
    // Receive events stay off for the transaction, so that OnComm does not take the reply away;
    // whatever threshold was set comes back afterwards.
    const int threshold = s_.port.rThreshold();
    s_.port.setRThreshold(0);
    i2c_send(message);

    for (;;) {
        std::string buffer;
        int prompts = 0;
        const int waitMs = deadline.remaining(s_.loop.milliseconds(), kReplyDeadlineMs);
        const auto replyDeadline = s_.loop.milliseconds() + waitMs;
        const auto complete = [&] {
            if (!s_.port.portOpen())
                ResponseTimedOut = true; // the dongle went away
            if (ResponseTimedOut)
                return true;
            if (s_.port.inBufferCount() > 0) {
                buffer += drainInput();
                // An alarm broadcast that comes in the middle of the answer is the pack's own
                // news, not a segment of the answer: it goes to the unsolicited handler.
                for (const auto& line : hlk::takeBroadcasts(buffer))
                    handleSrcLine(line);
                prompts = static_cast<int>(std::count(buffer.begin(), buffer.end(), '*'));
            }
            if (s_.loop.milliseconds() >= replyDeadline)
                ResponseTimedOut = true;
            if (segments == 1)
                return !buffer.empty() && buffer.back() == '*';
            return prompts >= segments;
        };
        (void)s_.loop.waitUntil(complete, waitMs);
        if (!complete())
            ResponseTimedOut = true;
        if (s_.modemLog)
            s_.modemLog(buffer, false);

        const auto judgement = hlk::judgeReply(buffer, expected, segments);
        if (judgement.verdict == hlk::Verdict::StuckBus) {
            lastError_ = "The SMBus is stuck high (the dongle read ~FF throughout)";
            break;
        }
        if (ResponseTimedOut) {
            SMBusRaiseError(kErrTimeout, "Timeout waiting for response");
            break;
        }
        if (judgement.verdict == hlk::Verdict::Unsolicited)
            continue;
        SNACount += judgement.snaCount;
        if (judgement.verdict == hlk::Verdict::Accepted || segments != 1) {
            ok = judgement.verdict == hlk::Verdict::Accepted;
            response = buffer;
            setSMBusRXStatus(buffer);
            // The caller judges a reply of several segments; what was wrong with it is kept for the
            // message of a request that fails.
            if (!ok)
                lastError_ = "Unexpected reply " + buffer;
            break;
        }
        if (s_.breakOnError)
            s_.breakOnError->messageBox(
                "SNA received", platform::Buttons::OK, platform::Icon::Exclamation, "SMBUS Error");
        SMBusRaiseError(kErrUnexpectedReply,
            "Error in i2c_send_receive. Response = " + buffer + ". Expected = " + expected);
        break;
    }
    tmrTimeout_->setEnabled(false);
    s_.port.setRThreshold(threshold);
    s_.events.OnCommunicationsComplete();
    return ok;
}

bool DongleLink::portOpen() const
{
    return s_.port.portOpen();
}

void DongleLink::SMBusRaiseError(int number, const std::string& description)
{
    lastError_ = description;
    s_.events.SMBusError(number, description, "clsCellWeft");
}

void DongleLink::setSMBusStatus(const std::string& text)
{
    smbusStatus_ = text;
    s_.events.SMBusStatusChanged();
}

void DongleLink::setSMBusTXStatus(const std::string& text)
{
    txStatus_ = text;
    s_.events.SMBusTXStatusChanged();
}

void DongleLink::setSMBusRXStatus(const std::string& text)
{
    rxStatus_ = text;
    s_.events.SMBusRXStatusChanged();
}

void DongleLink::onComm(platform::CommEvent event)
{
    if (Status == 1)
        return;
    if (event == platform::CommEvent::BreakOrError) {
        // The port closed under us: the dongle was unplugged or its device failed.
        const std::string reason = s_.port.errorText();
        if (s_.logEvent)
            s_.logEvent("The serial port closed: the dongle was removed or failed"
                + (reason.empty() ? std::string() : " (" + reason + ")"));
        return;
    }
    while (s_.port.inBufferCount() > 0) {
        const std::string c = s_.port.input();
        if (c.empty())
            break;
        if (auto line = lines_.feed(c.front())) {
            handleLine(*line);
            s_.port.setInBufferCount(0);
        }
    }
}

void DongleLink::handleLine(const std::string& line)
{
    const auto holds = [&](const char* what) { return line.find(what) != std::string::npos; };
    const auto log = [&](const std::string& text) {
        if (s_.logEvent)
            s_.logEvent(text);
    };
    if (holds("/STR"))
        log("Unexpected Slave Transmit Request");
    else if (holds("/GRC"))
        log("Unexpected General Call Request");
    else if (holds("/I85"))
        log("I2C Bus Timeout");
    else if (holds("/MTC"))
        log("Unexpected MTC response");
    else if (holds("/SRC"))
        handleSrcLine(line);
}

void DongleLink::handleSrcLine(const std::string& line)
{
    const auto target = s_.activeWindow ? s_.activeWindow() : UnsolicitedTarget::Other;
    const auto log = [&](const std::string& text) {
        if (s_.logEvent)
            s_.logEvent(text);
    };
    if (target == UnsolicitedTarget::BootStrapLoader) {
        if (const auto b = hlk::hexPairAt(line, line.find("/SRC") + 4))
            LoaderReplyByte = *b;
        return;
    }
    const auto message = hlk::parseSrcLine(line);
    if (!message)
        return;
    if (message->pec != message->computedPec()) {
        log("Received an unsolicited message with a PEC error. Msg = " + line
            + ". Computed PEC = " + std::to_string(message->computedPec()));
        return;
    }
    if (message->sender == SMBusWriteAddress / 2) {
        ++BroadcastCount;
        if (target != UnsolicitedTarget::SBDataDynamic && s_.alarmBroadcast)
            s_.alarmBroadcast(message->word());
        log("Alarm broadcast received ");
        return;
    }
    log("Received an unsolicited message from address " + platform::byteHex(message->sender));
}

} // namespace zv
