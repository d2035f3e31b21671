#include "frontends/pty_frontend.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace zvsim {

namespace {

std::string systemError(const std::string& what)
{
    return what + ": " + std::strerror(errno);
}

} // namespace

int baudOfSpeed(unsigned speed)
{
    switch (speed) {
    case B9600:
        return 9600;
    case B19200:
        return 19200;
    case B38400:
        return 38400;
    case B57600:
        return 57600;
    case B115200:
        return 115200;
    case B230400:
        return 230400;
    default:
        return 0;
    }
}

PtyFrontEnd::PtyFrontEnd(HlkDongle& dongle, bool wirePacing)
    : dongle_(dongle)
    , pacer_(wirePacing)
{
}

PtyFrontEnd::~PtyFrontEnd()
{
    close();
}

std::string PtyFrontEnd::open()
{
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master_ < 0)
        return systemError("posix_openpt");
    if (::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
        const std::string error = systemError("grantpt/unlockpt");
        close();
        return error;
    }
    devicePath_ = ::ptsname(master_);
    // Our own descriptor of the slave keeps the line alive while the host has it closed.
    slave_ = ::open(devicePath_.c_str(), O_RDWR | O_NOCTTY);
    if (slave_ < 0) {
        const std::string error = systemError("open " + devicePath_);
        close();
        return error;
    }
    termios settings {};
    ::tcgetattr(slave_, &settings);
    ::cfmakeraw(&settings);
    ::cfsetispeed(&settings, B19200);
    ::cfsetospeed(&settings, B19200);
    ::tcsetattr(slave_, TCSANOW, &settings);
    return {};
}

std::string PtyFrontEnd::makeLink(const std::string& path)
{
    struct stat info { };
    if (::lstat(path.c_str(), &info) == 0) {
        if (!S_ISLNK(info.st_mode))
            return path + " exists and is not a symbolic link";
        ::unlink(path.c_str());
    }
    if (::symlink(devicePath_.c_str(), path.c_str()) != 0)
        return systemError("symlink " + path);
    linkPath_ = path;
    return {};
}

void PtyFrontEnd::close()
{
    if (!linkPath_.empty())
        ::unlink(linkPath_.c_str());
    linkPath_.clear();
    if (slave_ >= 0)
        ::close(slave_);
    if (master_ >= 0)
        ::close(master_);
    slave_ = master_ = -1;
    pending_.clear();
}

void PtyFrontEnd::addPollFds(std::vector<pollfd>& fds) const
{
    if (master_ >= 0)
        fds.push_back({ master_, POLLIN, 0 });
}

void PtyFrontEnd::serve(std::span<const pollfd> fds, std::int64_t nowUs)
{
    if (master_ < 0)
        return;
    const std::int64_t nowMs = nowUs / 1000; // the dongle and the pack keep milliseconds
    if (!fds.empty() && (fds[0].revents & POLLIN))
        readFromHost(nowUs);
    if (nowMs - lastBroadcastPollMs_ >= kBroadcastPollMs
        || (dongle_.nextDueMs() && *dongle_.nextDueMs() <= nowMs)) {
        lastBroadcastPollMs_ = nowMs;
        queue(dongle_.poll(nowMs), nowUs, 0);
    }
    writeDue(nowUs);
    if (dongle_.pulled())
        close();
}

std::optional<std::int64_t> PtyFrontEnd::nextDueUs() const
{
    if (master_ < 0)
        return std::nullopt;
    std::int64_t due = (lastBroadcastPollMs_ + kBroadcastPollMs) * 1000;
    if (!pending_.empty())
        due = std::min(due, pending_.front().first);
    if (const auto dongleDue = dongle_.nextDueMs())
        due = std::min(due, *dongleDue * 1000);
    return due;
}

int PtyFrontEnd::currentLineBaud() const
{
    // The master shares the slave's settings, so this is the rate the host has set.
    termios settings {};
    if (::tcgetattr(master_, &settings) != 0)
        return dongle_.lineBaud();
    return baudOfSpeed(::cfgetospeed(&settings));
}

void PtyFrontEnd::readFromHost(std::int64_t nowUs)
{
    char buffer[4096];
    const ssize_t count = ::read(master_, buffer, sizeof buffer);
    if (count <= 0)
        return; // EAGAIN, or EIO while no one has the slave open
    dongle_.setLineBaud(currentLineBaud());
    queue(dongle_.receive(std::string_view(buffer, static_cast<std::size_t>(count)), nowUs / 1000), nowUs,
        static_cast<std::size_t>(count));
}

void PtyFrontEnd::queue(std::string bytes, std::int64_t nowUs, std::size_t inChars)
{
    if (bytes.empty())
        return;
    const std::int64_t due = pacer_.replyDueUs(nowUs, inChars, bytes.size(), dongle_.lineBaud());
    pending_.emplace_back(due, std::move(bytes));
}

void PtyFrontEnd::writeDue(std::int64_t nowUs)
{
    while (!pending_.empty() && pending_.front().first <= nowUs) {
        const std::string& bytes = pending_.front().second;
        // A host that does not read lets the line's buffer fill; what does not fit is lost, as
        // on a real serial line.
        [[maybe_unused]] const ssize_t written = ::write(master_, bytes.data(), bytes.size());
        pending_.pop_front();
    }
}

} // namespace zvsim
