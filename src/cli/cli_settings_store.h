#pragma once
// The user's settings as a command-line run sees them: values are read from the user's store,
// and what the run sets (a port given on the command line) stays in memory for this run only.

#include "platform/settings_store.h"

#include <map>
#include <string>
#include <utility>

namespace zv::cli {

class CliSettingsStore : public platform::SettingsStore {
public:
    explicit CliSettingsStore(const platform::SettingsStore& base);

    [[nodiscard]] std::string value(const std::string& keyPath, const std::string& name) const override;
    void setValue(const std::string& keyPath, const std::string& name, const std::string& text) override;

private:
    const platform::SettingsStore& base_;
    std::map<std::pair<std::string, std::string>, std::string> overrides_;
};

} // namespace zv::cli
