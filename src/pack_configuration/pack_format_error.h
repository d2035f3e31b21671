#pragma once
// The failure of a pack file reader: what was wrong and the source line that found it, as the
// "Invalid file format" box shows them.

#include <source_location>
#include <stdexcept>
#include <string>

namespace zv {

class PackFormatError : public std::runtime_error {
public:
    explicit PackFormatError(
        const std::string& description, std::source_location where = std::source_location::current())
        : std::runtime_error(description)
        , line_(static_cast<int>(where.line()))
    {
    }
    [[nodiscard]] int line() const { return line_; }

private:
    int line_;
};

// The box of a pack file that could not be read: title "Invalid file format".
[[nodiscard]] std::string invalidFileFormatText(const std::string& path, const PackFormatError& error);
inline constexpr const char* kInvalidFileFormatTitle = "Invalid file format";

} // namespace zv
