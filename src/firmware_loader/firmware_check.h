#pragma once
// The automatic update at start-up: two firmware releases with a known issue are offered the
// image that replaces them, and on yes the loader loads and downloads it by itself.

#include <functional>
#include <optional>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class frmBootStrapLoader;

struct KnownFirmwareIssue {
    std::string text; // the question
    std::string imagePath; // the replacing image beside the program
};

// The issue of this firmware version and build, if it has one.
[[nodiscard]] std::optional<KnownFirmwareIssue> knownFirmwareIssue(
    long version, long build, const std::string& programFolder);

struct FirmwareCheckServices {
    const AppGlobals& globals;
    platform::Dialogs& dialogs;
    platform::EventLoop& loop;
    std::string programFolder;
    // Opens frmBootStrapLoader (shown, loaded) and hands it over.
    std::function<frmBootStrapLoader&()> openLoader;
};

// Run at the end of LoadMainForm (not in demo mode): asks "Firmware Issue Detected" and, on yes,
// opens the loader, loads the image and downloads it. True when the update was started.
bool CheckFirmwareAtStartup(const FirmwareCheckServices& services);

} // namespace zv
