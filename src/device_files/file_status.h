#pragma once
// The status byte of the device file protocol: verdict and message.

#include <optional>
#include <string>

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

} // namespace zv
