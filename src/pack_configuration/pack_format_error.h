#pragma once
// The failure of a pack file reader: what was wrong and the source line that found it, as the
// "Invalid file format" box shows them.

#include <stdexcept>
#include <string>

namespace zv {

class PackFormatError : public std::runtime_error {
public:
    // The line defaults to the line of the throw (the builtin both GCC and Clang evaluate at the
    // call site).
    explicit PackFormatError(const std::string& description, int line = __builtin_LINE())
        : std::runtime_error(description)
        , line_(line)
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
