#pragma once
// A firmware download request for file 2: a good image of a 700-byte payload, padded to whole
// blocks of the driver's block size; `damage` flips bits of one byte to spoil its CRC.

#include "device/firmware_image.h"
#include "driver/cls_main.h"

#include <optional>
#include <vector>

namespace zv::test {

inline FileRequest firmwareRequest(clsCellWeft& driver, std::optional<std::size_t> damage = std::nullopt)
{
    std::vector<std::uint8_t> payload(700);
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<std::uint8_t>(i * 7);
    auto image = zvsim::makeFirmwareSection(5001, 13, payload);
    if (damage)
        image.at(*damage) ^= 0x5A;
    const int blockSize = driver.Files.settings().MAX_BLOCK_TRANSFER;
    const int blocks = static_cast<int>((image.size() + blockSize - 1) / blockSize);
    image.resize(static_cast<std::size_t>(blocks * blockSize), 0);
    FileRequest request;
    request.access = 1;
    request.file = 2;
    request.count = blocks;
    request.blockSize = blockSize;
    request.data = std::move(image);
    return request;
}

} // namespace zv::test
