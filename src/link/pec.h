#pragma once
// SMBus packet error code: CRC-8, polynomial x^8 + x^2 + x + 1, initial 0, no reflection.

#include <cstdint>
#include <span>

namespace zv {

[[nodiscard]] std::uint8_t pec(std::span<const std::uint8_t> bytes);

} // namespace zv
