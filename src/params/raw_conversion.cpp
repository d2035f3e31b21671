#include "params/raw_conversion.h"

#include "params/hex_text.h"
#include "params/runtime_error.h"
#include "platform/text.h"
#include "platform/val.h"

#include <algorithm>
#include <array>
#include <vector>

namespace zv {
namespace {

constexpr int kBlockElement = 5;
constexpr int kTextType = 6;
constexpr int kHexTextType = 7;

} // namespace

std::optional<std::vector<std::uint8_t>> hexBytes(std::string_view hex)
{
    std::vector<std::uint8_t> bytes;
    for (const auto piece : hexPieces(hex)) {
        const auto value = hexPieceValue(piece);
        if (!value) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::uint8_t>(*value));
    }
    return bytes;
}

bool elementInImage(std::size_t byteCount, int elementSize, int elementIndex, int groupLength)
{
    if (elementIndex < 0)
        return true;
    const auto index = static_cast<std::size_t>(elementIndex);
    if (elementSize == kBlockElement) {
        const std::size_t group = groupLength > 0 ? static_cast<std::size_t>(groupLength) : byteCount;
        return group > 0 && index * group < byteCount;
    }
    if (elementSize < 1 || elementSize > 4)
        return true;
    return (index + 1) * static_cast<std::size_t>(elementSize) <= byteCount;
}

namespace {

// Values of elementSize bytes, low byte first; an incomplete tail is left out.
std::vector<double> numericElements(const std::vector<std::uint8_t>& bytes, int elementSize)
{
    std::vector<double> elements;
    for (std::size_t i = 0; i + elementSize <= bytes.size(); i += elementSize) {
        std::uint32_t value = 0;
        for (int k = elementSize - 1; k >= 0; --k) {
            value = value << 8 | bytes[i + k];
        }
        elements.push_back(value);
    }
    return elements;
}

// The block as texts of groupLength bytes each (all bytes in one when groupLength < 1).
std::vector<std::string> blockGroups(const std::vector<std::uint8_t>& bytes, int dataType, int groupLength)
{
    std::vector<std::string> groups;
    const std::size_t group = groupLength > 0 ? static_cast<std::size_t>(groupLength) : bytes.size();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % group == 0) {
            groups.emplace_back();
        }
        const std::uint8_t byte = bytes[i];
        if (dataType == kHexTextType) {
            groups.back() += platform::byteHex(byte);
        } else if (byte >= 32 && byte <= 126) {
            groups.back() += static_cast<char>(byte);
        }
    }
    return groups;
}

template <typename Element, typename ToText>
std::string joined(const std::vector<Element>& elements, char separator, ToText toText)
{
    std::string text;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0) {
            text += separator;
        }
        text += toText(elements[i]);
    }
    return text;
}

std::string fixedDigits(std::string text, std::size_t digits)
{
    text.resize(std::min(text.size(), digits));
    return text + std::string(digits - text.size(), '0');
}

std::string bitFieldHex(std::string_view value)
{
    if (value.starts_with("0x") || value.starts_with("0X")) {
        value.remove_prefix(2);
    }
    const std::string digits = "0000" + std::string(value);
    const std::string lastFour = digits.substr(digits.size() - 4);
    return lastFour.substr(2, 2) + lastFour.substr(0, 2);
}

std::string textHex(std::string_view value)
{
    std::string hex;
    for (const char c : value) {
        hex += platform::byteHex(static_cast<std::uint8_t>(c));
    }
    return hex;
}

