#pragma once
// The command-line tool's memory of the directories of the packs it has seen: one file a target
// id and firmware in the cache folder ($XDG_CACHE_HOME/zentavia, else ~/.cache/zentavia), holding
// every directory record as the device gave it. A cached directory is used only when the
// directory's own record, read afresh, is the one it was stored with.

#include <optional>
#include <string>
#include <vector>

namespace zv {
class oDirectory;
}

namespace zv::cli {

// The folder of the cache: $XDG_CACHE_HOME/zentavia, else $HOME/.cache/zentavia; empty when
// neither is set.
[[nodiscard]] std::string defaultCacheFolder();

class DirectoryCache {
public:
    explicit DirectoryCache(std::string folder)
        : folder_(std::move(folder))
    {
    }

    // Whether any directory of this target is stored.
    [[nodiscard]] bool knows(const std::string& targetId) const;

    // The records of a stored directory of this target whose first record (the directory's own
    // entry) is firstRecord, as upper-case hexadecimal text; nothing when there is none.
    [[nodiscard]] std::optional<std::vector<std::string>> find(
        const std::string& targetId, const std::string& firstRecord) const;

    // Stores the records under the target id and firmware, through a temporary file renamed into
    // place; a cache that cannot be written is left as it is.
    void store(const std::string& targetId, const std::string& firmware,
        const std::vector<std::string>& records) const;

private:
    std::string folder_;
};

// Fills the directory from its records as the device's directory read does: record 0 first,
// entries named "Error" left out. False when a record cannot be parsed.
[[nodiscard]] bool loadDirectory(oDirectory& directory, const std::vector<std::string>& records);

} // namespace zv::cli
