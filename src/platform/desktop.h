#pragma once
// Files and programs: the program folder and opening a file or link with its associated program.

#include <string>

namespace zv::platform {

// The program folder: ZENTAVIA_HOME when set, else the folder of the executable.
[[nodiscard]] std::string programFolder();

class Desktop {
public:
    virtual ~Desktop() = default;
    // Opens a file or an address with the associated program; false when it could not be started.
    virtual bool openExternal(const std::string& pathOrUrl) = 0;
};

} // namespace zv::platform
