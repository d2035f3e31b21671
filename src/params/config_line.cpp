#include "params/config_line.h"

#include "params/runtime_error.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zv {
namespace {

constexpr std::size_t kFirstBitLabel = 13;
constexpr std::size_t kBitLabels = 16;
constexpr std::size_t kTrailingColumnsStart = kFirstBitLabel + kBitLabels;

std::vector<std::string_view> splitAtTabs(std::string_view line)
{
    std::vector<std::string_view> columns;
    std::size_t start = 0;
    while (true) {
        const auto tab = line.find('\t', start);
        columns.push_back(line.substr(start, tab == std::string_view::npos ? tab : tab - start));
        if (tab == std::string_view::npos) {
            return columns;
        }
        start = tab + 1;
    }
}

double numberColumn(std::string_view text, const NumberLocale& locale)
{
    const auto number = parseNumber(text, locale.decimalSeparator);
    if (!number) {
        throw RuntimeError::typeMismatch();
    }
    return *number;
}

std::uint8_t byteColumn(std::string_view text, const NumberLocale& locale)
{
    const double rounded = roundHalfEven(numberColumn(text, locale));
    if (rounded < 0 || rounded > 255) {
        throw RuntimeError::overflow();
    }
    return static_cast<std::uint8_t>(rounded);
}

// The invariant text turned into the user's form before it is read.
double invariantNumberColumn(std::string_view text, const NumberLocale& locale)
{
    std::string userForm(text);
    std::replace(userForm.begin(), userForm.end(), '.', locale.decimalSeparator);
    return numberColumn(userForm, locale);
}

} // namespace

std::optional<std::int32_t> configVersionOf(std::string_view commentLine)
{
    std::string rest;
    std::copy_if(commentLine.begin(), commentLine.end(), std::back_inserter(rest),
        [](char c) { return c != '#' && c != '\t'; });
    const auto number = parseNumber(rest, '.');
    if (!number) {
        return std::nullopt;
    }
    const double rounded = roundHalfEven(*number);
    if (rounded < -2147483648.0 || rounded > 2147483647.0) {
        throw RuntimeError::overflow();
    }
    return static_cast<std::int32_t>(rounded);
}

std::string stripQuotes(std::string_view text)
{
    const auto first = text.find_first_not_of('"');
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of('"');
    return std::string(text.substr(first, last - first + 1));
}

void readParameterColumns(std::string_view line, clsSMBusParameter& p, const NumberLocale& locale)
{
    const auto columns = splitAtTabs(line);
    if (columns.size() < kRequiredConfigColumns) {
        throw RuntimeError::subscriptOutOfRange();
    }
    p.ParameterName = std::string(columns[0]);
    p.ReadPrivilegeLevel = byteColumn(columns[1], locale);
    p.WritePrivilegeLevel = byteColumn(columns[2], locale);
    p.ParameterNumber = std::string(columns[3]);
    p.OffsetMultiplier = byteColumn(columns[4], locale);
    p.DataType = byteColumn(columns[5], locale);
    p.VScale = byteColumn(columns[6], locale);
    p.IPscale = byteColumn(columns[7], locale);
    p.SubBlockDataType = byteColumn(columns[8], locale);
    p.SubBlockDataScaling = invariantNumberColumn(columns[9], locale);
    p.LowerWriteLimit = invariantNumberColumn(columns[10], locale);
    p.UpperWriteLimit = invariantNumberColumn(columns[11], locale);
    p.EngineeringUnitsString = stripQuotes(columns[12]);

    for (std::size_t i = kFirstBitLabel; i < kTrailingColumnsStart; ++i) {
        p.BitString.Add(stripQuotes(columns[i]));
    }
    std::uint8_t* trailing[] = { &p.LoggingType, &p.TabOrder, &p.FileNumber, &p.FileIndex };
    for (std::size_t i = 0; i < std::size(trailing); ++i) {
        *trailing[i] = byteColumn(columns[kTrailingColumnsStart + i], locale);
    }
}

std::string parameterColumns(const clsSMBusParameter& p)
{
    const auto byte = [](std::uint8_t b) { return std::to_string(b); };
    const auto number = [](double n) { return generalNumberText(n, kInvariantLocale); };
    std::string line = p.ParameterName;
    for (const std::string& column : { byte(p.ReadPrivilegeLevel), byte(p.WritePrivilegeLevel),
             p.ParameterNumber, byte(p.OffsetMultiplier), byte(p.DataType), byte(p.VScale), byte(p.IPscale),
             byte(p.SubBlockDataType), number(p.SubBlockDataScaling), number(p.LowerWriteLimit),
             number(p.UpperWriteLimit), p.EngineeringUnitsString }) {
        line += '\t' + column;
    }
    for (const auto& label : p.BitString) {
        line += '\t' + label.data;
    }
    return line;
}

} // namespace zv
