#include "usb/socket_usb_adapter.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>

namespace zv {

namespace {

constexpr std::size_t kMaxAnswer = 4096;

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

SocketUsbAdapter::SocketUsbAdapter(std::string path, int timeoutMs)
    : path_(std::move(path))
    , timeoutMs_(timeoutMs)
{
}

SocketUsbAdapter::~SocketUsbAdapter()
{
    closeLine();
}

bool SocketUsbAdapter::openLine()
{
    fd_ = connectUnix(path_);
    return fd_ >= 0;
}

void SocketUsbAdapter::closeLine()
{
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
    received_.clear();
}

std::optional<std::string> SocketUsbAdapter::readLine()
{
    // One deadline for the whole answer: an endpoint that trickles a byte now and then must not
    // keep a read alive for ever.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs_);
    for (;;) {
        const auto end = received_.find('\n');
        if (end != std::string::npos) {
            std::string line = received_.substr(0, end);
            received_.erase(0, end + 1);
            return line;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return std::nullopt;
        pollfd ready { fd_, POLLIN, 0 };
        const int polled = ::poll(&ready, 1, static_cast<int>(left.count()));
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

std::optional<std::string> SocketUsbAdapter::exchange(const std::string& request)
{
    std::optional<std::string> answer;
    if (sendAll(fd_, request + "\n"))
        answer = readLine();
    // A lost or late answer would pair the next request with the wrong line: start afresh.
    if (!answer)
        closeLine();
    return answer;
}

} // namespace zv
