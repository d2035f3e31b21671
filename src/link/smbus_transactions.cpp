#include "link/smbus_transactions.h"

#include "link/cellweft_events.h"
#include "link/dongle_link.h"
#include "link/hlk_text.h"
#include "link/pec.h"
#include "platform/event_loop.h"

#include <array>

namespace zv {

namespace {

std::string commandText(std::uint8_t command)
{
    return "/T" + ByteToTildeHex(command) + " /MTC was not received";
}

int powerOfTen(int exponent)
{
    int value = 1;
    for (int i = 0; i < exponent; ++i)
        value *= 10;
    return value;
}

} // namespace

Scaling scalingFrom(int specificationInfo, int batteryMode)
{
    return { powerOfTen((specificationInfo >> 8) & 0x0F), powerOfTen((specificationInfo >> 12) & 0x0F),
        (batteryMode >> 15) & 1 };
}

SmbusTransactions::SmbusTransactions(DongleLink& link, platform::EventLoop& loop, CellWeftEvents& events)
    : link_(link)
    , loop_(loop)
    , events_(events)
{
}

bool SmbusTransactions::expired() const
{
    return link_.deadline.expired(loop_.milliseconds());
}

void SmbusTransactions::raise(const Failure& failure)
{
    link_.SMBusRaiseError(failure.number, failure.text);
    if (failure.rebuildLink)
        (void)link_.SMBus_Init();
}

bool SmbusTransactions::sendWithRetries(const std::string& message, const Failure& onExhausted)
{
    int count = 0;
    events_.TxRetryCounter(count);
    bool ok = false;
    while (!ok && count <= kRetryLimit && !expired()) {
        std::string response;
        ok = link_.i2c_send_receive(message, "/MTC", response, 1);
        if (!ok && !expired())
            loop_.wait(kRetryPauseMs);
        ++count;
        events_.TxRetryCounter(count);
    }
    if (!ok)
        raise(onExhausted);
    return ok;
}

bool SmbusTransactions::SMBus_WriteWord(std::uint8_t command, int value)
{
    return sendWithRetries(
        hlk::writeWord(link_.SMBusWriteAddress, command, value), { 10008, "SMBus write word failed", true });
}

bool SmbusTransactions::SMBus_WriteBlock(std::uint8_t command, std::span<const std::uint8_t> data)
{
    return sendWithRetries(
        hlk::writeBlock(link_.SMBusWriteAddress, command, data), { 10013, "SMBus write block failed", true });
}

bool SmbusTransactions::SMBus_WriteSBlock(std::span<const std::uint8_t> bytes)
{
    return sendWithRetries(hlk::writeRaw(bytes), { 10007, "Write non-SMBUS block failed", true });
}

bool SmbusTransactions::transmitReadCommand(std::uint8_t command, ReadKind kind)
{
    const bool word = kind == ReadKind::Word;
    const std::string text = (word ? "SMBus read word failed when transmitting the command: "
                                   : "SMBus read block failed when transmitting the command: ")
        + commandText(command);
    return sendWithRetries(hlk::readCommand(command), { word ? 10009 : 10014, text, true });
}

std::optional<int> SmbusTransactions::SMBus_ReadWord(std::uint8_t command)
{
    int outer = 0;
    events_.RxRetryCounter(outer);
    bool pecFailure = false;
    std::uint8_t receivedPec = 0;
    std::uint8_t computedPec = 0;
    while (outer <= kRetryLimit && !expired()) {
        if (!transmitReadCommand(command, ReadKind::Word))
            return std::nullopt;
        std::string response;
        if (link_.i2c_send_receive(std::string(hlk::kReadWord), "/MRC", response, 1)) {
            const auto reply = hlk::parseWordReply(response);
            if (!reply) {
                link_.SMBusRaiseError(
                    10012, "Error occurred when parsing response from Qorel. Response = " + response);
                return std::nullopt;
            }
            const std::uint8_t address = link_.SMBusWriteAddress;
            const std::array<std::uint8_t, 5> covered { address, command,
                static_cast<std::uint8_t>(address + 1), reply->low, reply->high };
            computedPec = pec(covered);
            receivedPec = reply->pec;
            if (computedPec == receivedPec) {
                ++outer;
                events_.RxRetryCounter(outer);
                return reply->low + 256 * reply->high;
            }
            pecFailure = true;
        } else if (!expired()) {
            loop_.wait(kRetryPauseMs);
        }
        ++outer;
        events_.RxRetryCounter(outer);
    }
    if (pecFailure)
        raise({ 65011,
            "Error in PEC. Received PEC = " + std::to_string(receivedPec)
                + ". Computed PEC = " + std::to_string(computedPec),
            false });
    else
        raise({ 10010, "SMBus read word failed when reading the datum, /MRC was not received.", true });
    return std::nullopt;
}

std::optional<std::vector<std::uint8_t>> SmbusTransactions::SMBus_ReadBlock(std::uint8_t command)
{
    int outer = 0;
    events_.RxRetryCounter(outer);
    while (outer <= kRetryLimit && !expired()) {
        if (!transmitReadCommand(command, ReadKind::Block))
            return std::nullopt;
        std::string response;
        const bool received = link_.i2c_send_receive(std::string(hlk::kReadBlock), "/MRC", response, 1);
        if (received) {
            auto data = hlk::parseBlockReply(response);
            if (!data) {
                link_.SMBusRaiseError(10016,
                    "Error reading block data. Insufficient characters received. Received string = "
                        + response);
                return std::nullopt;
            }
            ++outer;
            events_.RxRetryCounter(outer);
            return data;
        }
        if (!expired())
            loop_.wait(kRetryPauseMs);
        ++outer;
        events_.RxRetryCounter(outer);
    }
    raise({ 10015, "SMBus read block failed when reading the data block", true });
    return std::nullopt;
}

int SmbusTransactions::GetHardwareState()
{
    return SMBus_ReadWord(smbus::kManufacturerAccess).value_or(-1);
}

bool SmbusTransactions::GetScaling()
{
    const auto spec = SMBus_ReadWord(smbus::kSpecificationInfo);
    if (!spec)
        return false;
    const auto mode = SMBus_ReadWord(smbus::kBatteryMode);
    if (!mode)
        return false;
    scaling_ = scalingFrom(*spec, *mode);
    return true;
}

bool SmbusTransactions::EnableUlmarCommandSet()
{
    return SMBus_WriteWord(smbus::kManufacturerAccess, manufacturer_access::kEnableCommandSet);
}

bool SmbusTransactions::DisableUlmarCommandSet()
{
    return SMBus_WriteWord(smbus::kManufacturerAccess, manufacturer_access::kDisableCommandSet);
}

int SmbusTransactions::UnlockDevice()
{
    return SMBus_WriteWord(smbus::kManufacturerAccess, manufacturer_access::kUnlock) ? 0 : -1;
}

bool SmbusTransactions::LockDevice()
{
    return SMBus_WriteWord(smbus::kManufacturerAccess, manufacturer_access::kLock);
}

int SmbusTransactions::queryWord(int request, int requestFailed, int answerUnreadable)
{
    if (!SMBus_WriteWord(smbus::kManufacturerAccess, request))
        return requestFailed;
    return SMBus_ReadWord(smbus::kManufacturerAccess).value_or(answerUnreadable);
}

int SmbusTransactions::GetAccessLevel()
{
    return queryWord(manufacturer_access::kAccessLevel, -1, -2);
}

int SmbusTransactions::GetTargetID()
{
    return queryWord(manufacturer_access::kTargetId, -1000, -1001);
}

} // namespace zv
