#pragma once
// Failures inside a dialog's event handlers go to the common error handler.

#include <functional>
#include <string_view>

namespace zv {

class ErrorHandler;

// Runs a handler; a failure goes to ReportError under the dialog's object name and the procedure,
// and Retry runs the handler again. Without an error handler a failure is dropped.
void runGuarded(ErrorHandler* errors, std::string_view object, std::string_view procedure,
    const std::function<void()>& handler);

} // namespace zv
