#pragma once
// One entry of the device's directory (clsDirectoryElements) and the list of them, where
// position n + 1 describes device file n.

#include "params/keyed_list.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zv {

class clsDirectoryElements {
public:
    std::string FileName;
    // Bits 0-3 read level, 4-7 write level, 8-11 and 12-15 a second read and write pair.
    std::uint32_t FileAccess = 0;
    std::uint32_t FileSize = 0;
    std::uint32_t FileChunk = 0; // bytes per record
    std::uint32_t FileLocation = 0; // address on the device, for display
    std::uint32_t FileVersion = 0;
    std::uint32_t FileMaxBytes = 0; // largest transfer of this file

    // Keeps the low 16 bits.
    void setFileType(std::uint32_t type) { fileType_ = type & 0xFFFF; }
    [[nodiscard]] std::uint32_t FileType() const { return fileType_; }
    // Element size of the file's records: bits 4 to 7 of FileType.
    [[nodiscard]] std::uint32_t FileFormat() const { return (fileType_ >> 4) & 0xF; }
    // Bit 8: the file belongs to the pack configuration.
    [[nodiscard]] bool FileClone() const { return (fileType_ & 0x100) != 0; }
    // FileSize / FileChunk rounded to the nearest integer, ties to even; 0 without a chunk.
    [[nodiscard]] std::uint32_t FileLength() const;

    [[nodiscard]] std::uint32_t readLevel() const { return FileAccess & 0xF; }
    [[nodiscard]] std::uint32_t writeLevel() const { return (FileAccess >> 4) & 0xF; }

private:
    std::uint32_t fileType_ = 0;
};

// The 25 meaningful bytes of a directory record: name (11 characters, those outside 32 to 126
// dropped), then FileAccess, FileType, FileSize, FileChunk, FileLocation, FileVersion and
// FileMaxBytes as 16-bit values, low byte first.
inline constexpr std::size_t kDirectoryRecordBytes = 25;
[[nodiscard]] std::optional<clsDirectoryElements> parseDirectoryRecord(std::span<const std::uint8_t> record);

class DirectoryElements : public KeyedList<clsDirectoryElements> {
public:
    clsDirectoryElements& Add(const std::string& fileName, const std::string& key = {});
    // The entry of device file n (position n + 1); nothing if there is none.
    [[nodiscard]] clsDirectoryElements* fileEntry(int fileNumber) const { return Item(fileNumber + 1); }
};

} // namespace zv
