#pragma once
// A failure as the common error routines receive it.

#include <string>

namespace zv {

struct AppError {
    long number = 0; // 0: no error is active
    std::string description;
    std::string source;
};

} // namespace zv
