#pragma once
// Numbers as text: the user's decimal separator in display texts, the invariant form in files,
// and the number formats "0.0" and "#.000".

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zv {

// The decimal separator of the user's locale, and the list separator that follows from it.
struct NumberLocale {
    char decimalSeparator = '.';
    [[nodiscard]] char listSeparator() const { return decimalSeparator == ',' ? ';' : ','; }
};

inline constexpr NumberLocale kInvariantLocale {};

// Up to 15 significant digits, no trailing zeros, exponent form beyond that range ("1E-05").
[[nodiscard]] std::string generalNumberText(double value, const NumberLocale& locale);

// A format of the forms "0.0", "0.000", "#.000": digits after the point as many as the pattern
// has; a leading "#" leaves out a zero integer part. Halves round away from zero.
[[nodiscard]] std::string formatNumber(double value, std::string_view pattern, const NumberLocale& locale);

// The whole text (blanks around allowed) as a number with the given decimal separator.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text, char decimalSeparator);

// Rounds half to even, as integer conversion of the system does.
[[nodiscard]] double roundHalfEven(double value);

// The value rounded to 15 significant digits, which hides binary noise of products.
[[nodiscard]] double toFifteenDigits(double value);

[[nodiscard]] std::string trimBlanks(std::string_view text);
[[nodiscard]] std::string toLower(std::string_view text);

} // namespace zv
