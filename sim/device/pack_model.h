#pragma once
// Everything the pack is at one moment: its memory, its seal, its state and the work it has been
// asked to do later. The parts of the device (physics, file server, command file, loader) act on it.

#include "device/access_control.h"
#include "device/file_store.h"
#include "device/memory_map.h"
#include "device/pack_options.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <random>

namespace zvsim {

// A restart the pack has been told to make: at atMs it goes silent for silentMs, then comes back.
struct PendingRestart {
    std::int64_t atMs = 0;
    std::int64_t silentMs = 0;
    bool relearn = false;
    std::optional<PackState> state; // the state it comes back in; unchanged when empty
};

// Versions of the firmware images in the pack; 0 means no valid image.
struct FirmwareVersions {
    int application = 0;
    int build = 0;
    int data = 0;
};

struct PackModel {
    explicit PackModel(const PackOptions& opts);

    PackOptions options;
    MemoryMap map;
    FileStore files;
    AccessControl access;
    PackState state;
    FirmwareVersions firmware;
    std::int64_t nowMs = 0;
    std::optional<PendingRestart> restart;
    bool dataFlow = true;
    bool wiredArmed = false; // command 0x0D lets the next write change the wired bit
    int calibrationCell = 0; // chosen by calibration command 8
    std::int64_t safeDisconnectUntilMs = -1;
    std::deque<std::uint16_t> alarmBroadcasts;
    bool flashDirty = false; // flash changed since the state file was written
    std::mt19937 rng;

    [[nodiscard]] bool inLoader() const { return state != PackState::Application; }
    [[nodiscard]] int cells() const { return map.cells; }
    // Puts the level, the versions and the loader state into the words of file 5.
    void publishState();
    // Sets the factory passwords of file 16.
    void factoryPasswords();
};

} // namespace zvsim
