#pragma once
// A run-time error with the number and description by which the system reports it
// (for instance in the "Error Number: " box of the configuration readers).

#include <stdexcept>
#include <string>

namespace zv {

class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int number, const std::string& description)
        : std::runtime_error(description)
        , number_(number)
    {
    }
    [[nodiscard]] int number() const { return number_; }

    [[nodiscard]] static RuntimeError overflow() { return { 6, "Overflow" }; }
    [[nodiscard]] static RuntimeError subscriptOutOfRange() { return { 9, "Subscript out of range" }; }
    [[nodiscard]] static RuntimeError typeMismatch() { return { 13, "Type mismatch" }; }
    [[nodiscard]] static RuntimeError fileNotFound() { return { 53, "File not found" }; }
    [[nodiscard]] static RuntimeError pathFileAccess() { return { 75, "Path/File access error" }; }
    [[nodiscard]] static RuntimeError objectMissing()
    {
        return { 91, "Object variable or With block variable not set" };
    }
    [[nodiscard]] static RuntimeError duplicateKey()
    {
        return { 457, "This key is already associated with an element of this collection" };
    }

private:
    int number_;
};

inline constexpr int kErrorFileNotFound = 53;
inline constexpr int kErrorObjectMissing = 91;

} // namespace zv
