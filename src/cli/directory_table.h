#pragma once
// The device directory as a text table, one line a record as the device gave it: the entries
// the application leaves out (named "Error") are shown too.

#include <iosfwd>
#include <vector>

namespace zv {
class clsDirectoryElements;
}

namespace zv::cli {

void printDirectoryTable(const std::vector<clsDirectoryElements>& records, std::ostream& out);

} // namespace zv::cli
