#pragma once
// The settings store kept in an INI file of the user's configuration folder: each key path
// ("Software\Norvale Systems\Zentavia 3\Settings") is a section of its own.

#include "platform/ini_file.h"
#include "platform/settings_store.h"

#include <string>

namespace zv::platform {

class IniSettingsStore : public SettingsStore {
public:
    // Reads the file once; an unreadable or malformed file gives what could be read (maybe nothing).
    explicit IniSettingsStore(std::string path);

    // ZENTAVIA_SETTINGS when set, else $XDG_CONFIG_HOME/Zentavia/Zentavia.conf, else
    // ~/.config/Zentavia/Zentavia.conf.
    [[nodiscard]] static std::string defaultPath();

    [[nodiscard]] std::string value(const std::string& keyPath, const std::string& name) const override;
    // Writes through to the file at once, creating its folder; a failed write is ignored and the
    // value is still seen by this store for the rest of the run.
    void setValue(const std::string& keyPath, const std::string& name, const std::string& text) override;

    [[nodiscard]] const std::string& path() const { return path_; }
    // Empty when the file was read or does not exist yet; else the one line that tells the user
    // that the file is there but could not be read, so every setting has its default.
    [[nodiscard]] const std::string& loadProblem() const { return loadProblem_; }

private:
    std::string path_;
    std::string loadProblem_;
    IniFile file_;
};

} // namespace zv::platform
