#include "platform/append_file.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace zv::platform {

AppendFile::~AppendFile()
{
    close();
}

int AppendFile::open(const std::string& path)
{
    close();
    fd_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    return fd_ < 0 ? errno : 0;
}

bool AppendFile::append(std::string_view text)
{
    if (fd_ < 0)
        return false;
    while (!text.empty()) {
        const ssize_t written = ::write(fd_, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void AppendFile::sync()
{
    if (fd_ >= 0)
        (void)::fdatasync(fd_);
}

void AppendFile::close()
{
    if (fd_ < 0)
        return;
    (void)::fdatasync(fd_);
    (void)::close(fd_);
    fd_ = -1;
}

} // namespace zv::platform
