#pragma once
// What the display of a value depends on besides the parameter itself: the target's scaling,
// its capacity mode, the temperature preference and the user's decimal separator.

#include "params/number_text.h"

namespace zv {

struct DisplaySettings {
    int VScale = 1; // power of ten for voltages
    int IPScale = 1; // power of ten for current and power
    int CapacityMode = 0; // 1: capacities in 10 mWh, 0: in mAh
    int TemperatureUnits = 1; // 1: Celsius display, 0: Kelvin
    NumberLocale locale;
};

} // namespace zv
