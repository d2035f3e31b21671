#include "firmware_loader/image_download.h"

namespace zv {

int blockCount(std::size_t bytes, int blockSize)
{
    const auto size = static_cast<std::size_t>(blockSize);
    return static_cast<int>((bytes + size - 1) / size);
}

std::vector<std::uint8_t> blockImage(const BootSection& section, int blockSize)
{
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(blockCount(section.bytes(), blockSize))
            * static_cast<std::size_t>(blockSize),
        0);
    for (std::size_t i = 0; i < section.bytes(); ++i)
        bytes[i] = static_cast<std::uint8_t>(std::stoi(section.data.substr(2 * i, 2), nullptr, 16));
    return bytes;
}

FileRequest sectionRequest(const BootSection& section, int blockSize)
{
    FileRequest request;
    request.access = 1;
    request.file = static_cast<int>(section.file);
    request.offset = 0;
    request.count = blockCount(section.bytes(), blockSize);
    request.data = blockImage(section, blockSize);
    request.usePec = true;
    request.blockSize = blockSize;
    request.writeWait = 0;
    return request;
}

} // namespace zv
