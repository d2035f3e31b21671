#include "sim_device/host.h"

namespace simtest {

std::uint8_t pec(const std::vector<std::uint8_t>& bytes)
{
    std::uint8_t crc = 0;
    for (std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int i = 0; i < 8; ++i)
            crc = static_cast<std::uint8_t>(crc & 0x80 ? (crc << 1) ^ 0x07 : crc << 1);
    }
    return crc;
}

bool Host::send(const std::vector<std::uint8_t>& bytes)
{
    return pack_.masterWrite(bytes);
}

bool Host::writeWord(std::uint8_t command, std::uint16_t value)
{
    std::vector<std::uint8_t> bytes { command, static_cast<std::uint8_t>(value & 0xFF),
        static_cast<std::uint8_t>(value >> 8) };
    std::vector<std::uint8_t> covered { W };
    covered.insert(covered.end(), bytes.begin(), bytes.end());
    bytes.push_back(pec(covered));
    return send(bytes);
}

std::optional<std::uint16_t> Host::readWord(std::uint8_t command)
{
    if (!pack_.masterWriteCommand(command))
        return std::nullopt;
    auto reply = pack_.masterRead(3);
    if (!reply || reply->size() != 3)
        return std::nullopt;
    if (pec({ W, command, R, (*reply)[0], (*reply)[1] }) != (*reply)[2])
        return std::nullopt;
    return static_cast<std::uint16_t>((*reply)[0] | ((*reply)[1] << 8));
}

std::optional<std::vector<std::uint8_t>> Host::readBlock(std::uint8_t command)
{
    if (!pack_.masterWriteCommand(command))
        return std::nullopt;
    auto reply = pack_.masterRead(0);
    if (!reply || reply->empty() || reply->size() != static_cast<std::size_t>((*reply)[0]) + 2)
        return std::nullopt;
    std::vector<std::uint8_t> covered { W, command, R };
    covered.insert(covered.end(), reply->begin(), reply->end() - 1);
    if (pec(covered) != reply->back())
        return std::nullopt;
    return std::vector<std::uint8_t>(reply->begin() + 1, reply->end() - 1);
}

bool Host::writeBlock(std::uint8_t command, const std::vector<std::uint8_t>& data)
{
    std::vector<std::uint8_t> bytes { command, static_cast<std::uint8_t>(data.size()) };
    bytes.insert(bytes.end(), data.begin(), data.end());
    std::vector<std::uint8_t> covered { W };
    covered.insert(covered.end(), bytes.begin(), bytes.end());
    bytes.push_back(pec(covered));
    return send(bytes);
}

void Host::open()
{
    (void)writeWord(0x00, 0x6E21);
    (void)writeWord(0x00, 0x7A3C);
}

bool Host::request(int access, int file, int offset, int count)
{
    return writeBlock(0x3C,
        { static_cast<std::uint8_t>(access), static_cast<std::uint8_t>(file),
            static_cast<std::uint8_t>(offset & 0xFF), static_cast<std::uint8_t>(offset >> 8),
            static_cast<std::uint8_t>(count & 0xFF), static_cast<std::uint8_t>(count >> 8) });
}

std::array<std::uint8_t, 2> Host::status()
{
    if (!pack_.masterWriteCommand(0x3D))
        return { 0xFE, 0xFE };
    auto reply = pack_.masterRead(3);
    if (!reply)
        return { 0xFE, 0xFE };
    return { (*reply)[0], (*reply)[1] };
}

int Host::settle()
{
    for (int i = 0; i < 1000; ++i) {
        auto [code, extra] = status();
        lastExtra = extra;
        if (code != 255)
            return code;
        advance(5);
    }
    return 255;
}

Host::Read Host::readFile(int file, int offset, int count)
{
    Read result;
    if (!request(0, file, offset, count))
        return result;
    advance(1);
    result.status = lastRequestStatus = settle();
    if (result.status == 0)
        result.data = readBlock(0x3F).value_or(std::vector<std::uint8_t> {});
    return result;
}

int Host::writeFile(int file, int offset, int count, const std::vector<std::uint8_t>& data)
{
    if (!request(1, file, offset, count))
        return -2;
    advance(1);
    lastRequestStatus = settle();
    if (lastRequestStatus != 0)
        return -1;
    if (!writeBlock(0x3E, data))
        return -2;
    advance(1);
    return settle();
}

int Host::command(std::uint16_t code, std::uint16_t argument)
{
    return writeFile(27, 0, 2,
        { static_cast<std::uint8_t>(code & 0xFF), static_cast<std::uint8_t>(code >> 8),
            static_cast<std::uint8_t>(argument & 0xFF), static_cast<std::uint8_t>(argument >> 8) });
}

std::uint16_t Host::word(int file, int element)
{
    const zvsim::FileSpec* spec = pack_.model().map.file(file);
    Read read = readFile(file, 0,
        spec->size / spec->chunk > spec->maxBytes / spec->chunk ? spec->maxBytes / spec->chunk
                                                                : spec->size / spec->chunk);
    auto at = static_cast<std::size_t>(2 * element);
    if (read.status != 0 || at + 1 >= read.data.size())
        return 0xDEAD;
    return static_cast<std::uint16_t>(read.data[at] | (read.data[at + 1] << 8));
}

void Host::advance(std::int64_t ms)
{
    now_ += ms;
    pack_.advanceTo(now_);
}

} // namespace simtest
