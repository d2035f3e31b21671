#include "core/paths.h"

namespace zv {

std::string joinPath(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (!path.empty() && path.back() != '/' && !name.empty() && name.front() != '/')
        path += '/';
    path += name;
    return path;
}

} // namespace zv
