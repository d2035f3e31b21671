#include "frontends/usb_socket_server.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "frontends/wire_pacer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace zvsim {

namespace {

constexpr std::size_t kMaxRequest = 4096;

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

} // namespace

UsbSocketServer::~UsbSocketServer()
{
    close();
}

std::string UsbSocketServer::listen(const std::string& path)
{
    sockaddr_un address {};
    if (path.size() >= sizeof address.sun_path)
        return "socket path too long: " + path;
    struct stat info { };
    if (::lstat(path.c_str(), &info) == 0) {
        if (!S_ISSOCK(info.st_mode))
            return path + " exists and is not a socket";
        ::unlink(path.c_str());
    }
    listener_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listener_ < 0)
        return std::string("socket: ") + std::strerror(errno);
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    if (::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0
        || ::listen(listener_, 4) != 0) {
        const std::string error = "listen on " + path + ": " + std::strerror(errno);
        ::close(listener_);
        listener_ = -1;
        return error;
    }
    path_ = path;
    return {};
}

void UsbSocketServer::adopt(int fd)
{
    clients_.push_back({ fd, {} });
}

void UsbSocketServer::close()
{
    for (const Client& client : clients_)
        ::close(client.fd);
    clients_.clear();
    paced_.clear();
    if (listener_ >= 0) {
        ::close(listener_);
        ::unlink(path_.c_str());
    }
    listener_ = -1;
}

void UsbSocketServer::addPollFds(std::vector<pollfd>& fds) const
{
    if (listener_ >= 0)
        fds.push_back({ listener_, POLLIN, 0 });
    for (const Client& client : clients_)
        fds.push_back({ client.fd, POLLIN, 0 });
}

void UsbSocketServer::serve(std::span<const pollfd> fds, std::int64_t nowUs)
{
    const std::int64_t nowMs = nowUs / 1000; // the adapter and the pack keep milliseconds
    // The clients' entries follow the listener's; clients accepted now are polled next time.
    std::size_t at = 0;
    const bool listening = listener_ >= 0 && !fds.empty() && fds[0].fd == listener_;
    if (listening && (fds[at++].revents & POLLIN))
        accept();
    std::vector<Client> remaining;
    for (Client& client : clients_) {
        const bool polled = at < fds.size() && fds[at].fd == client.fd;
        const short events = polled ? fds[at++].revents : 0;
        if (events & (POLLIN | POLLHUP | POLLERR)) {
            if (!serveClient(client, nowUs)) {
                std::erase_if(paced_, [&](const Answer& answer) { return answer.fd == client.fd; });
                ::close(client.fd);
                continue;
            }
        }
        remaining.push_back(std::move(client));
    }
    clients_ = std::move(remaining);
    sendDue(nowUs);
    adapter_.checkPulled(nowMs);
    if (adapter_.pulled())
        close();
    if (clients_.empty())
        adapter_.disconnect();
}

void UsbSocketServer::accept()
{
    const int fd = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (fd >= 0)
        adopt(fd);
}

std::optional<std::int64_t> UsbSocketServer::nextDueUs() const
{
    if (paced_.empty())
        return std::nullopt;
    return paced_.front().dueUs;
}

void UsbSocketServer::sendDue(std::int64_t nowUs)
{
    // A client that has gone meanwhile is found and dropped on its next poll.
    while (!paced_.empty() && paced_.front().dueUs <= nowUs) {
        (void)sendAll(paced_.front().fd, paced_.front().text);
        paced_.pop_front();
    }
}

bool UsbSocketServer::serveClient(Client& client, std::int64_t nowUs)
{
    const std::int64_t nowMs = nowUs / 1000;
    char buffer[1024];
    const ssize_t count = ::recv(client.fd, buffer, sizeof buffer, MSG_DONTWAIT);
    if (count < 0)
        return errno == EAGAIN || errno == EINTR;
    if (count == 0)
        return false;
    client.received.append(buffer, static_cast<std::size_t>(count));
    for (auto end = client.received.find('\n'); end != std::string::npos; end = client.received.find('\n')) {
        const std::string request = client.received.substr(0, end);
        client.received.erase(0, end + 1);
        if (trace_)
            trace_(TraceDirection::In, request);
        const std::string answer = adapter_.handle(request, nowMs);
        if (trace_ && !answer.empty())
            trace_(TraceDirection::Out, answer);
        if (adapter_.pulled())
            return false;
        if (pacing_) {
            // One bus: a transaction starts when the request has arrived and the bus is free.
            busFreeUs_ = std::max(nowUs, busFreeUs_) + WirePacer::smbusTimeUs(request, answer);
            paced_.push_back({ client.fd, busFreeUs_, answer + "\n" });
        } else if (!sendAll(client.fd, answer + "\n")) {
            return false;
        }
    }
    return client.received.size() <= kMaxRequest;
}

} // namespace zvsim
