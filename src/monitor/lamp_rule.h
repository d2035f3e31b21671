#pragma once
// The lamp rules of the status panes: which icon a bit shows, from the bit, its fault mask and
// the icon the lamp shows now. Pure functions, so the panes and their tests share one table.

#include <string>

namespace zv::lamp {

inline constexpr const char* kOff = "ledoff";
inline constexpr const char* kGreen = "ledgreen";
inline constexpr const char* kRed = "ledred";
inline constexpr const char* kYellow = "ledyellow";
inline constexpr const char* kInfo = "info";
inline constexpr const char* kInfoDim = "infod";
inline constexpr const char* kError = "error";
inline constexpr const char* kErrorDim = "errord";
inline constexpr const char* kFet = "fet";
inline constexpr const char* kCheck = "check";
inline constexpr const char* kHelp = "help";

struct Lamp {
    std::string icon;
    bool bold = false;
    bool operator==(const Lamp&) const = default;
};

// A lamp that a fault once marked stays in the error family until its row is rebuilt.
[[nodiscard]] bool inErrorFamily(const std::string& icon);

// The flag grids and the FET row: set is red for a fault bit, green otherwise; clear is off.
[[nodiscard]] Lamp flagLamp(const std::string& current, bool set, bool fault);

// The bit list and the alarm rows: info or error, dimmed when clear; a fault bit or a lamp
// already in the error family takes the error pair.
[[nodiscard]] Lamp bitListLamp(const std::string& current, bool set, bool fault);

// The safety grid: neither alert nor status off, one of them yellow, both red.
[[nodiscard]] Lamp safetyLamp(bool alert, bool status);

} // namespace zv::lamp
