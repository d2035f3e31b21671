#pragma once
// Files a user keeps are written whole or not at all: the bytes go to a temporary file beside
// the target, which then replaces the target by a rename.

#include <string>
#include <string_view>

namespace zv {

// Throws std::runtime_error with the system's reason; the target is then as it was.
void writeFileReplacing(const std::string& path, std::string_view bytes);

// The whole file; throws std::runtime_error when it cannot be read.
[[nodiscard]] std::string readWholeFile(const std::string& path);

} // namespace zv
