#include "frontends/hlk_dongle.h"

#include "device/pec.h"
#include "frontends/hex_bytes.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace zvsim {

namespace {

constexpr std::size_t kMaxLine = 1024; // a longer line without CR overruns the dongle's buffer
// A block read of a bus held high: the count byte reads 0xFF, then 255 data bytes and the PEC.
constexpr int kStuckBlockBytes = 1 + 255 + 1;

std::string answer(std::string_view message)
{
    return std::string(message) + "\r\n*";
}

// A bus held high: no one can pull SDA low, so every bit the dongle reads is a one. A read gives
// all-ones data whose PEC byte (0xFF too) does not match it.
std::string stuckRead(int count)
{
    std::string pairs;
    for (int i = 0; i < (count > 0 ? count : kStuckBlockBytes); ++i)
        pairs += "~FF";
    return answer("/MRC" + pairs);
}

const std::string kPrompt = "*";
const std::string kNoAck = answer("/SNA");
const std::string kUnknown = answer("?");

std::string upper(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
        [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

bool startsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

std::optional<int> decimalArgument(std::string_view text)
{
    if (text.empty() || text.size() > 3 || !std::all_of(text.begin(), text.end(), ::isdigit))
        return std::nullopt;
    return std::stoi(std::string(text));
}

} // namespace

int hlkBaudForIndex(int index)
{
    switch (index) {
    case 0:
        return 19200;
    case 1:
        return 57600;
    case 2:
        return 115200;
    default:
        return 0;
    }
}

HlkDongle::HlkDongle(SmbusTarget& target, HlkOptions options)
    : target_(target)
    , options_(options)
    , dice_(options.seed)
{
}

void HlkDongle::powerOn()
{
    baud_ = kPowerOnBaud;
    line_.clear();
    open_ = false;
    deviceAddress8_ = 0x16;
    hostAddress8_ = 0x10;
}

void HlkDongle::checkPulled(std::int64_t nowMs)
{
    if (!pulled_ && options_.faults.pullAfterMs && nowMs >= options_.startMs + *options_.faults.pullAfterMs) {
        pulled_ = true;
        traceOut("(the pack is pulled)");
    }
}

std::string HlkDongle::receive(std::string_view bytes, std::int64_t nowMs)
{
    checkPulled(nowMs);
    if (pulled_)
        return {};
    target_.advanceTo(nowMs);
    std::string out;
    for (char c : bytes) {
        // At a different baud rate than the dongle's, every character arrives as a framing error
        // and spoils the line being collected.
        if (!options_.anyBaud && lineBaud_ != baud_) {
            line_.clear();
            continue;
        }
        if (static_cast<std::uint8_t>(c) == kResetByte) {
            powerOn();
            continue;
        }
        if (c == '\n')
            continue;
        if (c != '\r') {
            line_ += c;
            if (line_.size() > kMaxLine)
                line_.clear();
            continue;
        }
        const std::string line = std::exchange(line_, {});
        if (line.empty())
            continue;
        if (trace_)
            trace_(TraceDirection::In, line);
        // The answer goes out at the baud the dongle had when it took the command.
        const int replyBaud = baud_;
        std::string reply = handleLine(line);
        traceOut(reply);
        out += toHost(std::move(reply), replyBaud);
    }
    return out;
}

std::string HlkDongle::poll(std::int64_t nowMs)
{
    checkPulled(nowMs);
    if (pulled_)
        return {};
    target_.advanceTo(nowMs);
    std::string out;
    while (auto broadcast = target_.takeAlarmBroadcast())
        out += broadcastLine(*broadcast);
    traceOut(out);
    return toHost(std::move(out), baud_);
}

std::optional<std::int64_t> HlkDongle::nextDueMs() const
{
    if (pulled_ || !options_.faults.pullAfterMs)
        return std::nullopt;
    return options_.startMs + *options_.faults.pullAfterMs;
}

std::string HlkDongle::handleLine(std::string_view rawLine)
{
    const std::string line = upper(rawLine);
    if (startsWith(line, "/*T"))
        return transmit(std::string_view(line).substr(3), false);
    if (startsWith(line, "/T"))
        return transmit(std::string_view(line).substr(2), true);
    if (startsWith(line, "/R"))
        return read(std::string_view(line).substr(2));
    return handleSetting(line);
}

std::string HlkDongle::handleSetting(std::string_view line)
{
    if (line.size() < 2 || line[0] != '/')
        return kUnknown;
    const char letter = line[1];
    const std::string_view argument = line.substr(2);
    if (letter == 'O' && argument.empty()) {
        open_ = true;
        return answer("/OCC");
    }
    if (letter == 'B') {
        const auto index = decimalArgument(argument);
        if (!index || hlkBaudForIndex(*index) == 0)
            return kUnknown;
        baud_ = hlkBaudForIndex(*index);
        return {}; // the host does not wait for an answer: it changes its own rate
    }
    if (letter == 'F' || letter == 'K' || letter == 'G')
        return decimalArgument(argument) ? kPrompt : kUnknown;
    if (letter == 'I' || letter == 'D') {
        const auto address = parseHexByte(argument);
        if (!address)
            return kUnknown;
        (letter == 'I' ? hostAddress8_ : deviceAddress8_) = *address;
        return kPrompt;
    }
    return kUnknown;
}

bool HlkDongle::addressedTargetAnswers() const
{
    return open_ && (deviceAddress8_ >> 1) == target_.address7();
}

std::string HlkDongle::transmit(std::string_view hexText, bool withStop)
{
    const auto bytes = parseTildeHex(hexText);
    if (!bytes || bytes->empty() || (!withStop && bytes->size() != 1))
        return kUnknown;
    if (dice_.roll(options_.faults.stuckRate))
        return kNoAck; // the acknowledge bit reads high as well
    if (!addressedTargetAnswers())
        return kNoAck;
    const bool acknowledged
        = withStop ? target_.masterWrite(*bytes) : target_.masterWriteCommand(bytes->front());
    return finishTransaction(acknowledged ? answer("/MTC") : kNoAck);
}

std::string HlkDongle::read(std::string_view countText)
{
    std::optional<int> count;
    if (startsWith(countText, "~")) {
        if (const auto value = parseHexByte(countText.substr(1)); value && countText.size() == 3)
            count = *value;
    } else {
        count = decimalArgument(countText);
    }
    if (!count)
        return kUnknown;
    if (dice_.roll(options_.faults.stuckRate))
        return stuckRead(*count);
    if (!addressedTargetAnswers())
        return kNoAck;
    auto data = target_.masterRead(*count);
    if (!data)
        return finishTransaction(kNoAck);
    if (!data->empty() && dice_.roll(options_.faults.pecRate))
        data->back() ^= 0x5A; // the PEC is the last byte the pack drives
    std::string reply = answer("/MRC" + tildeHex(*data));
    if (dice_.roll(options_.faults.alarmRate))
        reply = faultAlarmLine() + reply;
    return finishTransaction(std::move(reply));
}

std::string HlkDongle::finishTransaction(std::string reply)
{
    if (dice_.roll(options_.faults.lostRate))
        return {};
    if (dice_.roll(options_.faults.cutRate))
        reply.resize(reply.size() / 2);
    return reply;
}

std::string HlkDongle::faultAlarmLine()
{
    // A broadcast from the pack's own address, as the host would see one that came in between.
    const std::uint8_t sender = target_.address7();
    const auto low = static_cast<std::uint8_t>(options_.alarmWord & 0xFF);
    const auto high = static_cast<std::uint8_t>(options_.alarmWord >> 8);
    return broadcastLine({ sender, low, high, smbusPec({ hostAddress8_, sender, low, high }) });
}

std::string HlkDongle::broadcastLine(const std::vector<std::uint8_t>& bytes)
{
    return answer("/SRC" + tildeHex(bytes));
}

std::string HlkDongle::toHost(std::string text, int dongleBaud) const
{
    if (options_.anyBaud || lineBaud_ == dongleBaud)
        return text;
    // The host samples the dongle's characters at the wrong rate and reads garbage, never a
    // prompt, a line end or a slash.
    for (char& c : text)
        c = static_cast<char>(0x80 | ((static_cast<std::uint8_t>(c) * 7 + 3) & 0x7F));
    return text;
}

void HlkDongle::traceOut(std::string_view text) const
{
    if (trace_ && !text.empty())
        trace_(TraceDirection::Out, text);
}

} // namespace zvsim
