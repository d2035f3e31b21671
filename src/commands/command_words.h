#pragma once
// The command words of device file 27: a 16-bit code and a 16-bit argument, each low byte first,
// as eight hexadecimal digits in wire order.

#include <string_view>

namespace zv::command_words {

inline constexpr const char* kCommit = "03000000";
inline constexpr const char* kRebuild = "04000000";
inline constexpr const char* kInitialize = "07000000";
inline constexpr const char* kInitializeRelearn = "07000100";
inline constexpr const char* kResetFuse = "0B000000";
inline constexpr const char* kSafeDisconnect = "0C000000";
inline constexpr const char* kWired = "0D000000";
inline constexpr const char* kShipMode = "10000000";

// How long an initialize is left to restart the target before the link is looked at again: the
// two smaller targets restart in 5 s, every other target takes 10 s.
[[nodiscard]] constexpr int initializeWaitMs(std::string_view targetId)
{
    return targetId == "1001" || targetId == "1002" ? 5000 : 10000;
}

} // namespace zv::command_words
