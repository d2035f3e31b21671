#pragma once
// The texts a parameter shows in the value column of the parameter and property lists.

#include <string>

namespace zv {

struct DisplaySettings;
class clsSMBusParameter;

inline constexpr const char* kErrorValue = "#Error";

// A NewValue waits to be written: neither empty, nor null, nor the empty text.
[[nodiscard]] bool hasNewValue(const clsSMBusParameter& parameter);

// The stored value: "#Error" and empty stay as they are, a bit-encoded parameter shows its hex
// form (mode 3), any other the text of otherMode.
[[nodiscard]] std::string storedValueText(
    const clsSMBusParameter& parameter, const DisplaySettings& display, int otherMode);

// The mode LoadTabs gives a parameter that is not bit-encoded: temperatures in kelvin show value
// and unit (mode 0), the rest mode 1.
[[nodiscard]] int tabValueMode(const clsSMBusParameter& parameter);

// After an edit: with a NewValue new and old (mode 4 or 1), without one the value (mode 3 or 1).
[[nodiscard]] std::string editedValueText(const clsSMBusParameter& parameter, const DisplaySettings& display);

// The whole number a flag or status word holds; 0 when it holds none.
[[nodiscard]] long valueBits(const clsSMBusParameter* parameter, const DisplaySettings& display);

} // namespace zv
