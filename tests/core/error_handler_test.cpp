#include "core/error_handler.h"
#include "core/local_time.h"
#include "fixed_clock.h"
#include "platform/testing/scripted_dialogs.h"
#include "temp_folder.h"

#include <sstream>
#include <system_error>

#include <gtest/gtest.h>

namespace zv {
namespace {

using platform::Answer;

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, separator))
        parts.push_back(part);
    return parts;
}

class ErrorHandlerTest : public ::testing::Test {
protected:
    std::vector<std::string> logLines() const { return split(folder.read("error.log"), '\n'); }
    std::vector<std::string> fieldsOf(std::size_t line) const { return split(logLines().at(line), '\t'); }

    testing::TempFolder folder;
    testing::FixedClock clock;
    platform::ScriptedDialogs dialogs;
    std::vector<std::string> events;
    ErrorHandler handler { dialogs, clock, folder.file("error.log"),
        { [this] { events.push_back("release"); }, [this] { events.push_back("end"); } } };
    const AppError error { 8005, "Port already open", "Zentavia" };
};

TEST_F(ErrorHandlerTest, BoxAndRecord)
{
    dialogs.answerMessage(Answer::Ignore);
    (void)handler.ReportError(error, "CommPortError", "cmdConnect_Click");
    EXPECT_EQ(fieldsOf(0),
        (std::vector<std::string> { shortDate(clock.wallTime), timeOfDay(clock.wallTime), "Zentavia",
            "CommPortError", "cmdConnect_Click", "8005", "Port already open", "Ignore" }));
    const auto& box = dialogs.lastShown();
    EXPECT_EQ(box.title, "Application Error");
    EXPECT_EQ(box.buttons, platform::Buttons::AbortRetryIgnore);
    EXPECT_EQ(box.icon, platform::Icon::Critical);
    EXPECT_EQ(box.text,
        "An application error has occurred and the following information\n"
        "has been recorded to the application error log.\n"
        "\n"
        "    Source: Zentavia\n"
        "    Module: CommPortError\n"
        "    Procedure: cmdConnect_Click\n"
        "    Error Number: 8005\n"
        "    Error Description: Port already open\n"
        "\n"
        "If this problem continues, please contact Norvale Systems for assistance.\n"
        "\n"
        "What would you like to do?");
}

TEST_F(ErrorHandlerTest, AnswersMapToResultsAndRecords)
{
    dialogs.answerMessage(Answer::Retry);
    dialogs.answerMessage(Answer::Retry);
    dialogs.answerMessage(Answer::Ignore);
    EXPECT_EQ(handler.ReportError(error, "frmMain", "Poll"), ErrorResponse::Retry);
    EXPECT_EQ(static_cast<int>(handler.ReportError(error, "frmMain", "Poll")), 1);
    EXPECT_EQ(static_cast<int>(handler.ReportError(error, "frmMain", "Poll")), 2);
    ASSERT_EQ(logLines().size(), 3u);
    EXPECT_EQ(fieldsOf(0).back(), "Retry");
    EXPECT_EQ(fieldsOf(1).back(), "Retry");
    EXPECT_EQ(fieldsOf(2).back(), "Ignore");
    EXPECT_TRUE(events.empty());
}

TEST_F(ErrorHandlerTest, AbortReleasesRecordsThenEnds)
{
    dialogs.answerMessage(Answer::Abort);
    ErrorHandler handler(dialogs, clock, folder.file("error.log"),
        { [this] {
             events.push_back(
                 std::filesystem::exists(folder.file("error.log")) ? "release after record" : "release");
         },
            [this] { events.push_back(logLines().size() == 1 ? "end after record" : "end"); } });
    // The release step runs before the record is written, the end after it.
    EXPECT_EQ(static_cast<int>(handler.ReportError(error, "modMain", "Main")), 0);
    EXPECT_EQ(events, (std::vector<std::string> { "release", "end after record" }));
    EXPECT_EQ(fieldsOf(0).back(), "Abort");
}

TEST_F(ErrorHandlerTest, AutoHandlerRecordsSilently)
{
    handler.AutoHandler({ 13, "Type mismatch", "clsCellWeft" }, "clsCellWeft", "FormatData", "ignored");
    handler.AutoHandler({}, "frmMain", "UpdateDynamicData", "poll took 3 tries");
    EXPECT_TRUE(dialogs.shown().empty());
    const auto error = fieldsOf(0);
    EXPECT_EQ(std::vector<std::string>(error.begin() + 2, error.end()),
        (std::vector<std::string> {
            "clsCellWeft", "clsCellWeft", "FormatData", "13", "Type mismatch", "Auto Handler" }));
    const auto debug = fieldsOf(1);
    EXPECT_EQ(std::vector<std::string>(debug.begin() + 2, debug.end()),
        (std::vector<std::string> {
            "Zentavia", "frmMain", "UpdateDynamicData", "Debug", "poll took 3 tries", "Auto Handler" }));
}

TEST_F(ErrorHandlerTest, UnwritableLogReachesTheCaller)
{
    ErrorHandler broken(dialogs, clock, folder.file("no-such-folder/error.log"), {});
    EXPECT_THROW(broken.AutoHandler({}, "m", "p", "t"), std::system_error);
    dialogs.answerMessage(Answer::Retry);
    EXPECT_THROW((void)broken.ReportError(error, "m", "p"), std::system_error);
}

// Every suite leans on this: a box the test did not answer must fail it, even with another
// kind of answer queued.
TEST(ScriptedDialogs, AnUnscriptedBoxFailsLoudly)
{
    platform::ScriptedDialogs dialogs;
    dialogs.answerInput("typed");
    EXPECT_THROW(dialogs.messageBox("Hello", platform::Buttons::OK, platform::Icon::None, "T"),
        platform::UnscriptedDialog);
    EXPECT_EQ(dialogs.inputBox("Name?", "T", "x"), "typed");
}

} // namespace
} // namespace zv
