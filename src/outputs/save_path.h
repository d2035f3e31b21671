#pragma once
// The save dialog of an output: it starts in the folder a setting remembers and stores the
// folder of the chosen file back.

#include <optional>
#include <string>

namespace zv::platform {
class Dialogs;
class SettingsStore;
} // namespace zv::platform

namespace zv {

struct SavePrompt {
    std::string filter;
    std::string fileName;
    std::string folderSetting; // "Path_..."
};

// The chosen path; nothing when the user cancelled.
[[nodiscard]] std::optional<std::string> askSavePath(platform::Dialogs& dialogs,
    platform::SettingsStore& settings, const std::string& programFolder, const SavePrompt& prompt);

} // namespace zv
