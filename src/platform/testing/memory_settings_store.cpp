#include "platform/testing/memory_settings_store.h"

#include <algorithm>
#include <cctype>

namespace zv::platform {

namespace {

std::string lowered(std::string s)
{
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
}

} // namespace

MemorySettingsStore::Key MemorySettingsStore::keyOf(const std::string& keyPath, const std::string& name)
{
    return { lowered(keyPath), lowered(name) };
}

std::string MemorySettingsStore::value(const std::string& keyPath, const std::string& name) const
{
    const auto it = values_.find(keyOf(keyPath, name));
    return it == values_.end() ? std::string() : it->second;
}

void MemorySettingsStore::setValue(
    const std::string& keyPath, const std::string& name, const std::string& text)
{
    values_[keyOf(keyPath, name)] = text;
    ++writes_;
}

bool MemorySettingsStore::contains(const std::string& keyPath, const std::string& name) const
{
    return values_.count(keyOf(keyPath, name)) != 0;
}

} // namespace zv::platform
