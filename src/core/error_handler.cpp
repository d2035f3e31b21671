#include "core/error_handler.h"

#include "core/error_log.h"

namespace zv {

ErrorHandler::ErrorHandler(platform::Dialogs& dialogs, const platform::EventLoop& clock,
    std::string errorLogPath, AbortSequence abortSequence)
    : dialogs_(dialogs)
    , clock_(clock)
    , errorLogPath_(std::move(errorLogPath))
    , abortSequence_(std::move(abortSequence))
{
}

std::string ErrorHandler::errorBoxText(
    const AppError& error, std::string_view module, std::string_view procedure)
{
    std::string text;
    text += "An application error has occurred and the following information\n";
    text += "has been recorded to the application error log.\n";
    text += "\n";
    text += "    Source: " + error.source + "\n";
    text += "    Module: " + std::string(module) + "\n";
    text += "    Procedure: " + std::string(procedure) + "\n";
    text += "    Error Number: " + std::to_string(error.number) + "\n";
    text += "    Error Description: " + error.description + "\n";
    text += "\n";
    text += "If this problem continues, please contact Norvale Systems for assistance.\n";
    text += "\n";
    text += "What would you like to do?";
    return text;
}

ErrorResponse ErrorHandler::ReportError(const AppError& error, std::string_view module,
    std::string_view procedure, std::string_view /*debugText*/)
{
    const auto answer = dialogs_.messageBox(errorBoxText(error, module, procedure),
        platform::Buttons::AbortRetryIgnore, platform::Icon::Critical, "Application Error");

    ErrorResponse response = ErrorResponse::Ignore;
    const char* action = "Ignore";
    if (answer == platform::Answer::Abort) {
        response = ErrorResponse::Abort;
        action = "Abort";
        if (abortSequence_.releaseAll)
            abortSequence_.releaseAll();
    } else if (answer == platform::Answer::Retry) {
        response = ErrorResponse::Retry;
        action = "Retry";
    }

    record(error.source, module, procedure, std::to_string(error.number), error.description, action);
    if (response == ErrorResponse::Abort && abortSequence_.endProgram)
        abortSequence_.endProgram();
    return response;
}

void ErrorHandler::AutoHandler(
    const AppError& error, std::string_view module, std::string_view procedure, std::string_view debugText)
{
    if (error.number != 0)
        record(
            error.source, module, procedure, std::to_string(error.number), error.description, "Auto Handler");
    else
        record("Zentavia", module, procedure, "Debug", std::string(debugText), "Auto Handler");
}

void ErrorHandler::record(const std::string& source, std::string_view module, std::string_view procedure,
    const std::string& number, const std::string& description, const char* action)
{
    const ErrorLogRecord entry { source, std::string(module), std::string(procedure), number, description,
        action };
    appendErrorLog(errorLogPath_, errorLogLine(entry, clock_.now()));
}

} // namespace zv
