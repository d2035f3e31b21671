#pragma once
// Window positions and sizes are kept in twips: 1440 to the inch, so 15 to a pixel at 96 dpi.

namespace zv::platform::ui {

inline constexpr int kTwipsPerPixel = 15;

[[nodiscard]] constexpr int twipsToPixels(int twips)
{
    return twips / kTwipsPerPixel;
}
[[nodiscard]] constexpr int pixelsToTwips(int pixels)
{
    return pixels * kTwipsPerPixel;
}

struct ScreenSize {
    int widthTwips = 0;
    int heightTwips = 0;
};

} // namespace zv::platform::ui
