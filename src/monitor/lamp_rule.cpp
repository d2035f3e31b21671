#include "monitor/lamp_rule.h"

namespace zv::lamp {

bool inErrorFamily(const std::string& icon)
{
    return icon == kError || icon == kErrorDim;
}

Lamp flagLamp(const std::string& current, bool set, bool fault)
{
    if (inErrorFamily(current))
        return { set ? kError : kErrorDim, set };
    if (!set)
        return { kOff, false };
    return { fault ? kRed : kGreen, true };
}

Lamp bitListLamp(const std::string& current, bool set, bool fault)
{
    if (fault || inErrorFamily(current))
        return { set ? kError : kErrorDim, set };
    return { set ? kInfo : kInfoDim, set };
}

Lamp safetyLamp(bool alert, bool status)
{
    switch (static_cast<int>(alert) + static_cast<int>(status)) {
    case 0:
        return { kOff, false };
    case 1:
        return { kYellow, true };
    default:
        return { kRed, true };
    }
}

} // namespace zv::lamp
