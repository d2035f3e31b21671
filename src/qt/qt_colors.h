#pragma once
// Colours of the control seam (0x00BBGGRR) as Qt colours.

#include "platform/dialogs.h"

#include <QColor>

namespace zv::qt {

[[nodiscard]] inline QColor toQColor(platform::Rgb rgb)
{
    return QColor(static_cast<int>(rgb & 0xFF), static_cast<int>((rgb >> 8) & 0xFF),
        static_cast<int>((rgb >> 16) & 0xFF));
}

[[nodiscard]] inline platform::Rgb fromQColor(const QColor& color)
{
    return static_cast<platform::Rgb>(color.red()) | (static_cast<platform::Rgb>(color.green()) << 8)
        | (static_cast<platform::Rgb>(color.blue()) << 16);
}

} // namespace zv::qt
