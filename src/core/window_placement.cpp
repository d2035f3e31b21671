#include "core/window_placement.h"

#include "core/settings_table.h"
#include "platform/val.h"

#include <algorithm>
#include <cmath>

namespace zv {

namespace {

int twips(const platform::SettingsStore& store, const char* name, const std::string& programFolder)
{
    if (!name)
        return 0;
    const double value = Val(readSetting(store, name, programFolder));
    return static_cast<int>(std::clamp(std::trunc(value), -1.0e9, 1.0e9));
}

int onScreen(int offset, int screenExtent)
{
    return offset < 0 || offset > 0.9 * screenExtent ? 0 : offset;
}

} // namespace

platform::ui::Bounds readPlacement(const platform::SettingsStore& store, const PlacementKeys& keys,
    const platform::ui::ScreenSize& screen, const std::string& programFolder)
{
    platform::ui::Bounds bounds;
    bounds.top = onScreen(twips(store, keys.top, programFolder), screen.heightTwips);
    bounds.left = onScreen(twips(store, keys.left, programFolder), screen.widthTwips);
    bounds.width = twips(store, keys.width, programFolder);
    bounds.height = twips(store, keys.height, programFolder);
    return bounds;
}

void storePlacement(
    platform::SettingsStore& store, const PlacementKeys& keys, const platform::ui::Bounds& bounds)
{
    writeSetting(store, keys.top, std::to_string(bounds.top));
    writeSetting(store, keys.left, std::to_string(bounds.left));
    if (keys.width)
        writeSetting(store, keys.width, std::to_string(bounds.width));
    if (keys.height)
        writeSetting(store, keys.height, std::to_string(bounds.height));
}

platform::ui::Bounds logTextArea(const platform::ui::Bounds& window)
{
    return { 0, 0, std::max(0, window.width - 140), std::max(0, window.height - 400) };
}

} // namespace zv
