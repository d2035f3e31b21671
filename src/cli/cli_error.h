#pragma once
// A failure of a zentavia-cli command: the text goes to stderr and the program ends with the
// exit code.

#include <stdexcept>
#include <string>

namespace zv::cli {

inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

class CliError : public std::runtime_error {
public:
    explicit CliError(const std::string& text, int exitCode = kExitFailure)
        : std::runtime_error(text)
        , exitCode_(exitCode)
    {
    }
    [[nodiscard]] int exitCode() const { return exitCode_; }

private:
    int exitCode_;
};

} // namespace zv::cli
