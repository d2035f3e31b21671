#include "cli/directory_table.h"

#include "device_files/directory_element.h"

#include <cstdio>
#include <ostream>

namespace zv::cli {

namespace {

constexpr const char* kHeader
    = "File  Name         Access  Type    Size   Chunk  Length  Location  Version  MaxBytes";

} // namespace

void printDirectoryTable(const std::vector<clsDirectoryElements>& records, std::ostream& out)
{
    out << kHeader << '\n';
    int position = 0;
    for (const auto& entry : records) {
        // Position n + 1 describes file n.
        char line[160];
        std::snprintf(line, sizeof line, "%4d  %-11s  0x%04X  0x%04X  %5u  %5u  %6u  0x%04X    %7u  %8u",
            position, entry.FileName.c_str(), entry.FileAccess, entry.FileType(), entry.FileSize,
            entry.FileChunk, entry.FileLength(), entry.FileLocation, entry.FileVersion, entry.FileMaxBytes);
        out << line << '\n';
        ++position;
    }
}

} // namespace zv::cli
