#include "platform/ini_settings_store.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace zv::platform {

namespace {

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? std::string(value) : std::string();
}

} // namespace

IniSettingsStore::IniSettingsStore(std::string path)
    : path_(std::move(path))
    , file_(IniFile::load(path_))
{
    std::error_code error;
    const auto status = std::filesystem::status(path_, error);
    if (!std::filesystem::exists(status))
        return;
    std::ifstream probe(path_, std::ios::binary);
    if (std::filesystem::is_directory(status) || !probe)
        loadProblem_ = "The settings file " + path_ + " cannot be read; every setting has its default";
}

std::string IniSettingsStore::defaultPath()
{
    if (auto explicitPath = environment("ZENTAVIA_SETTINGS"); !explicitPath.empty())
        return explicitPath;
    std::filesystem::path folder = environment("XDG_CONFIG_HOME");
    if (folder.empty() || folder.is_relative()) {
        const auto home = environment("HOME");
        folder = std::filesystem::path(home.empty() ? "." : home) / ".config";
    }
    return (folder / "Zentavia" / "Zentavia.conf").string();
}

std::string IniSettingsStore::value(const std::string& keyPath, const std::string& name) const
{
    return file_.value(keyPath, name);
}

void IniSettingsStore::setValue(const std::string& keyPath, const std::string& name, const std::string& text)
{
    file_.setValue(keyPath, name, text);
    std::error_code ignored;
    const auto folder = std::filesystem::path(path_).parent_path();
    if (!folder.empty())
        std::filesystem::create_directories(folder, ignored);
    (void)file_.save(path_);
}

} // namespace zv::platform
