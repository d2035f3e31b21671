#pragma once
// The two common error routines: ReportError asks the user what to do, AutoHandler records and
// goes on. Both append a record to "error.log".

#include "core/app_error.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

#include <functional>
#include <string>
#include <string_view>

namespace zv {

// What the failing procedure does next; the values are the routine's results.
enum class ErrorResponse {
    Abort = 0, // end the procedure (the program ends)
    Retry = 1, // run the failing statement again
    Ignore = 2, // go on with the next statement
};

// What Abort does, supplied by the application: first release everything (clear the active
// form, unload the forms from the last to the first, close an open log file, release gMain),
// then, after the record is written, end the program.
struct AbortSequence {
    std::function<void()> releaseAll;
    std::function<void()> endProgram;
};

class ErrorHandler {
public:
    ErrorHandler(platform::Dialogs& dialogs, const platform::EventLoop& clock, std::string errorLogPath,
        AbortSequence abortSequence);

    // Shows the critical Abort/Retry/Ignore box titled "Application Error" and records the choice.
    // Throws std::system_error when "error.log" cannot be written.
    [[nodiscard]] ErrorResponse ReportError(const AppError& error, std::string_view module,
        std::string_view procedure, std::string_view debugText = {});

    // Records without asking: the error, or with no active error (number 0) a "Debug" record of
    // debugText. Throws std::system_error when "error.log" cannot be written.
    void AutoHandler(const AppError& error, std::string_view module, std::string_view procedure,
        std::string_view debugText = {});

    // The text of the error box, line by line.
    [[nodiscard]] static std::string errorBoxText(
        const AppError& error, std::string_view module, std::string_view procedure);

    [[nodiscard]] const std::string& errorLogPath() const { return errorLogPath_; }

private:
    void record(const std::string& source, std::string_view module, std::string_view procedure,
        const std::string& number, const std::string& description, const char* action);

    platform::Dialogs& dialogs_;
    const platform::EventLoop& clock_;
    std::string errorLogPath_;
    AbortSequence abortSequence_;
};

} // namespace zv
