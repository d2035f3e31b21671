#pragma once
// A pseudo-terminal standing in for a serial device: the test holds the master side, the code
// under test opens the slave path.

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>

namespace zv::test {

class Pty {
public:
    Pty()
    {
        master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (master_ >= 0 && ::grantpt(master_) == 0 && ::unlockpt(master_) == 0)
            slavePath_ = ::ptsname(master_);
    }
    ~Pty() { closeMaster(); }
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    [[nodiscard]] bool ok() const { return !slavePath_.empty(); }
    [[nodiscard]] const std::string& slavePath() const { return slavePath_; }
    [[nodiscard]] int master() const { return master_; }

    // The device side sends.
    bool send(const std::string& bytes) const
    {
        return ::write(master_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }

    // The device side receives what is there, waiting at most timeoutMs for the first byte.
    [[nodiscard]] std::string receive(int timeoutMs) const
    {
        pollfd fd { master_, POLLIN, 0 };
        if (::poll(&fd, 1, timeoutMs) <= 0)
            return {};
        char buffer[256];
        const auto n = ::read(master_, buffer, sizeof buffer);
        return n > 0 ? std::string(buffer, static_cast<std::size_t>(n)) : std::string();
    }

    // The device goes away.
    void closeMaster()
    {
        if (master_ >= 0)
            ::close(master_);
        master_ = -1;
    }

private:
    int master_ = -1;
    std::string slavePath_;
};

} // namespace zv::test
