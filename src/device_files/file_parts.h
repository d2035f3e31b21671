#pragma once
// How a file larger than one transfer is split: as many whole records a part as FileMaxBytes
// holds, the short last part. Parts never cut a record, whatever the limit.

#include "device_files/directory_element.h"

#include <vector>

namespace zv {

struct FilePart {
    int offset = 0; // first record
    int count = 0; // records
};

// The parts GetFile reads (record size FileSize / FileLength). One part of the whole file
// when it fits in one transfer.
[[nodiscard]] std::vector<FilePart> readParts(const clsDirectoryElements& entry);
// The parts PutFile writes (record size FileChunk); a part's bytes start at offset * FileChunk.
[[nodiscard]] std::vector<FilePart> writeParts(const clsDirectoryElements& entry);

} // namespace zv
