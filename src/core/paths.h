#pragma once
// Paths beside the program. The system's "\" joins become "/" joins here.

#include <string>
#include <string_view>

namespace zv {

// folder + "/" + name, without doubling a separator.
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view name);

} // namespace zv
