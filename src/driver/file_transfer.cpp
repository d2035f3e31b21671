#include "driver/file_transfer.h"

#include "device_files/directory.h"
#include "device_files/file_parts.h"
#include "params/raw_conversion.h"
#include "params/smbus_parameter.h"

#include <algorithm>

namespace zv {

bool isPerNodeFile(int fileNumber)
{
    return fileNumber == 4 || fileNumber == 6 || fileNumber == 12;
}

FileTransfer::FileTransfer(FileProtocol& files, oDirectory& directory, ParameterList& gateway,
    NodeList& nodes, const ValueConversion& conversion, const bool& demo)
    : files_(files)
    , directory_(directory)
    , gateway_(gateway)
    , nodes_(nodes)
    , conversion_(conversion)
    , demo_(demo)
{
}

std::optional<std::string> FileTransfer::readFile(int file, PartWait wait)
{
    const auto* entry = directory_.DirectoryElements.fileEntry(file);
    if (!entry)
        return std::nullopt;
    const auto parts
        = demo_ ? std::vector<FilePart> { { 0, static_cast<int>(entry->FileLength()) } } : readParts(*entry);
    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const bool waits = wait == PartWait::Idle || (wait == PartWait::DongleIdle && !files_.onUsb());
        if (i > 0 && waits && !files_.waitUntilIdle())
            return std::nullopt;
        FileRequest request;
        request.file = file;
        request.offset = parts[i].offset;
        request.count = parts[i].count;
        const auto reply = files_.FileAccessRequest(request);
        if (!reply.ok)
            return std::nullopt;
        text += reply.text;
    }
    return text;
}

void FileTransfer::applyValue(
    clsSMBusParameter& parameter, const std::string& fileText, int baseElement) const
{
    const auto* entry = directory_.DirectoryElements.fileEntry(parameter.FileNumber);
    if (!entry)
        return;
    parameter.value = conversion_.FormatData(fileText, static_cast<int>(entry->FileFormat()),
        parameter.FileIndex + baseElement, parameter.SubBlockDataType, parameter.SubBlockDataScaling,
        static_cast<int>(entry->FileChunk));
}

int FileTransfer::sectionElements(int file) const
{
    const auto* first = nodes_.Item(1);
    if (!first)
        return 0;
    int elements = 0;
    for (const auto& parameter : first->NodeParameters)
        if (parameter.FileNumber == file)
            elements = std::max(elements, parameter.FileIndex + 1);
    return elements;
}

void FileTransfer::spreadValues(int file, const std::string& text) const
{
    for (auto& parameter : gateway_)
        if (parameter.FileNumber == file)
            applyValue(parameter, text);
    if (!isPerNodeFile(file))
        return;
    const int section = sectionElements(file);
    int base = 0;
    for (auto& node : nodes_) {
        for (auto& parameter : node.NodeParameters)
            if (parameter.FileNumber == file)
                applyValue(parameter, text, base);
        base += section;
    }
}

bool FileTransfer::GetFile(int file, std::string& text)
{
    const auto read = readFile(file);
    if (!read)
        return false;
    text = *read;
    spreadValues(file, text);
    return true;
}

bool FileTransfer::PutFile(int file, const std::vector<std::uint8_t>& data)
{
    const auto* entry = directory_.DirectoryElements.fileEntry(file);
    if (!entry)
        return false;
    const auto parts
        = demo_ ? std::vector<FilePart> { { 0, static_cast<int>(entry->FileLength()) } } : writeParts(*entry);
    bool ok = false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        FileRequest request;
        request.access = 1;
        request.file = file;
        request.offset = parts[i].offset;
        request.count = parts[i].count;
        const auto from = std::min(data.size(), i * entry->FileMaxBytes);
        const auto to
            = std::min(data.size(), from + static_cast<std::size_t>(parts[i].count) * entry->FileChunk);
        request.data.assign(
            data.begin() + static_cast<std::ptrdiff_t>(from), data.begin() + static_cast<std::ptrdiff_t>(to));
        ok = files_.FileAccessRequest(request).ok;
    }
    return ok;
}

} // namespace zv
