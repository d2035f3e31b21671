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
    const auto image = hexBytes(fileText);
    if (!image) {
        if (directory_.DirectoryElements.fileEntry(parameter.FileNumber))
            parameter.value = DynamicValue();
        return;
    }
    applyValue(parameter, std::span<const std::uint8_t>(*image), baseElement);
}

void FileTransfer::applyValue(
    clsSMBusParameter& parameter, std::span<const std::uint8_t> image, int baseElement) const
{
    const auto* entry = directory_.DirectoryElements.fileEntry(parameter.FileNumber);
    if (!entry)
        return;
    const int format = static_cast<int>(entry->FileFormat());
    const int element = parameter.FileIndex + baseElement;
    const int chunk = static_cast<int>(entry->FileChunk);
    // A place the file does not hold is an error, not an empty or a made-up value.
    if (!elementInImage(image.size(), format, element, chunk)) {
        parameter.value = DynamicValue(std::string(kValueOutsideFile));
        return;
    }
    parameter.value = conversion_.FormatData(
        image, format, element, parameter.SubBlockDataType, parameter.SubBlockDataScaling, chunk);
}

int FileTransfer::sectionElements(int file) const
{
    const auto* first = nodes_.Item(1);
    if (!first)
        return 0;
    // The sum of the parameters' sizes: each takes one element of the file.
    int elements = 0;
    for (const auto& parameter : first->NodeParameters)
        if (parameter.FileNumber == file)
            ++elements;
    return elements;
}

void FileTransfer::spreadValues(int file, const std::string& text) const
{
    const auto decoded = hexBytes(text);
    if (!decoded) {
        for (auto& parameter : gateway_)
            if (parameter.FileNumber == file)
                parameter.value = DynamicValue();
        return;
    }
    const std::span<const std::uint8_t> image(*decoded);
    for (auto& parameter : gateway_)
        if (parameter.FileNumber == file)
            applyValue(parameter, image);
    if (!isPerNodeFile(file))
        return;
    const int section = sectionElements(file);
    int base = 0;
    for (auto& node : nodes_) {
        for (auto& parameter : node.NodeParameters)
            if (parameter.FileNumber == file)
                applyValue(parameter, image, base);
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
    for (const FilePart& part : parts) {
        FileRequest request;
        request.access = 1;
        request.file = file;
        request.offset = part.offset;
        request.count = part.count;
        const std::size_t chunk = entry->FileChunk;
        const auto from = std::min(data.size(), static_cast<std::size_t>(part.offset) * chunk);
        const auto to = std::min(data.size(), from + static_cast<std::size_t>(part.count) * chunk);
        request.data.assign(
            data.begin() + static_cast<std::ptrdiff_t>(from), data.begin() + static_cast<std::ptrdiff_t>(to));
        ok = files_.FileAccessRequest(request).ok;
        if (!ok)
            return false; // the later parts would land beside a part the device did not take
    }
    return ok;
}

} // namespace zv
