#pragma once
// An unexpected failure of a monitor step as the common error handler takes it: a run-time error
// keeps its number, any other failure is error 1.

#include "core/app_error.h"
#include "monitor/main_title.h"
#include "params/runtime_error.h"

#include <exception>

namespace zv {

[[nodiscard]] inline AppError unexpectedError(const std::exception& e)
{
    const auto* runtime = dynamic_cast<const RuntimeError*>(&e);
    return { runtime ? runtime->number() : 1, e.what(), kAppTitle };
}

} // namespace zv
