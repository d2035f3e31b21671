#pragma once
// The program's version and the title of the main window.

#include <string>

namespace zv {

struct AppVersion {
    int major = 0;
    int minor = 0;
    int revision = 0;
};

// The version this program was built as.
[[nodiscard]] AppVersion appVersion();

// The title before a target is known.
inline constexpr const char* kAppTitle = "Zentavia";

struct TitleFacts {
    AppVersion version;
    std::string targetName;
    bool demo = false;
    bool voltageCalibration = false; // target "1003" started with /cal470
};

// "Norvale Systems - Zentavia <major>.<minor> : <target>", with "Build(<revision>) : " in place of
// ": " when the revision is not 0, " DEMO" in demo mode and the voltage calibration notice last.
[[nodiscard]] std::string mainTitle(const TitleFacts& facts);

} // namespace zv
