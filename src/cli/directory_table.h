#pragma once
// The device directory as a text table, one line a file.

#include <iosfwd>

namespace zv {
class DirectoryElements;
}

namespace zv::cli {

void printDirectoryTable(const DirectoryElements& directory, std::ostream& out);

} // namespace zv::cli
