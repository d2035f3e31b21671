#pragma once
// A settings store in memory for tests: key paths and names compare case-insensitively, as in
// the real store, and every write is counted.

#include "platform/settings_store.h"

#include <map>
#include <string>
#include <utility>

namespace zv::platform {

class MemorySettingsStore : public SettingsStore {
public:
    [[nodiscard]] std::string value(const std::string& keyPath, const std::string& name) const override;
    void setValue(const std::string& keyPath, const std::string& name, const std::string& text) override;

    [[nodiscard]] bool contains(const std::string& keyPath, const std::string& name) const;
    [[nodiscard]] int writeCount() const { return writes_; }

private:
    using Key = std::pair<std::string, std::string>;
    [[nodiscard]] static Key keyOf(const std::string& keyPath, const std::string& name);

    std::map<Key, std::string> values_;
    int writes_ = 0;
};

} // namespace zv::platform
