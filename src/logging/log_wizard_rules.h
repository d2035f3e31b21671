#pragma once
// The arithmetic of the log definition tool, pure: type letters, element numbers of a cell's
// parameter, the hidden keys of the rows and the lines of the generated file.

#include <optional>
#include <string>
#include <string_view>

namespace zv {

inline constexpr int kWizardLimit = 29; // logged rows; with "Tick" a file holds at most 30

// The FileDataType letter of a SubBlockDataType: 0, 7 "H"; 1, 2, 4, 8 "U"; 3, 5 "S"; else "STR".
[[nodiscard]] const char* wizardTypeLetter(int subBlockDataType);

// A cell's parameter: FileIndex + (cell - 1) x the stride of its file.
[[nodiscard]] int wizardElement(int fileIndex, int cell, int stride);

// The hidden key of a cell's parameter: the trimmed name + "(" + cell + ")".
[[nodiscard]] std::string wizardCellKey(std::string_view name, int cell);

struct WizardCellKey {
    std::string name;
    int cell = 0;
};
// The name and cell of a key with "("; nothing for a gateway parameter's key.
[[nodiscard]] std::optional<WizardCellKey> parseWizardCellKey(std::string_view key);

// One line of the file: text, file, element and type separated by tabs, with CR LF.
[[nodiscard]] std::string wizardLine(std::string_view text, int file, int element, std::string_view type);

} // namespace zv
