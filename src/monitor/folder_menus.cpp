#include "monitor/folder_menus.h"

#include "monitor/menu_tree.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace zv {

namespace {

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// The names of the plain files of a folder, sorted; none when the folder is missing.
std::vector<std::string> fileNames(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& item : std::filesystem::directory_iterator(folder, error)) {
        if (item.is_regular_file(error))
            names.push_back(item.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

std::vector<FolderMenuEntry> documentEntries(const std::string& documentationFolder)
{
    std::vector<FolderMenuEntry> entries;
    for (const auto& name : fileNames(documentationFolder))
        entries.push_back({ name, lower(name) != kAddMenuDocument });
    entries.push_back({ std::string(kSeparatorCaption) });
    return entries;
}

std::vector<std::string> utilityNames(const std::string& programFolder, const std::string& ownProgram)
{
    constexpr std::string_view extension = ".exe";
    std::vector<std::string> names;
    for (const auto& name : fileNames(programFolder)) {
        if (name.size() <= extension.size() || !name.ends_with(extension) || name == ownProgram
            || name == "uninst.exe")
            continue;
        names.push_back(name.substr(0, name.size() - extension.size()));
    }
    return names;
}

} // namespace zv
