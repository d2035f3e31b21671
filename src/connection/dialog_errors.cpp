#include "connection/dialog_errors.h"

#include "core/error_handler.h"

#include <exception>
#include <system_error>

namespace zv {

namespace {

// A failure that carries no number of its own.
constexpr long kUnnumberedFailure = 1;

AppError appError(const std::exception& failure)
{
    const auto* system = dynamic_cast<const std::system_error*>(&failure);
    return AppError { system ? system->code().value() : kUnnumberedFailure, failure.what(), "Zentavia" };
}

} // namespace

void runGuarded(ErrorHandler* errors, std::string_view object, std::string_view procedure,
    const std::function<void()>& handler)
{
    while (true) {
        try {
            handler();
            return;
        } catch (const std::exception& failure) {
            if (!errors || errors->ReportError(appError(failure), object, procedure) != ErrorResponse::Retry)
                return;
        }
    }
}

} // namespace zv
