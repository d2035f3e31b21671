#include "params/dynamic_value.h"

namespace zv {

std::optional<double> DynamicValue::asNumber(const NumberLocale& locale) const
{
    if (isNumber()) {
        return number();
    }
    if (isText()) {
        return parseNumber(text(), locale.decimalSeparator);
    }
    return std::nullopt;
}

std::string DynamicValue::toText(const NumberLocale& locale) const
{
    if (isNumber()) {
        return generalNumberText(number(), locale);
    }
    if (isText()) {
        return text();
    }
    return {};
}

} // namespace zv
