#include "usb/socket_usb_adapter.h"

#include "link/hlk_text.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>

namespace zv {

namespace {

constexpr std::size_t kMaxAnswer = 4096;

std::string withBytes(std::string request, std::span<const std::uint8_t> bytes)
{
    for (const auto b : bytes)
        request += " " + ByteToHex(b);
    return request;
}

bool sendAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t sent = ::send(fd, text.data(), text.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

int connectUnix(const std::string& path)
{
    sockaddr_un address {};
    if (path.empty() || path.size() >= sizeof address.sun_path)
        return -1;
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
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

SocketUsbAdapter::SocketUsbAdapter(std::string path, int timeoutMs)
    : path_(std::move(path))
    , timeoutMs_(timeoutMs)
{
}

SocketUsbAdapter::~SocketUsbAdapter()
{
    disconnect();
}

void SocketUsbAdapter::disconnect()
{
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
    received_.clear();
}

std::optional<std::string> SocketUsbAdapter::readLine()
{
    for (;;) {
        const auto end = received_.find('\n');
        if (end != std::string::npos) {
            std::string line = received_.substr(0, end);
            received_.erase(0, end + 1);
            return line;
        }
        pollfd ready { fd_, POLLIN, 0 };
        const int polled = ::poll(&ready, 1, timeoutMs_);
        if (polled < 0 && errno == EINTR)
            continue;
        if (polled <= 0)
            return std::nullopt;
        char buffer[512];
        const ssize_t count = ::recv(fd_, buffer, sizeof buffer, 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0 || received_.size() > kMaxAnswer)
            return std::nullopt;
        received_.append(buffer, static_cast<std::size_t>(count));
    }
}

SocketUsbAdapter::Answer SocketUsbAdapter::ask(const std::string& request)
{
    if (fd_ < 0)
        return { kUsbNotConnected, {}, {} };
    received_.clear(); // an answer that came too late belongs to an earlier request
    if (!sendAll(fd_, request + "\n")) {
        disconnect();
        return {};
    }
    const auto line = readLine();
    if (!line) {
        // Lost or late: the connection no longer pairs requests with answers.
        disconnect();
        return {};
    }
    auto parsed = parseUsbAnswer(*line);
    return { parsed.status, std::move(parsed.bytes), std::move(parsed.text) };
}

int SocketUsbAdapter::Connect(bool connect)
{
    if (!connect) {
        disconnect();
        return kUsbOk;
    }
    if (fd_ < 0)
        fd_ = connectUnix(path_);
    if (fd_ < 0)
        return kUsbAbsent;
    const int status = ask("CONNECT").status;
    return fd_ < 0 ? kUsbAbsent : status;
}

void SocketUsbAdapter::Configure(int a, int b, int c)
{
    (void)ask("CONFIGURE " + std::to_string(a) + " " + std::to_string(b) + " " + std::to_string(c));
}

std::optional<std::string> SocketUsbAdapter::GetVersion()
{
    auto answer = ask("VERSION");
    if (answer.status != kUsbOk || answer.text.empty())
        return std::nullopt;
    return answer.text;
}

int SocketUsbAdapter::WriteWord(std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high)
{
    const std::uint8_t bytes[] = { address, command, low, high };
    return ask(withBytes("WRITEWORD", bytes)).status;
}

int SocketUsbAdapter::WriteBlock(std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data)
{
    if (data.size() > 255)
        return kUsbBadRequest;
    const std::uint8_t head[] = { address, command, static_cast<std::uint8_t>(data.size()) };
    return ask(withBytes(withBytes("WRITEBLOCK", head), data)).status;
}

int SocketUsbAdapter::ReadWord(std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low)
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

int SocketUsbAdapter::ReadBlock(std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data)
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
