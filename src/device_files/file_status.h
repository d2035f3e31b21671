#pragma once
// The status byte of the device file protocol: verdict and message.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

inline constexpr int kFileStatusBusy = 255;
inline constexpr int kFileStatusImageAccepted = 8; // the loader's word for a good image, block mode only
inline constexpr int kFileStatusCrcError = 7;

struct FileStatusVerdict {
    bool good = false;
    bool busy = false;
    std::optional<std::string> message; // goes out through FileAccessStatus
};

[[nodiscard]] FileStatusVerdict CheckFileStatus(int status);

// The dongle's replies of the protocol: after "/MRC" groups of a separator and two hex digits.
struct StatusReply {
    int status = 0;
    int extra = 0;
};
// A status read: the status byte and the extra byte; nothing when either cannot be read.
[[nodiscard]] std::optional<StatusReply> parseStatusReply(std::string_view reply);
// A data read: the count byte, then that many bytes; nothing when the reply is shorter.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> parseDataReply(std::string_view reply);

} // namespace zv
