#pragma once
// The seal: the access level the pack grants, the level passwords of file 16 and the login through
// file 3.

#include "device/file_store.h"

#include <cstdint>
#include <span>
#include <string>

namespace zvsim {

class AccessControl {
public:
    static constexpr int PasswordFile = 16;
    static constexpr int RecordBytes = 8;

    AccessControl(FileStore& files, int powerOnLevel);

    [[nodiscard]] int level() const { return level_; }
    [[nodiscard]] int powerOnLevel() const { return powerOnLevel_; }
    void setLevel(int level) { level_ = level; }

    // Compares the eight bytes with the records of file 16, highest level first. A match grants
    // that level; anything else leaves the level as it was. Unset records (all 0xFF) never match.
    // Returns the level granted, or -1 when nothing matched.
    int login(std::span<const std::uint8_t> password);

    // Back to the power-on level (the seal closes again).
    void lock() { level_ = powerOnLevel_; }

    // Writes a level's password record (text padded with zeros, at most 8 characters).
    void setPassword(int level, const std::string& text);
    [[nodiscard]] bool passwordSet(int level) const;

private:
    FileStore& files_;
    int powerOnLevel_;
    int level_;
};

} // namespace zvsim
