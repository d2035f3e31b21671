#include "platform/atomic_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zv {

namespace {

std::runtime_error failure(const std::string& what, const std::string& path, int error)
{
    return std::runtime_error(what + " " + path + ": " + std::strerror(error));
}

} // namespace

void writeFileReplacing(const std::string& path, std::string_view bytes)
{
    const std::filesystem::path target(path);
    std::string pattern = (target.parent_path().empty() ? std::filesystem::path(".") : target.parent_path())
        / ("." + target.filename().string() + ".XXXXXX");
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int fd = ::mkstemp(name.data());
    if (fd < 0)
        throw failure("Cannot write", path, errno);
    const std::string temporary(name.data());
    std::size_t written = 0;
    while (written < bytes.size()) {
        const auto n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const int error = errno;
            ::close(fd);
            ::unlink(temporary.c_str());
            throw failure("Cannot write", path, error);
        }
        written += static_cast<std::size_t>(n);
    }
    // The new file gets the permissions an ordinary new file would have.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    (void)::fchmod(fd, 0666 & ~mask);
    if (::fsync(fd) != 0 || ::close(fd) != 0) {
        const int error = errno;
        ::unlink(temporary.c_str());
        throw failure("Cannot write", path, error);
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        const int error = errno;
        ::unlink(temporary.c_str());
        throw failure("Cannot replace", path, error);
    }
}

std::string readWholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw failure("Cannot open", path, errno);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

} // namespace zv
