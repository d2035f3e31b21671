#include "logging/log_wizard_rules.h"

#include <charconv>

namespace zv {

const char* wizardTypeLetter(int subBlockDataType)
{
    switch (subBlockDataType) {
    case 0:
    case 7:
        return "H";
    case 1:
    case 2:
    case 4:
    case 8:
        return "U";
    case 3:
    case 5:
        return "S";
    default:
        return "STR";
    }
}

int wizardElement(int fileIndex, int cell, int stride)
{
    return fileIndex + (cell - 1) * stride;
}

std::string wizardCellKey(std::string_view name, int cell)
{
    const auto first = name.find_first_not_of(' ');
    const auto last = name.find_last_not_of(' ');
    const std::string_view trimmed
        = first == std::string_view::npos ? std::string_view {} : name.substr(first, last - first + 1);
    return std::string(trimmed) + "(" + std::to_string(cell) + ")";
}

std::optional<WizardCellKey> parseWizardCellKey(std::string_view key)
{
    const auto open = key.rfind('(');
    if (open == std::string_view::npos || key.empty() || key.back() != ')')
        return std::nullopt;
    int cell = 0;
    const char* first = key.data() + open + 1;
    const char* last = key.data() + key.size() - 1;
    const auto [end, error] = std::from_chars(first, last, cell);
    if (error != std::errc() || end != last || first == last)
        return std::nullopt;
    return WizardCellKey { std::string(key.substr(0, open)), cell };
}

std::string wizardLine(std::string_view text, int file, int element, std::string_view type)
{
    return std::string(text) + "\t" + std::to_string(file) + "\t" + std::to_string(element) + "\t"
        + std::string(type) + "\r\n";
}

} // namespace zv
