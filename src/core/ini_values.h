#pragma once
// One named value of an INI file, such as Zentavia.ini or demo.ini.

#include <cstddef>
#include <string>
#include <string_view>

namespace zv {

// The reader's buffer: a value longer than kIniBufferSize - 1 characters is cut there.
inline constexpr std::size_t kIniBufferSize = 2048;

// The value, or empty text when the file, the section or the key is missing.
[[nodiscard]] std::string GetINIValue(
    std::string_view section, std::string_view key, const std::string& file);

// Writes one key, creating the file and section when needed; false when the file cannot be written.
bool SetINIValue(
    std::string_view section, std::string_view key, std::string_view value, const std::string& file);

} // namespace zv
