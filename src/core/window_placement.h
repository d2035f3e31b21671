#pragma once
// Where a window opens: its position (and size) settings in twips, read on opening and stored on
// unloading.

#include "platform/settings_store.h"
#include "platform/ui/window.h"

#include <string>

namespace zv {

// A window that keeps only its position has no width and height keys (nullptr).
struct PlacementKeys {
    const char* top;
    const char* left;
    const char* width = nullptr;
    const char* height = nullptr;
};

// Reads the values (table defaults when missing; 0 for a size without a key). A top or left below 0 or above
// 0.9 of the screen's height or width becomes 0, so a window never opens off screen.
[[nodiscard]] platform::ui::Bounds readPlacement(const platform::SettingsStore& store,
    const PlacementKeys& keys, const platform::ui::ScreenSize& screen, const std::string& programFolder);

void storePlacement(
    platform::SettingsStore& store, const PlacementKeys& keys, const platform::ui::Bounds& bounds);

// The text box of a log window fills it less 140 twips of width and 400 of height.
[[nodiscard]] platform::ui::Bounds logTextArea(const platform::ui::Bounds& window);

} // namespace zv
