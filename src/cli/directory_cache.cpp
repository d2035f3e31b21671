#include "cli/directory_cache.h"

#include "device_files/directory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace zv::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* kHeader = "zentavia directory 1";
constexpr const char* kFirmwarePrefix = "firmware ";

// A name part made of letters, digits, dots and dashes only.
std::string safe(const std::string& text)
{
    std::string name;
    for (const char c : text)
        name += std::isalnum(static_cast<unsigned char>(c)) || c == '.' || c == '-' ? c : '_';
    return name;
}

std::string prefixOf(const std::string& targetId)
{
    return "directory-" + safe(targetId) + "-";
}

std::optional<std::vector<std::string>> readRecords(const fs::path& path)
{
    std::ifstream in(path);
    std::string line;
    if (!std::getline(in, line) || line != kHeader)
        return std::nullopt;
    if (!std::getline(in, line) || !line.starts_with(kFirmwarePrefix))
        return std::nullopt;
    std::vector<std::string> records;
    while (std::getline(in, line))
        if (!line.empty())
            records.push_back(line);
    if (records.empty())
        return std::nullopt;
    return records;
}

} // namespace

std::string defaultCacheFolder()
{
    if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache && *cache)
        return (fs::path(cache) / "zentavia").string();
    if (const char* home = std::getenv("HOME"); home && *home)
        return (fs::path(home) / ".cache" / "zentavia").string();
    return {};
}

bool DirectoryCache::knows(const std::string& targetId) const
{
    std::error_code error;
    if (folder_.empty() || !fs::is_directory(folder_, error))
        return false;
    const std::string prefix = prefixOf(targetId);
    for (const auto& entry : fs::directory_iterator(folder_, error))
        if (entry.path().filename().string().starts_with(prefix))
            return true;
    return false;
}

std::optional<std::vector<std::string>> DirectoryCache::find(
    const std::string& targetId, const std::string& firstRecord) const
{
    std::error_code error;
    if (folder_.empty() || !fs::is_directory(folder_, error))
        return std::nullopt;
    const std::string prefix = prefixOf(targetId);
    for (const auto& entry : fs::directory_iterator(folder_, error)) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with(prefix) || !name.ends_with(".txt"))
            continue;
        if (auto records = readRecords(entry.path()); records && records->front() == firstRecord)
            return records;
    }
    return std::nullopt;
}

void DirectoryCache::store(
    const std::string& targetId, const std::string& firmware, const std::vector<std::string>& records) const
{
    if (folder_.empty() || records.empty())
        return;
    std::error_code error;
    fs::create_directories(folder_, error);
    const fs::path target = fs::path(folder_) / (prefixOf(targetId) + safe(firmware) + ".txt");
    const fs::path temporary = target.string() + ".tmp";
    {
        std::ofstream out(temporary, std::ios::trunc);
        out << kHeader << '\n' << kFirmwarePrefix << firmware << '\n';
        for (const auto& record : records)
            out << record << '\n';
        if (!out.flush()) {
            fs::remove(temporary, error);
            return;
        }
    }
    fs::rename(temporary, target, error);
    if (error)
        fs::remove(temporary, error);
}

bool loadDirectory(oDirectory& directory, const std::vector<std::string>& records)
{
    directory.DirectoryElements.Clear();
    directory.RecordsRead.clear();
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto entry = parseDirectoryRecord(hexToBytes(records[i]));
        if (!entry)
            return false;
        directory.RecordsRead.push_back(*entry);
        if (i == 0 || entry->FileName != "Error")
            directory.DirectoryElements.Append(*entry);
    }
    return true;
}

} // namespace zv::cli
