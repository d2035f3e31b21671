#include "device_files/directory_element.h"

namespace zv {
namespace {

constexpr std::size_t kNameBytes = 11;

std::uint32_t wordAt(std::span<const std::uint8_t> record, std::size_t offset)
{
    return record[offset] | (static_cast<std::uint32_t>(record[offset + 1]) << 8);
}

} // namespace

std::uint32_t clsDirectoryElements::FileLength() const
{
    if (FileChunk == 0) {
        return 0;
    }
    const std::uint32_t quotient = FileSize / FileChunk;
    const std::uint32_t twiceRemainder = 2 * (FileSize % FileChunk);
    if (twiceRemainder > FileChunk || (twiceRemainder == FileChunk && quotient % 2 == 1)) {
        return quotient + 1;
    }
    return quotient;
}

std::optional<clsDirectoryElements> parseDirectoryRecord(std::span<const std::uint8_t> record)
{
    if (record.size() < kDirectoryRecordBytes) {
        return std::nullopt;
    }
    clsDirectoryElements entry;
    for (std::size_t i = 0; i < kNameBytes; ++i) {
        if (record[i] >= 32 && record[i] <= 126) {
            entry.FileName += static_cast<char>(record[i]);
        }
    }
    entry.FileAccess = wordAt(record, 11);
    entry.setFileType(wordAt(record, 13));
    entry.FileSize = wordAt(record, 15);
    entry.FileChunk = wordAt(record, 17);
    entry.FileLocation = wordAt(record, 19);
    entry.FileVersion = wordAt(record, 21);
    entry.FileMaxBytes = wordAt(record, 23);
    return entry;
}

clsDirectoryElements& DirectoryElements::Add(const std::string& fileName, const std::string& key)
{
    clsDirectoryElements entry;
    entry.FileName = fileName;
    return Append(std::move(entry), key);
}

} // namespace zv
