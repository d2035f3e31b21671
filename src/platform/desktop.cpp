#include "platform/desktop.h"

#include <cstdlib>
#include <filesystem>

namespace zv::platform {

std::string programFolder()
{
    if (const char* home = std::getenv("ZENTAVIA_HOME"); home && *home)
        return std::filesystem::path(home).lexically_normal().string();
    std::error_code ec;
    const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec)
        return std::filesystem::current_path().string();
    return exe.parent_path().string();
}

} // namespace zv::platform
