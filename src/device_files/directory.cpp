#include "device_files/directory.h"

#include "device_files/file_protocol.h"
#include "link/cellweft_events.h"
#include "params/hex_text.h"

#include <cmath>

namespace zv {

PackProperties& PackConfigurationFile::Add(const std::string& fileName, const std::string& key)
{
    PackProperties item;
    item.FileName = fileName;
    return Append(std::move(item), key);
}

clsLogFileElements& LogFile::Add(const std::string& label, const std::string& key)
{
    clsLogFileElements item;
    item.FileLabel = label;
    return Append(std::move(item), key);
}

std::vector<std::uint8_t> hexToBytes(std::string_view hex)
{
    std::vector<std::uint8_t> bytes;
    for (const auto piece : hexPieces(hex)) {
        if (const auto value = hexPieceValue(piece); value && piece.size() == 2)
            bytes.push_back(static_cast<std::uint8_t>(*value));
    }
    return bytes;
}

bool oDirectory::GetDir(FileProtocol& files, CellWeftEvents& events, const DemoCapture& capture)
{
    DirectoryElements.Clear();
    RecordsRead.clear();
    const auto readRecord = [&](int index) -> std::optional<clsDirectoryElements> {
        FileRequest request;
        request.file = 0;
        request.offset = index;
        request.count = 1;
        const auto reply = files.FileAccessRequest(request);
        if (!reply.ok)
            return std::nullopt;
        if (capture)
            capture("Dir" + std::to_string(index), reply.text);
        auto parsed = parseDirectoryRecord(hexToBytes(reply.text));
        if (parsed)
            RecordsRead.push_back(*parsed);
        return parsed;
    };

    const auto first = readRecord(0);
    if (!first)
        return false;
    DirectoryElements.Append(*first);
    const int count = first->FileChunk == 0
        ? 1
        : static_cast<int>(std::nearbyint(static_cast<double>(first->FileSize) / first->FileChunk));
    for (int i = 1; i < count; ++i) {
        events.ReadDirectoryStatus(count > 1 ? i * 100 / (count - 1) : 100);
        const auto entry = readRecord(i);
        if (!entry)
            return false;
        if (entry->FileName != "Error")
            DirectoryElements.Append(*entry);
    }
    return true;
}

} // namespace zv
