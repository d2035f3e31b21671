#pragma once
// The pack's own check of a firmware section: a small header with its versions, the payload and a
// CRC-16 behind it. Zero padding after the CRC is allowed (blocks are padded by the host).

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zvsim {

struct FirmwareSection {
    int version = 0;
    int build = 0;
};

// CRC-16, polynomial 0x1021, initial value 0xFFFF.
[[nodiscard]] std::uint16_t firmwareCrc(std::span<const std::uint8_t> bytes);

// The versions of a good section; nothing for a bad one.
[[nodiscard]] std::optional<FirmwareSection> checkFirmwareSection(std::span<const std::uint8_t> bytes);

// Builds a good section: "ZV", version, build, payload length, payload, CRC (all low byte first).
[[nodiscard]] std::vector<std::uint8_t> makeFirmwareSection(
    int version, int build, std::span<const std::uint8_t> payload);

} // namespace zvsim
