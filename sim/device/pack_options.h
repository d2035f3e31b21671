#pragma once
// What the pack is at power-on: which target, how many cells, seal and level, loader state.

#include <cstdint>
#include <string>

namespace zvsim {

enum class PackState { Application, SystemLoader, AppLoader };

struct PackOptions {
    std::uint16_t targetId = 0x1001; // 0x1001, 0x1002, 0x1003 or any id (an unknown target)
    int cells = 0; // 1 to 16; 0 takes the target's own count
    int level = 3; // access level at power-on when not sealed, 0 to 3
    bool sealed = false; // power-on level 0; only a password opens it
    std::string password; // the level 2 password; empty keeps the built-in one
    PackState state = PackState::Application;
    std::uint32_t seed = 1;
    std::string stateFile; // flash kept across runs in this text file; empty: none
    std::int64_t alarmPeriodMs = 0; // > 0: the alarm word is broadcast this often
    std::uint8_t address7 = 0x0B;
};

} // namespace zvsim
