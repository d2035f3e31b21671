#pragma once
// Raw device data to values and values back to raw hex text: FormatData cuts a parameter's
// place out of a file image, ConvertRawToValue reads an SMBus block, GetConfigurationValue
// makes the hex text that is written, ParseLogData decodes one log sample.

#include "params/dynamic_value.h"
#include "params/number_text.h"
#include "platform/dialogs.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zv {

inline constexpr const char* kBadConfigValue = "#Error - Bad Config";

// Byte positions count from 1. "#Error - Bad Config" for positions outside the block (type 6
// excepted); empty for a type without a rule.
[[nodiscard]] DynamicValue ConvertRawToValue(
    std::span<const std::uint8_t> block, int dataType, int firstPosition, int lastPosition);

// The text of one log word by the element's FileDataType: "U" unsigned, "H" "0x" hex, "S"
// signed; nothing for "STR" and unknown types.
[[nodiscard]] std::optional<std::string> logWordText(std::string_view fileDataType, std::uint16_t word);
// The 16-bit words of a hex text, low byte first; nothing for a bad digit.
[[nodiscard]] std::optional<std::vector<std::uint16_t>> hexWords(std::string_view hex);
// The bytes of a hex text; nothing for a bad digit.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> hexBytes(std::string_view hex);
// True when element elementIndex (of elementSize bytes, or for a block of groupLength bytes)
// lies within a file image of byteCount bytes.
[[nodiscard]] bool elementInImage(std::size_t byteCount, int elementSize, int elementIndex, int groupLength);

class ValueConversion {
public:
    ValueConversion(platform::Dialogs& dialogs, NumberLocale locale);

    // elementSize 1 to 4: bytes, words, 24-bit and 32-bit values, low byte first; 5: a block
    // of data type 6 (characters) or 7 (hex digits) in groups of groupLength bytes.
    // elementIndex negative: all elements joined by the list separator. Data types 2 to 5 scale
    // a single numeric element; a scale of 0 means none. Empty when the data cannot give the
    // element.
    [[nodiscard]] DynamicValue FormatData(std::string_view hex, int elementSize, int elementIndex,
        int dataType, double scale, int groupLength) const;
    // The same on a file image already turned into bytes: a file read decodes its text once and
    // cuts every parameter out of the bytes, each in time of its own size.
    [[nodiscard]] DynamicValue FormatData(std::span<const std::uint8_t> bytes, int elementSize,
        int elementIndex, int dataType, double scale, int groupLength) const;

    // Type names (lower case): "byte" "1" "b"; "integer" "0" "2" "u" "8"; "bitfield";
    // "signedinteger" "3" "s"; "string" "6"; "hex" "7". Empty for another name, and after the
    // error box for a value that cannot be converted.
    [[nodiscard]] std::string GetConfigurationValue(
        std::string_view value, std::string_view typeName, int byteCount = 2) const;

    // Fills the value of each log element (FileDataType, value) from consecutive words of the
    // sample; false, with nothing set, when the sample is too short or not hex.
    template <typename LogElements>
    [[nodiscard]] bool ParseLogData(std::string_view hex, LogElements& elements) const
    {
        const auto words = hexWords(hex);
        std::size_t count = 0;
        for ([[maybe_unused]] const auto& element : elements) {
            ++count;
        }
        if (!words || words->size() < count) {
            return false;
        }
        std::size_t position = 0;
        for (auto& element : elements) {
            if (const auto text = logWordText(element.FileDataType, (*words)[position])) {
                element.value = *text;
            }
            ++position;
        }
        return true;
    }

    [[nodiscard]] const NumberLocale& locale() const { return locale_; }

private:
    [[nodiscard]] DynamicValue scaledElement(double element, int dataType, double scale) const;

    platform::Dialogs& dialogs_;
    NumberLocale locale_;
};

} // namespace zv
