#pragma once
// One running program per settings file: a lock file in the user's runtime folder, named after
// the settings file, held while the program runs. Parallel runs with their own settings files
// (ZENTAVIA_SETTINGS) do not exclude each other.

#include <QLockFile>

#include <memory>
#include <string>

namespace zv::qt {

class SingleInstance {
public:
    explicit SingleInstance(const std::string& settingsPath);

    // True when another program holds the lock; otherwise this one holds it from now on.
    [[nodiscard]] bool otherInstanceRuns();

private:
    std::unique_ptr<QLockFile> lock_;
};

} // namespace zv::qt
