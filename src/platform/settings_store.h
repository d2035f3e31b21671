#pragma once
// Per-user named text values under key paths (the settings store of the system).

#include <string>

namespace zv::platform {

class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    // The stored text, or empty when the key or value is missing or cannot be read.
    [[nodiscard]] virtual std::string value(const std::string& keyPath, const std::string& name) const = 0;
    // Writes one value; failures are ignored.
    virtual void setValue(const std::string& keyPath, const std::string& name, const std::string& text) = 0;
};

} // namespace zv::platform