// An odd count of digits gets a zero before its last digit: "ABC" becomes "AB0C".
std::string evenHex(std::string value)
{
    if (value.size() % 2 != 0) {
        value.insert(value.end() - 1, '0');
    }
    return value;
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

DynamicValue ConvertRawToValue(
    std::span<const std::uint8_t> block, int dataType, int firstPosition, int lastPosition)
{
    const int size = static_cast<int>(block.size());
    if (dataType == kTextType) {
        return std::string(block.begin(), block.end());
    }
    const auto inBlock = [&](int position) { return position >= 1 && position <= size; };
    const auto at = [&](int position) { return static_cast<double>(block[position - 1]); };
    if ((firstPosition <= 0 && lastPosition <= 0) || firstPosition > size || lastPosition > size) {
        return kBadConfigValue;
    }
    switch (dataType) {
    case 0:
        if (lastPosition <= firstPosition) {
            return inBlock(firstPosition) ? DynamicValue(at(firstPosition)) : DynamicValue(kBadConfigValue);
        }
        [[fallthrough]];
    case 2:
    case 3: {
        if (!inBlock(firstPosition) || !inBlock(lastPosition)) {
            return kBadConfigValue;
        }
        double word = at(firstPosition) + 256 * at(lastPosition);
        if (dataType == 3 && word > 0x7FFF) {
            word -= 0x10000;
        }
        return word;
    }
    case 1:
        return inBlock(firstPosition) ? DynamicValue(at(firstPosition)) : DynamicValue(kBadConfigValue);
    case 5: {
        if (!inBlock(firstPosition) || !inBlock(firstPosition + 3)) {
            return kBadConfigValue;
        }
        double value = 0;
        for (int k = 3; k >= 0; --k) {
            value = value * 256 + at(firstPosition + k);
        }
        if (block[firstPosition + 2] == 0xFF) {
            value -= 4294967296.0;
        }
        return value;
    }
    default:
        return {};
    }
}

std::optional<std::string> logWordText(std::string_view fileDataType, std::uint16_t word)
{
    if (fileDataType == "U") {
        return std::to_string(word);
    }
    if (fileDataType == "H") {
        return convertToHex(DynamicValue(static_cast<double>(word)), 0);
    }
    if (fileDataType == "S") {
        return std::to_string(static_cast<int>(word) - (word > 32767 ? 65536 : 0));
    }
    return std::nullopt;
}

std::optional<std::vector<std::uint16_t>> hexWords(std::string_view hex)
{
    const auto bytes = hexBytes(hex);
    if (!bytes) {
        return std::nullopt;
    }
    std::vector<std::uint16_t> words;
    for (const double element : numericElements(*bytes, 2)) {
        words.push_back(static_cast<std::uint16_t>(element));
    }
    return words;
}

ValueConversion::ValueConversion(platform::Dialogs& dialogs, NumberLocale locale)
    : dialogs_(dialogs)
    , locale_(locale)
{
}

DynamicValue ValueConversion::FormatData(std::string_view hex, int elementSize, int elementIndex,
    int dataType, double scale, int groupLength) const
{
    const auto bytes = hexBytes(hex);
    if (!bytes) {
        return {};
    }
    return FormatData(
        std::span<const std::uint8_t>(*bytes), elementSize, elementIndex, dataType, scale, groupLength);
}

DynamicValue ValueConversion::FormatData(std::span<const std::uint8_t> image, int elementSize,
    int elementIndex, int dataType, double scale, int groupLength) const
{
    // One element is cut out alone; only "all elements" (a negative index) walks the image.
    if (elementIndex >= 0 && !elementInImage(image.size(), elementSize, elementIndex, groupLength)) {
        return {};
    }
    if (elementIndex >= 0 && elementSize >= 1 && elementSize <= 4) {
        const std::size_t at = static_cast<std::size_t>(elementIndex) * static_cast<std::size_t>(elementSize);
        std::uint32_t value = 0;
        for (int k = elementSize - 1; k >= 0; --k) {
            value = value << 8 | image[at + static_cast<std::size_t>(k)];
        }
        return scaledElement(value, dataType, scale);
    }
    if (elementIndex >= 0 && elementSize == kBlockElement && groupLength > 0) {
        if (dataType != kTextType && dataType != kHexTextType) {
            return {};
        }
        const std::size_t from
            = static_cast<std::size_t>(elementIndex) * static_cast<std::size_t>(groupLength);
        const auto group
            = image.subspan(from, std::min(image.size() - from, static_cast<std::size_t>(groupLength)));
        return DynamicValue(
            blockGroups(std::vector<std::uint8_t>(group.begin(), group.end()), dataType, 0).at(0));
    }
    const std::vector<std::uint8_t> owned(image.begin(), image.end());
    const auto* bytes = &owned;
    const char separator = locale_.listSeparator();
    if (elementSize == kBlockElement) {
        if (dataType != kTextType && dataType != kHexTextType) {
            return {};
        }
        const auto groups = blockGroups(*bytes, dataType, groupLength);
        if (elementIndex < 0) {
            return joined(groups, separator, [](const std::string& g) { return g; });
        }
        return elementIndex < static_cast<int>(groups.size()) ? DynamicValue(groups[elementIndex])
                                                              : DynamicValue();
    }
    if (elementSize < 1 || elementSize > 4) {
        return {};
    }
    const auto elements = numericElements(*bytes, elementSize);
    if (elementIndex < 0) {
        return joined(elements, separator, [&](double e) { return generalNumberText(e, locale_); });
    }
    if (elementIndex >= static_cast<int>(elements.size())) {
        return {};
    }
    return scaledElement(elements[elementIndex], dataType, scale);
}

DynamicValue ValueConversion::scaledElement(double element, int dataType, double scale) const
{
    const double factor = scale == 0 ? 1 : scale;
    switch (dataType) {
    case 2: {
        const double product = toFifteenDigits(element * factor);
        if (scale != 0 && scale < 0.001) {
            return formatNumber(product, "#.000", locale_);
        }
        return product;
    }
    case 3:
        return toFifteenDigits((element > 32767 ? element - 65536 : element) * factor);
    case 4:
        return toFifteenDigits(element * factor);
    case 5:
        return toFifteenDigits((element > 65535 ? element - 16777216 : element) * factor);
    default:
        return element;
    }
}

std::string ValueConversion::GetConfigurationValue(
    std::string_view value, std::string_view typeName, int byteCount) const
{
    const std::string type = toLower(typeName);
    const std::size_t digits = static_cast<std::size_t>(std::max(byteCount, 0)) * 2;
    try {
        if (isOneOf(type, { "byte", "1", "b" })) {
            return Hex_Str(Val(value), 1, true);
        }
        if (isOneOf(type, { "integer", "0", "2", "u", "8" })) {
            return Hex_Str(Val(value), 2, true);
        }
        if (type == "bitfield") {
            return bitFieldHex(value);
        }
        if (isOneOf(type, { "signedinteger", "3", "s" })) {
            double integer = roundHalfEven(Val(value));
            if (integer < 0) {
                integer += 65536;
            }
            return Hex_Str(integer, 2, true);
        }
        if (isOneOf(type, { "string", "6" })) {
            return fixedDigits(textHex(value), digits);
        }
        if (isOneOf(type, { "hex", "7" })) {
            return fixedDigits(evenHex(std::string(value)), digits);
        }
    } catch (const RuntimeError& error) {
        dialogs_.messageBox(std::string("An error has occurred.") + "\r\n" + error.what(),
            platform::Buttons::OK, platform::Icon::Critical, "");
    }
    return {};
}

} // namespace zv
