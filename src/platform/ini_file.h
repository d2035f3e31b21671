#pragma once
// INI files as the desktop systems they come from read and write them: section and key names
// compare case-insensitively, keys are taken verbatim (blanks, parentheses, dots), values are
// the text after '=' without surrounding blanks, with no escaping and no quoting. Writing keeps
// the order of the file, its comments and the lines it cannot read.

#include <string>
#include <string_view>
#include <vector>

namespace zv::platform {

class IniFile {
public:
    // A missing or unreadable file gives an empty document.
    [[nodiscard]] static IniFile load(const std::string& path);
    [[nodiscard]] static IniFile parse(std::string_view text);

    // Writes the whole document; false when the file cannot be written.
    [[nodiscard]] bool save(const std::string& path) const;
    [[nodiscard]] std::string text() const;

    [[nodiscard]] bool contains(std::string_view section, std::string_view key) const;
    // The value, or empty when the section or key is missing.
    [[nodiscard]] std::string value(std::string_view section, std::string_view key) const;
    // Replaces the key's value, or adds the key at the end of its section (the section at the end
    // of the file when it does not exist yet).
    void setValue(std::string_view section, std::string_view key, std::string_view value);

    // Section names in file order, each once.
    [[nodiscard]] std::vector<std::string> sections() const;
    // Key names of a section in file order.
    [[nodiscard]] std::vector<std::string> keys(std::string_view section) const;

private:
    enum class Kind { Other, Section, Entry };
    struct Line {
        Kind kind = Kind::Other;
        std::string raw; // as read; regenerated for entries that were changed
        std::string section; // the section the line belongs to (its own name for a header)
        std::string key;
        std::string value;
    };

    [[nodiscard]] const Line* findEntry(std::string_view section, std::string_view key) const;
    [[nodiscard]] Line* findEntry(std::string_view section, std::string_view key);
    [[nodiscard]] std::size_t insertionPoint(std::string_view section) const;

    std::vector<Line> lines_;
    bool crlf_ = false;
};

} // namespace zv::platform
