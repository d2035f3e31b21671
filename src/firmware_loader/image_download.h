#pragma once
// The block download of one section: its byte count rounded up to whole blocks, the blocks
// filled with zeros behind the section's bytes, and the block-mode write request for its file.

#include "device_files/file_protocol.h"
#include "firmware_loader/enc_file.h"

#include <cstdint>
#include <vector>

namespace zv {

// Blocks of `blockSize` bytes that hold `bytes` bytes: a part block counts as a whole one.
[[nodiscard]] int blockCount(std::size_t bytes, int blockSize);

// The section's bytes at the head of blockCount * blockSize zero bytes.
[[nodiscard]] std::vector<std::uint8_t> blockImage(const BootSection& section, int blockSize);

// Write, the section's file, offset 0, the blocks, PEC, block mode of `blockSize`, no write wait.
[[nodiscard]] FileRequest sectionRequest(const BootSection& section, int blockSize);

} // namespace zv
