#include "monitor/list_values.h"

#include "params/number_text.h"
#include "params/smbus_parameter.h"

#include <cmath>

namespace zv {

namespace {

constexpr int kHexMode = 3;
constexpr int kHexNewAndOldMode = 4;
constexpr int kNewAndOldMode = 1;
constexpr int kValueAndUnitMode = 0;

bool bitEncoded(const clsSMBusParameter& parameter)
{
    return parameter.SubBlockDataType == 0;
}

} // namespace

bool hasNewValue(const clsSMBusParameter& parameter)
{
    return parameter.NewValue.hasContent();
}

std::string storedValueText(const clsSMBusParameter& parameter, const DisplaySettings& display, int otherMode)
{
    const std::string text = trimBlanks(parameter.value.toText(display.locale));
    if (text == kErrorValue)
        return kErrorValue;
    if (text.empty())
        return {};
    return parameter.ToString(bitEncoded(parameter) ? kHexMode : otherMode, display);
}

int tabValueMode(const clsSMBusParameter& parameter)
{
    const std::string units = toLower(parameter.EngineeringUnitsString);
    return units == "kelvin" || units == "k" || units == "k/min" ? kValueAndUnitMode : kNewAndOldMode;
}

std::string editedValueText(const clsSMBusParameter& parameter, const DisplaySettings& display)
{
    if (!bitEncoded(parameter))
        return parameter.ToString(kNewAndOldMode, display);
    return parameter.ToString(hasNewValue(parameter) ? kHexNewAndOldMode : kHexMode, display);
}

long valueBits(const clsSMBusParameter* parameter, const DisplaySettings& display)
{
    if (!parameter)
        return 0;
    const auto number = parameter->value.asNumber(display.locale);
    return number ? std::lround(*number) : 0;
}

} // namespace zv
