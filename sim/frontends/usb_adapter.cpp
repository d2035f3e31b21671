#include "frontends/usb_adapter.h"

#include "device/pec.h"
#include "frontends/hex_bytes.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <utility>
#include <vector>

namespace zvsim {

namespace {

std::vector<std::string> splitWords(std::string_view text)
{
    std::vector<std::string> words;
    std::string word;
    for (char c : text) {
        if (c == ' ' || c == '\t' || c == '\r') {
            if (!word.empty())
                words.push_back(std::exchange(word, {}));
            continue;
        }
        word += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    if (!word.empty())
        words.push_back(word);
    return words;
}

// The words from first on as bytes; nullopt when one is not two hex digits.
std::optional<std::vector<std::uint8_t>> bytesOf(const std::vector<std::string>& words, std::size_t first)
{
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = first; i < words.size(); ++i) {
        const auto value = parseHexByte(words[i]);
        if (!value)
            return std::nullopt;
        bytes.push_back(*value);
    }
    return bytes;
}

std::string status(int code)
{
    return std::to_string(code);
}

std::string withData(std::span<const std::uint8_t> bytes)
{
    std::string text = status(kUsbOk);
    for (std::uint8_t byte : bytes)
        text += " " + hexByte(byte);
    return text;
}

} // namespace

UsbAdapter::UsbAdapter(SmbusTarget& target, UsbAdapterOptions options)
    : target_(target)
    , options_(options)
    , dice_(options.seed)
{
}

std::string UsbAdapter::handle(std::string_view request, std::int64_t nowMs)
{
    checkPulled(nowMs);
    if (pulled_)
        return {};
    target_.advanceTo(nowMs);
    const auto words = splitWords(request);
    if (words.empty())
        return status(kUsbBadRequest);
    const std::string& verb = words[0];
    if (verb == "CONNECT") {
        connected_ = true;
        return status(kUsbOk);
    }
    if (verb == "CONFIGURE")
        return status(kUsbOk);
    if (verb == "VERSION")
        return status(kUsbOk) + " " + std::string(kVersion);
    const auto bytes = bytesOf(words, 1);
    if (!bytes || bytes->size() < 2)
        return status(kUsbBadRequest);
    if (!connected_)
        return status(kUsbNotConnected);
    const std::uint8_t address7 = (*bytes)[0];
    const std::uint8_t command = (*bytes)[1];
    if (verb == "WRITEWORD" && bytes->size() == 4)
        return writeWord(address7, command, (*bytes)[2], (*bytes)[3]);
    if (verb == "READWORD" && bytes->size() == 2)
        return readWord(address7, command);
    if (verb == "WRITEBLOCK" && bytes->size() >= 3 && (*bytes)[2] == bytes->size() - 3)
        return writeBlock(address7, command, std::vector<std::uint8_t>(bytes->begin() + 3, bytes->end()));
    if (verb == "READBLOCK" && bytes->size() == 2)
        return readBlock(address7, command);
    return status(kUsbBadRequest);
}

void UsbAdapter::checkPulled(std::int64_t nowMs)
{
    const auto& pullAfter = options_.faults.pullAfterMs;
    if (pullAfter && nowMs >= options_.startMs + *pullAfter)
        pulled_ = true;
}

bool UsbAdapter::lineFails()
{
    // Evaluated one after the other so that each switch draws from the die only when it is on.
    const bool stuck = dice_.roll(options_.faults.stuckRate);
    const bool lost = dice_.roll(options_.faults.lostRate);
    const bool cut = dice_.roll(options_.faults.cutRate);
    return stuck || lost || cut;
}

std::string UsbAdapter::write(std::uint8_t address7, std::vector<std::uint8_t> covered)
{
    if (address7 != target_.address7())
        return status(kUsbNoAck);
    std::vector<std::uint8_t> withAddress { static_cast<std::uint8_t>(address7 << 1) };
    withAddress.insert(withAddress.end(), covered.begin(), covered.end());
    covered.push_back(smbusPec(withAddress));
    if (!target_.masterWrite(covered))
        return status(kUsbNoAck);
    return status(lineFails() ? kUsbTimeout : kUsbOk);
}

std::string UsbAdapter::writeWord(
    std::uint8_t address7, std::uint8_t command, std::uint8_t low, std::uint8_t high)
{
    return write(address7, { command, low, high });
}

std::string UsbAdapter::writeBlock(
    std::uint8_t address7, std::uint8_t command, std::vector<std::uint8_t> data)
{
    data.insert(data.begin(), { command, static_cast<std::uint8_t>(data.size()) });
    return write(address7, std::move(data));
}

UsbAdapter::ReadResult UsbAdapter::read(std::uint8_t address7, std::uint8_t command, int count)
{
    if (address7 != target_.address7() || !target_.masterWriteCommand(command))
        return { kUsbNoAck, {} };
    auto data = target_.masterRead(count);
    if (!data || data->empty())
        return { kUsbNoAck, {} };
    if (lineFails())
        return { kUsbTimeout, {} };
    if (dice_.roll(options_.faults.pecRate))
        data->back() ^= 0x5A;
    // A word is two data bytes; a block is its length byte and that many data bytes.
    const std::size_t payload = count > 0 ? 2u : std::size_t { (*data)[0] } + 1u;
    if (data->size() < payload)
        return { kUsbTimeout, {} }; // the pack stopped driving the bus before the end
    if (data->size() > payload) {
        // The pack gave a PEC: checked over both addresses, the command and the data.
        std::vector<std::uint8_t> covered { static_cast<std::uint8_t>(address7 << 1), command,
            static_cast<std::uint8_t>((address7 << 1) | 1) };
        covered.insert(covered.end(), data->begin(), data->begin() + static_cast<std::ptrdiff_t>(payload));
        if (smbusPec(covered) != (*data)[payload])
            return { kUsbPecError, {} };
        data->resize(payload);
    }
    return { kUsbOk, std::move(*data) };
}

std::string UsbAdapter::readWord(std::uint8_t address7, std::uint8_t command)
{
    const ReadResult result = read(address7, command, 3);
    if (result.status != kUsbOk)
        return status(result.status);
    // Handed out as the component does: high byte, then low byte.
    const std::uint8_t highThenLow[] = { result.data[1], result.data[0] };
    return withData(highThenLow);
}

std::string UsbAdapter::readBlock(std::uint8_t address7, std::uint8_t command)
{
    const ReadResult result = read(address7, command, 0);
    return result.status == kUsbOk ? withData(result.data) : status(result.status);
}

} // namespace zvsim
