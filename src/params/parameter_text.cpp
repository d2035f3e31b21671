// The display text of a parameter (ToString) and the meaning of one raw count (ScaledUnits).

#include "params/hex_text.h"
#include "params/smbus_parameter.h"

namespace zv {
namespace {

constexpr double kCelsiusLimit = 75; // raw Kelvin values above this are shown in Celsius
constexpr double kCelsiusOffset = 273;

bool isTemperatureUnit(const std::string& unit)
{
    return unit == "kelvin" || unit == "k" || unit == "k/min";
}

struct WorkingTexts {
    std::string value;
    std::string newValue;
    std::string unit;
};

// A numeric text in the format "0.0"; other texts stay as they are.
std::string formatTenths(const std::string& text, const NumberLocale& locale)
{
    const auto number = parseNumber(text, locale.decimalSeparator);
    return number ? formatNumber(*number, "0.0", locale) : text;
}

std::string celsiusText(const DynamicValue& value, const NumberLocale& locale)
{
    const auto number = value.asNumber(locale);
    if (!number) {
        return value.toText(locale);
    }
    const double shown = *number > kCelsiusLimit ? *number - kCelsiusOffset : *number;
    return formatNumber(shown, "0.0", locale);
}

// The value multiplied by the factor of its unit, with the unit text that goes with it.
void applyUnitScaling(const clsSMBusParameter& p, const DisplaySettings& s, WorkingTexts& texts)
{
    const double v = p.VScale == 1 ? s.VScale : 1;
    const double i = p.IPscale == 1 ? s.IPScale : 1;
    const std::string unit = toLower(p.EngineeringUnitsString);
    double factor = 1;
    if (unit == "mv") {
        factor = v;
    } else if (unit == "ma") {
        factor = i;
    } else if (unit == "10mwh") {
        factor = v * i * 10;
        texts.unit = "mWh";
    } else if (unit == "watts") {
        factor = v * i;
    } else if (unit == "(mah | 10mwh)") {
        factor = s.CapacityMode == 1 ? v * i * 10 : i;
        texts.unit = s.CapacityMode == 1 ? "mWh" : "mAh";
    } else if (unit == "(ma | 10mw)") {
        factor = s.CapacityMode == 1 ? v * i * 10 : i;
        texts.unit = s.CapacityMode == 1 ? "mW" : "mA";
    }
    if (const auto number = p.value.asNumber(s.locale); number && factor != 1) {
        texts.value = generalNumberText(toFifteenDigits(*number * factor), s.locale);
    }
}

WorkingTexts workingTexts(const clsSMBusParameter& p, const DisplaySettings& s)
{
    const std::string unit = toLower(p.EngineeringUnitsString);
    WorkingTexts texts { p.value.toText(s.locale), p.NewValue.toText(s.locale), p.EngineeringUnitsString };
    if (isTemperatureUnit(unit) && s.TemperatureUnits == 1) {
        texts.unit = unit == "k/min" ? "°C/Min" : "°C";
        texts.value = celsiusText(p.value, s.locale);
        if (p.NewValue.hasContent()) {
            texts.newValue = celsiusText(p.NewValue, s.locale);
        }
    } else if (unit == "k/min") {
        texts.unit = "K/Min";
        texts.value = formatTenths(texts.value, s.locale);
        texts.newValue = formatTenths(texts.newValue, s.locale);
    } else {
        applyUnitScaling(p, s, texts);
    }

    const std::string shownUnit = toLower(texts.unit);
    const char* renamed = nullptr;
    if (shownUnit == "c" || shownUnit == "celsius") {
        renamed = "°C";
    } else if (shownUnit == "k" || shownUnit == "kelvin") {
        renamed = "K";
    } else if (shownUnit == "k/min") {
        renamed = "K/Min";
    }
    if (renamed != nullptr) {
        texts.unit = renamed;
        texts.value = formatTenths(texts.value, s.locale);
        texts.newValue = formatTenths(texts.newValue, s.locale);
    }
    for (auto* text : { &texts.value, &texts.newValue }) {
        if (!text->empty() && (text->back() == '.' || text->back() == s.locale.decimalSeparator)) {
            text->pop_back();
        }
    }
    return texts;
}

std::string hexOf(const DynamicValue& value)
{
    return convertToHex(value, 0).value_or("");
}

} // namespace

std::string clsSMBusParameter::ToString(int mode, const DisplaySettings& settings) const
{
    if (value.isText() && value.text() == "#Error") {
        return {};
    }
    const WorkingTexts t = workingTexts(*this, settings);
    const bool waiting = NewValue.hasContent();
    switch (mode) {
    case 0:
        return trimBlanks(t.value) + " " + t.unit;
    case 1:
        if (waiting) {
            return trimBlanks(t.newValue) + " " + t.unit + " (was " + trimBlanks(t.value) + " " + t.unit
                + ")";
        }
        return trimBlanks(t.value) + " " + t.unit;
    case 2:
        return trimBlanks(t.value);
    case 3:
        return hexOf(value);
    case 4:
        if (waiting) {
            return hexOf(NewValue) + " (was " + hexOf(value) + ")";
        }
        return hexOf(value) + " " + t.unit;
    default:
        return t.value;
    }
}

std::string clsSMBusParameter::ScaledUnits(const DisplaySettings& settings) const
{
    const int V = settings.VScale;
    const int I = settings.IPScale;
    const bool vFlag = VScale == 1;
    const bool iFlag = IPscale == 1;
    const bool flagAndScale = (vFlag || iFlag) && (V != 1 || I != 1);
    const bool energyMode = settings.CapacityMode == 1;
    const auto number = [&](double n) { return generalNumberText(n, settings.locale); };
    const std::string unit = toLower(EngineeringUnitsString);

    if (unit == "mv") {
        return vFlag && V != 1 ? "mV / " + number(V) : EngineeringUnitsString;
    }
    if (unit == "ma") {
        return iFlag && I != 1 ? "mA / " + number(I) : EngineeringUnitsString;
    }
    if (unit == "10mwh") {
        return flagAndScale ? "mWh / " + number(V * 10.0 * I) : "mWh / 10";
    }
    if (unit == "watts") {
        return flagAndScale ? "Watts / " + number(static_cast<double>(V) * I) : EngineeringUnitsString;
    }
    if (unit == "(mah | 10mwh)") {
        if (flagAndScale) {
            return energyMode ? "mWh / " + number(V * 10.0 * I) : "mAh / " + number(I);
        }
        return energyMode ? "mWh / 10" : "mAh";
    }
    if (unit == "(ma | 10mw)") {
        if (flagAndScale) {
            return energyMode ? "mW / " + number(V * 10.0 * I) : "mA / " + number(I);
        }
        return energyMode ? "mW / 10" : "mA";
    }
    return EngineeringUnitsString;
}

} // namespace zv
