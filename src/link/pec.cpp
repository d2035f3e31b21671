#include "link/pec.h"

#include <array>

namespace zv {

namespace {

constexpr std::array<std::uint8_t, 256> buildTable()
{
    std::array<std::uint8_t, 256> table {};
    for (int i = 0; i < 256; ++i) {
        auto crc = static_cast<std::uint8_t>(i);
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<std::uint8_t>((crc & 0x80) ? (crc << 1) ^ 0x07 : crc << 1);
        table[static_cast<std::size_t>(i)] = crc;
    }
    return table;
}

constexpr auto kPecTable = buildTable();

} // namespace

std::uint8_t pec(std::span<const std::uint8_t> bytes)
{
    std::uint8_t crc = 0;
    for (const auto b : bytes)
        crc = kPecTable[crc ^ b];
    return crc;
}

} // namespace zv
