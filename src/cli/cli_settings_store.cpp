#include "cli/cli_settings_store.h"

namespace zv::cli {

CliSettingsStore::CliSettingsStore(const platform::SettingsStore& base)
    : base_(base)
{
}

std::string CliSettingsStore::value(const std::string& keyPath, const std::string& name) const
{
    if (const auto it = overrides_.find({ keyPath, name }); it != overrides_.end())
        return it->second;
    return base_.value(keyPath, name);
}

void CliSettingsStore::setValue(const std::string& keyPath, const std::string& name, const std::string& text)
{
    overrides_[{ keyPath, name }] = text;
}

} // namespace zv::cli
