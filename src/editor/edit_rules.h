#pragma once
// The rules of the parameter editor apart from its window: the range texts, the raw limits, the
// validation of a typed number, the key filter, the ASCII and HEX forms and the bit word.

#include "params/display_settings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zv {

class clsSMBusParameter;

// Captions of lblValidRange that choose the validation rule.
inline constexpr const char* kStringRange = "String";
inline constexpr const char* kHexStringRange = "Hex String";

// Notes of lblValidation(0).
inline constexpr const char* kInvalidCharacters = "Invalid characters";
inline constexpr const char* kOutOfRange = "Value out of range";
inline constexpr const char* kMustBeEven = "Value must be an even integer";

inline constexpr const char* kBatteryModeObsolete = "Battery Mode-Obsolete";
inline constexpr const char* kReservedBit = "Reserved";

// What lblValidRange and lblValidation(3) show for a numeric parameter; temperature is set for
// the units "kelvin", "k" and "k/min" when shown in a temperature word.
struct RangeText {
    std::string range;
    std::string unitNote;
    bool temperature = false;
};

[[nodiscard]] RangeText numericRangeText(const clsSMBusParameter& parameter, const DisplaySettings& display);

// A display value divided by the parameter's scaling, rounded to a 32-bit integer, as "0x" and four
// hex digits; nothing when it does not fit.
[[nodiscard]] std::optional<std::string> rawHex(double displayValue, const clsSMBusParameter& parameter);

// lblValidRangeRaw: a word for signed, text and hex text parameters, else the raw limits.
[[nodiscard]] std::string rawRangeText(const clsSMBusParameter& parameter);

// The outcome of checking a typed number: accepted, or refused with a note (none for an empty text).
struct NumberVerdict {
    bool accepted = false;
    std::string note;
};

[[nodiscard]] NumberVerdict validateNumber(
    const std::string& text, const clsSMBusParameter& parameter, const DisplaySettings& display);

// True when a typed character reaches the new-value box of this parameter.
[[nodiscard]] bool keyAllowed(
    int keyCode, const clsSMBusParameter& parameter, const DisplaySettings& display);

// "ASCII": hex digit pairs become the characters of those codes (pairs that are no hex are left out).
[[nodiscard]] std::string hexToAscii(const std::string& text);
// "HEX": each character becomes the hex of its code, with no leading zero.
[[nodiscard]] std::string asciiToHex(const std::string& text);

// Drops characters from the end until the text is upper-case hex digits only.
[[nodiscard]] std::string trimToHex(std::string text);

// The word of the selected bit numbers; "Battery Mode-Obsolete" also carries the charger (0x4000)
// and alarm (0x2000) modes.
[[nodiscard]] std::uint32_t bitWord(
    const std::vector<int>& selectedBits, const std::string& parameterName, int chargerMode, int alarmMode);

} // namespace zv
