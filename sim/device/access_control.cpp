#include "device/access_control.h"

#include <algorithm>

namespace zvsim {

AccessControl::AccessControl(FileStore& files, int powerOnLevel)
    : files_(files)
    , powerOnLevel_(std::clamp(powerOnLevel, 0, 3))
    , level_(powerOnLevel_)
{
}

int AccessControl::login(std::span<const std::uint8_t> password)
{
    if (password.size() != RecordBytes)
        return -1;
    const std::vector<std::uint8_t>& records = files_.bytes(PasswordFile);
    for (int level = 3; level >= 1; --level) {
        if (!passwordSet(level))
            continue;
        auto record = records.begin() + (level - 1) * RecordBytes;
        if (std::equal(password.begin(), password.end(), record)) {
            level_ = level;
            return level;
        }
    }
    return -1;
}

void AccessControl::setPassword(int level, const std::string& text)
{
    std::vector<std::uint8_t>& records = files_.bytes(PasswordFile);
    for (int i = 0; i < RecordBytes; ++i)
        records[static_cast<std::size_t>((level - 1) * RecordBytes + i)] = i < static_cast<int>(text.size())
            ? static_cast<std::uint8_t>(text[static_cast<std::size_t>(i)])
            : 0;
}

bool AccessControl::passwordSet(int level) const
{
    const std::vector<std::uint8_t>& records = files_.bytes(PasswordFile);
    auto record = records.begin() + (level - 1) * RecordBytes;
    return std::any_of(record, record + RecordBytes, [](std::uint8_t b) { return b != 0xFF; });
}

} // namespace zvsim
