#include "usb/line_usb_adapter.h"

#include "link/hlk_text.h"
#include "platform/text.h"

#include <charconv>

namespace zv {

namespace {

constexpr std::size_t kMaxBlock = 255;

std::string withBytes(std::string request, std::span<const std::uint8_t> bytes)
{
    for (const auto b : bytes)
        request += " " + platform::byteHex(b);
    return request;
}

} // namespace

UsbAnswerLine parseUsbAnswer(std::string_view line)
{
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    UsbAnswerLine answer;
    const auto blank = line.find(' ');
    const auto head = line.substr(0, blank);
    int status = 0;
    const auto [end, error] = std::from_chars(head.data(), head.data() + head.size(), status);
    if (head.empty() || error != std::errc {} || end != head.data() + head.size())
        return answer;
    answer.status = status;
    if (blank == std::string_view::npos)
        return answer;
    answer.text = std::string(line.substr(blank + 1));
    for (std::size_t at = 0; at < answer.text.size(); at += 3) {
        const auto byte = hlk::hexPairAt(answer.text, at);
        const bool separated = at + 2 == answer.text.size() || answer.text[at + 2] == ' ';
        if (!byte || !separated) {
            answer.bytes.clear();
            break;
        }
        answer.bytes.push_back(*byte);
    }
    return answer;
}

LineUsbAdapter::Answer LineUsbAdapter::ask(const std::string& request)
{
    // A line closed after a lost answer is opened again, and the host announced again.
    if (!lineOpen() && !(connected_ && openLine() && ask("CONNECT").status == kUsbOk))
        return { kUsbNotConnected, {}, {} };
    const auto line = exchange(request);
    if (!line)
        return {};
    auto parsed = parseUsbAnswer(*line);
    return { parsed.status, std::move(parsed.text), std::move(parsed.bytes) };
}

int LineUsbAdapter::Connect(bool connect)
{
    connected_ = false;
    if (!connect) {
        closeLine();
        return kUsbOk;
    }
    if (!lineOpen() && !openLine())
        return kUsbAbsent;
    const int status = ask("CONNECT").status;
    if (!lineOpen())
        return kUsbAbsent;
    connected_ = status == kUsbOk;
    return status;
}

void LineUsbAdapter::Configure(int a, int b, int c)
{
    (void)ask("CONFIGURE " + std::to_string(a) + " " + std::to_string(b) + " " + std::to_string(c));
}

std::optional<std::string> LineUsbAdapter::GetVersion()
{
    auto answer = ask("VERSION");
    if (answer.status != kUsbOk || answer.text.empty())
        return std::nullopt;
    return answer.text;
}

int LineUsbAdapter::WriteWord(std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high)
{
    const std::uint8_t bytes[] = { address, command, low, high };
    return ask(withBytes("WRITEWORD", bytes)).status;
}

int LineUsbAdapter::WriteBlock(std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data)
{
    if (data.size() > kMaxBlock)
        return kUsbBadRequest;
    const std::uint8_t head[] = { address, command, static_cast<std::uint8_t>(data.size()) };
    return ask(withBytes(withBytes("WRITEBLOCK", head), data)).status;
}

int LineUsbAdapter::ReadWord(
    std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low)
{
    const std::uint8_t head[] = { address, command };
    const auto answer = ask(withBytes("READWORD", head));
    if (answer.status != kUsbOk)
        return answer.status;
    if (answer.bytes.size() != 2)
        return kUsbBadRequest;
    high = answer.bytes[0];
    low = answer.bytes[1];
    return kUsbOk;
}

int LineUsbAdapter::ReadBlock(std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data)
{
    const std::uint8_t head[] = { address, command };
    const auto answer = ask(withBytes("READBLOCK", head));
    if (answer.status != kUsbOk)
        return answer.status;
    if (answer.bytes.empty() || answer.bytes[0] + 1u != answer.bytes.size())
        return kUsbBadRequest;
    data.assign(answer.bytes.begin() + 1, answer.bytes.end());
    return kUsbOk;
}

} // namespace zv
