#pragma once
// The pack key: the one fixed key of every enciphered text the program stores (pack
// configuration names and data, the target identification of a demo capture). A file is
// readable only by a build with the key that wrote it, so this text never changes.

#include <string_view>

namespace zv {

inline constexpr std::string_view kPackKey = "Zv3#k";

} // namespace zv
