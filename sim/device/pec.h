#pragma once
// SMBus packet error code: CRC-8, polynomial x^8 + x^2 + x + 1, initial value 0.

#include <cstdint>
#include <initializer_list>
#include <span>

namespace zvsim {

[[nodiscard]] std::uint8_t smbusPec(std::span<const std::uint8_t> bytes, std::uint8_t crc = 0);
[[nodiscard]] std::uint8_t smbusPec(std::initializer_list<std::uint8_t> bytes);

} // namespace zvsim
