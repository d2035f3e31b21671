#include "device/pec.h"

namespace zvsim {

std::uint8_t smbusPec(std::span<const std::uint8_t> bytes, std::uint8_t crc)
{
    for (std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<std::uint8_t>((crc & 0x80) ? (crc << 1) ^ 0x07 : crc << 1);
    }
    return crc;
}

std::uint8_t smbusPec(std::initializer_list<std::uint8_t> bytes)
{
    return smbusPec(std::span<const std::uint8_t>(bytes.begin(), bytes.size()));
}

} // namespace zvsim
