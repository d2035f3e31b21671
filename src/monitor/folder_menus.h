#pragma once
// The menu lists made from folders: the documents of the Help menu and the add-on utilities. A
// user adds a document or a tool by putting a file in the folder.

#include <string>
#include <vector>

namespace zv {

inline constexpr const char* kDocumentationFolder = "Documentation";
inline constexpr const char* kAddMenuDocument = "addmenu.txt";
inline constexpr const char* kNoUtilities = "Empty";

struct FolderMenuEntry {
    std::string caption;
    bool visible = true;
};

// The entries that follow the first of the Help list: one a plain file of the folder, by name, the
// one of "addmenu.txt" hidden, and a closing separator.
[[nodiscard]] std::vector<FolderMenuEntry> documentEntries(const std::string& documentationFolder);

// The names without ".exe" of the utilities beside the program: every file whose name ends in
// ".exe", except the program itself and "uninst.exe".
[[nodiscard]] std::vector<std::string> utilityNames(
    const std::string& programFolder, const std::string& ownProgram);

} // namespace zv
