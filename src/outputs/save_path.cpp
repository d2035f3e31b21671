#include "outputs/save_path.h"

#include "core/settings_table.h"
#include "platform/dialogs.h"

#include <filesystem>

namespace zv {

std::optional<std::string> askSavePath(platform::Dialogs& dialogs, platform::SettingsStore& settings,
    const std::string& programFolder, const SavePrompt& prompt)
{
    platform::FileDialogOptions options;
    options.filter = prompt.filter;
    options.fileName = prompt.fileName;
    options.folder = readSetting(settings, prompt.folderSetting, programFolder);
    auto path = dialogs.saveFile(options);
    if (path && !path->empty()) {
        writeSetting(settings, prompt.folderSetting, std::filesystem::path(*path).parent_path().string());
        return path;
    }
    return std::nullopt;
}

} // namespace zv
