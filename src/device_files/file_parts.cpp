#include "device_files/file_parts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zv {

namespace {

std::vector<FilePart> split(const clsDirectoryElements& entry, double recordSize)
{
    const int length = static_cast<int>(entry.FileLength());
    if (entry.FileSize <= entry.FileMaxBytes || entry.FileMaxBytes == 0 || recordSize <= 0)
        return { { 0, length } };
    // Whole records only: a limit that is not a multiple of the record size leaves its rest unused.
    const int perPart
        = std::max(1, static_cast<int>(entry.FileMaxBytes / static_cast<std::uint32_t>(recordSize)));
    std::vector<FilePart> result;
    for (int first = 0; first < length; first += perPart)
        result.push_back({ first, std::min(perPart, length - first) });
    return result;
}

} // namespace

std::vector<FilePart> readParts(const clsDirectoryElements& entry)
{
    const auto length = entry.FileLength();
    const double record = length == 0 ? 0 : std::nearbyint(static_cast<double>(entry.FileSize) / length);
    return split(entry, record);
}

std::vector<FilePart> writeParts(const clsDirectoryElements& entry)
{
    return split(entry, entry.FileChunk);
}

} // namespace zv
