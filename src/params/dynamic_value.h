#pragma once
// The value of a parameter as the device or the user gave it: nothing yet (empty), null, a
// number or a text. Empty and null stay apart.

#include "params/number_text.h"

#include <optional>
#include <string>
#include <variant>

namespace zv {

class DynamicValue {
public:
    enum class Kind { Empty, Null, Number, Text };

    DynamicValue() = default;
    DynamicValue(double number)
        : content_(number)
    {
    }
    DynamicValue(int number)
        : content_(static_cast<double>(number))
    {
    }
    DynamicValue(std::string text)
        : content_(std::move(text))
    {
    }
    DynamicValue(const char* text)
        : content_(std::string(text))
    {
    }
    [[nodiscard]] static DynamicValue null()
    {
        DynamicValue value;
        value.content_ = NullTag {};
        return value;
    }

    [[nodiscard]] Kind kind() const { return static_cast<Kind>(content_.index()); }
    [[nodiscard]] bool isEmpty() const { return kind() == Kind::Empty; }
    [[nodiscard]] bool isNull() const { return kind() == Kind::Null; }
    [[nodiscard]] bool isNumber() const { return kind() == Kind::Number; }
    [[nodiscard]] bool isText() const { return kind() == Kind::Text; }
    // Not empty, not null and not the empty text: a value that waits or was read.
    [[nodiscard]] bool hasContent() const { return isNumber() || (isText() && !text().empty()); }

    // Only for the matching kind.
    [[nodiscard]] double number() const { return std::get<double>(content_); }
    [[nodiscard]] const std::string& text() const { return std::get<std::string>(content_); }

    // The number, or the text read as a number in the user's form; nothing otherwise.
    [[nodiscard]] std::optional<double> asNumber(const NumberLocale& locale) const;
    // Empty and null give the empty text; numbers their general form in the user's locale.
    [[nodiscard]] std::string toText(const NumberLocale& locale) const;

    bool operator==(const DynamicValue&) const = default;

private:
    struct NullTag {
        bool operator==(const NullTag&) const = default;
    };
    std::variant<std::monostate, NullTag, double, std::string> content_;
};

} // namespace zv
