#include "editor/edit_rules.h"

#include "params/hex_text.h"
#include "params/number_text.h"
#include "params/smbus_parameter.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace zv {

namespace {

constexpr double kKelvinOffset = 273.15;
constexpr int kLastControlKey = 26;
constexpr int kDeleteKey = 127;
constexpr const char* kSecondsRdte = "seconds rdte";

bool isKelvin(const std::string& unit)
{
    return unit == "kelvin" || unit == "k";
}

bool celsius(const DisplaySettings& display)
{
    return display.TemperatureUnits == 1;
}

// Limits as text; a limit shifted by 273.15 shows without binary noise (-0.15, not -0.149999...).
std::string number(double value, const DisplaySettings& display)
{
    constexpr double kTenDecimals = 1e10;
    return generalNumberText(
        toFifteenDigits(std::round(value * kTenDecimals) / kTenDecimals), display.locale);
}

std::string fromTo(double lower, double upper, const std::string& unit, const DisplaySettings& display)
{
    return number(lower, display) + unit + " to " + number(upper, display) + unit;
}

// The parameter's scaling as a divisor; a scaling of 0 has no meaning and leaves values as they are.
double divisor(const clsSMBusParameter& parameter)
{
    return parameter.SubBlockDataScaling == 0 ? 1.0 : parameter.SubBlockDataScaling;
}

NumberVerdict inRange(double value, double lower, double upper)
{
    if (value < lower || value > upper)
        return { false, kOutOfRange };
    return { true, {} };
}

} // namespace

RangeText numericRangeText(const clsSMBusParameter& parameter, const DisplaySettings& display)
{
    const std::string unit = toLower(parameter.EngineeringUnitsString);
    const double lower = parameter.LowerWriteLimit;
    const double upper = parameter.UpperWriteLimit;
    if ((isKelvin(unit) || unit == "k/min") && !celsius(display))
        return { fromTo(lower, upper, " " + parameter.EngineeringUnitsString, display), "Kelvin", true };
    if (unit == "k/min")
        return { fromTo(lower, upper, " °C/Min", display), "°C/Min", true };
    if (isKelvin(unit))
        return { fromTo(lower - kKelvinOffset, upper - kKelvinOffset, " Celsius", display), "Celsius", true };
    const std::string scaled = parameter.ScaledUnits(display);
    return { fromTo(lower, upper, "", display),
        scaled.find("/ 10") != std::string::npos ? "Scaled in " + scaled : std::string(), false };
}

std::optional<std::string> rawHex(double displayValue, const clsSMBusParameter& parameter)
{
    const double raw = roundHalfEven(displayValue / divisor(parameter));
    if (!std::isfinite(raw) || raw < std::numeric_limits<std::int32_t>::min()
        || raw > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return convertToHex(DynamicValue(raw), 0);
}

std::string rawRangeText(const clsSMBusParameter& parameter)
{
    switch (parameter.SubBlockDataType) {
    case 3:
    case 5:
        return "Validation for Signed Variables Not Available";
    case 6:
        return kStringRange;
    case 7:
        return kHexStringRange;
    default:
        break;
    }
    const auto lower = rawHex(parameter.LowerWriteLimit, parameter);
    const auto upper = rawHex(parameter.UpperWriteLimit, parameter);
    return lower.value_or("#Error") + " - " + upper.value_or("#Error");
}

NumberVerdict validateNumber(
    const std::string& text, const clsSMBusParameter& parameter, const DisplaySettings& display)
{
    if (text.empty())
        return { false, {} };
    std::optional<double> value = parseNumber(text, display.locale.decimalSeparator);
    if (!value && trimBlanks(text) == "-")
        value = 0.0; // a minus sign on its way to a negative number
    if (!value)
        return { false, kInvalidCharacters };

    const std::string unit = toLower(parameter.EngineeringUnitsString);
    if (isKelvin(unit)) {
        const double offset = celsius(display) ? kKelvinOffset : 0.0;
        return inRange(*value, roundHalfEven(toFifteenDigits(parameter.LowerWriteLimit - offset)),
            roundHalfEven(toFifteenDigits(parameter.UpperWriteLimit - offset)));
    }
    if (unit == kSecondsRdte && std::fmod(roundHalfEven(*value), 2.0) != 0)
        return { false, kMustBeEven };
    return inRange(*value, parameter.LowerWriteLimit, parameter.UpperWriteLimit);
}

bool keyAllowed(int keyCode, const clsSMBusParameter& parameter, const DisplaySettings& display)
{
    const int type = parameter.SubBlockDataType;
    // Control keys pass: the codes up to 26, and as well Escape, the other codes below the blank
    // and Delete, which edit or leave the box rather than type into it.
    const bool controlKey = keyCode <= kLastControlKey || keyCode < ' ' || keyCode == kDeleteKey;
    if (type == 0 || type == 6 || type == 7 || controlKey)
        return true;
    const auto key = static_cast<char>(keyCode);
    const bool digitOrMinus
        = keyCode < 128 && std::string_view("-0123456789").find(key) != std::string_view::npos;
    // A fractional scaling takes a decimal separator; any other (none, 1, a coarser count) whole numbers.
    if (parameter.SubBlockDataScaling > 0 && parameter.SubBlockDataScaling < 1)
        return digitOrMinus || key == display.locale.decimalSeparator;
    return digitOrMinus;
}

std::string hexToAscii(const std::string& text)
{
    std::string ascii;
    for (const auto piece : hexPieces(text)) {
        if (const auto code = hexPieceValue(piece); code && piece.size() == 2)
            ascii += static_cast<char>(*code);
    }
    return ascii;
}

std::string asciiToHex(const std::string& text)
{
    std::string hex;
    for (const char c : text) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%X", static_cast<unsigned char>(c));
        hex += digits;
    }
    return hex;
}

std::string trimToHex(std::string text)
{
    while (!text.empty() && !ValidateCharFormat(text, 0))
        text.pop_back();
    return text;
}

std::uint32_t bitWord(
    const std::vector<int>& selectedBits, const std::string& parameterName, int chargerMode, int alarmMode)
{
    std::uint32_t word = 0;
    for (const int bit : selectedBits)
        word += 1u << bit;
    if (parameterName == kBatteryModeObsolete) {
        if (chargerMode == 1)
            word += 0x4000;
        if (alarmMode == 1)
            word += 0x2000;
    }
    return word;
}

} // namespace zv
