#include "device_files/file_parts.h"

#include <algorithm>
#include <cmath>

namespace zv {

namespace {

std::vector<FilePart> split(const clsDirectoryElements& entry, double recordSize)
{
    const int length = static_cast<int>(entry.FileLength());
    if (entry.FileSize <= entry.FileMaxBytes || entry.FileMaxBytes == 0 || recordSize <= 0)
        return { { 0, length } };
    const int perPart
        = std::max(1, static_cast<int>(entry.FileMaxBytes / static_cast<std::uint32_t>(recordSize)));
    const int parts = static_cast<int>((entry.FileSize + entry.FileMaxBytes - 1) / entry.FileMaxBytes);
    std::vector<FilePart> result;
    for (int i = 0; i < parts; ++i) {
        const bool full = static_cast<double>(length) / (perPart * (i + 1)) >= 1.0;
        result.push_back({ i * perPart, full ? perPart : length % perPart });
    }
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
