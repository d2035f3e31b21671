#include "core/registry.h"

namespace zv {

std::string targetKey(std::string_view targetName)
{
    std::string key(kMainKey);
    key += "\\Targets\\";
    key += targetName;
    return key;
}

std::string GetRegistryValue(const platform::SettingsStore& store, const std::string& key,
    const std::string& value, const std::string& defaultText)
{
    std::string text = store.value(key, value);
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    return text.empty() ? defaultText : text;
}

void SetRegistryValue(
    platform::SettingsStore& store, const std::string& key, const std::string& value, const std::string& text)
{
    store.setValue(key, value, text);
}

} // namespace zv
