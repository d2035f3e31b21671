#include "device/firmware_image.h"

namespace zvsim {

namespace {
constexpr int HeaderBytes = 8;

int word(std::span<const std::uint8_t> bytes, std::size_t at)
{
    return bytes[at] | (bytes[at + 1] << 8);
}

void putWord(std::vector<std::uint8_t>& bytes, int value)
{
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>((value >> 8) & 0xFF));
}
} // namespace

std::uint16_t firmwareCrc(std::span<const std::uint8_t> bytes)
{
    std::uint16_t crc = 0xFFFF;
    for (std::uint8_t byte : bytes) {
        crc ^= static_cast<std::uint16_t>(byte << 8);
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<std::uint16_t>((crc & 0x8000) ? (crc << 1) ^ 0x1021 : crc << 1);
    }
    return crc;
}

std::optional<FirmwareSection> checkFirmwareSection(std::span<const std::uint8_t> bytes)
{
    if (bytes.size() < HeaderBytes + 2 || bytes[0] != 'Z' || bytes[1] != 'V')
        return std::nullopt;
    auto length = static_cast<std::size_t>(word(bytes, 6));
    std::size_t end = HeaderBytes + length;
    if (end + 2 > bytes.size())
        return std::nullopt;
    if (firmwareCrc(bytes.first(end)) != word(bytes, end))
        return std::nullopt;
    return FirmwareSection { word(bytes, 2), word(bytes, 4) };
}

std::vector<std::uint8_t> makeFirmwareSection(int version, int build, std::span<const std::uint8_t> payload)
{
    std::vector<std::uint8_t> bytes { 'Z', 'V' };
    putWord(bytes, version);
    putWord(bytes, build);
    putWord(bytes, static_cast<int>(payload.size()));
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    putWord(bytes, firmwareCrc(bytes));
    return bytes;
}

} // namespace zvsim
