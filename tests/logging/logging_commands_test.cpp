// Logging in the main window's poll: AutoLogging opens and closes the log with the poll, a
// comment asked for while polling waits for the next tick, a start while polling opens the log
// at the next tick, and an empty comment refuses the start.

#include "cli/log_columns.h"
#include "core/settings_table.h"
#include "logging/logging_commands.h"
#include "monitor/monitor_fixture.h"
#include "platform/atomic_file.h"

#include <filesystem>
#include <unistd.h>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

namespace fs = std::filesystem;

class LoggingCommandsTest : public ::testing::Test, public MonitorRig {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(load());
        fs::create_directories(folder);
        writeSetting(h.settings, "LogFile", logPath());
    }
    void TearDown() override
    {
        commands.reset();
        fs::remove_all(folder);
    }

    void makeCommands(bool autoLogging)
    {
        writeSetting(h.settings, "AutoLogging", autoLogging ? "1" : "0");
        LoggingCommandServices services;
        services.showModal = [this](platform::ui::Window& window) {
            shown.push_back(window.name());
            if (auto* dialog = dynamic_cast<frmLogComment*>(&window)) {
                dialog->txtComment.setText(nextComment);
                dialog->cmdOK.click();
            }
        };
        commands = std::make_unique<LoggingCommands>(*monitor, services);
        wireLoggingCommands(*form, *commands);
        form->monitorSteps.loggingState();
        form->enableAllCommands(true);
    }

    std::string logPath() const { return (folder / "poll.csv").string(); }

    fs::path folder = fs::temp_directory_path() / ("zv-logging-poll-" + std::to_string(::getpid()));
    std::unique_ptr<LoggingCommands> commands;
    std::vector<std::string> shown;
    std::string nextComment;
};

TEST_F(LoggingCommandsTest, AutoLoggingFollowsThePollWithAPendingComment)
{
    makeCommands(true);
    EXPECT_FALSE(form->mnuStartLogging.visible()) << "AutoLogging hides the start and stop entries";
    // An empty comment: the question, and No leaves the poll off.
    h.dialogs.answerInput("");
    h.dialogs.answerMessage(platform::Answer::No);
    form->mnuPollAllContinuously.click();
    EXPECT_EQ(h.dialogs.lastShown().text, "Logging failed to start.\r\nContinue polling without logging?");
    EXPECT_FALSE(h.globals.PollingActive);
    EXPECT_FALSE(fs::exists(logPath()));

    h.dialogs.answerInput("auto run");
    form->mnuPollAllContinuously.click();
    ASSERT_TRUE(commands->writer.LogOpen);
    EXPECT_EQ(form->sbStatusBar.panelText(kLoggingPanel), "Logging Active");
    EXPECT_TRUE(form->mnuAddComment.enabled());
    EXPECT_FALSE(form->mnuConfigLogging.enabled());

    h.loop.wait(6500);
    nextComment = "mid, run";
    form->mnuAddComment.click();
    EXPECT_TRUE(shown.empty()) << "the comment waits for the tick";
    h.loop.wait(1500);
    EXPECT_THAT(shown, ::testing::ElementsAre("frmLogComment"));
    h.loop.wait(2000);
    form->mnuStopPolling.click();
    h.loop.wait(1500);

    EXPECT_FALSE(commands->writer.LogOpen);
    EXPECT_EQ(form->sbStatusBar.panelText(kLoggingPanel), "Logging Inactive");
    EXPECT_FALSE(form->mnuAddComment.enabled());
    const LogShape shape = logShape(logPath());
    EXPECT_EQ(shape.rows.at("COMMENT"), 2);
    EXPECT_EQ(shape.rows.at("HEADER"), 2);
    EXPECT_GE(shape.rows.at("DATA"), 2 + 4) << "a row each second sample of ten seconds";
    EXPECT_THAT(shape.mismatches, ::testing::IsEmpty());
    EXPECT_THAT(
        readWholeFile(logPath()), ::testing::ContainsRegex("COMMENT,[^,]+,[^,]+,0\\.[0-9]+,mid  run"));
}

TEST_F(LoggingCommandsTest, StartWhilePollingOpensTheLogAtTheNextTick)
{
    makeCommands(false);
    form->mnuPollAllContinuously.click();
    h.loop.wait(2500);
    form->mnuStartLogging.click();
    EXPECT_FALSE(commands->writer.LogOpen);
    h.dialogs.answerInput("late start");
    h.loop.wait(1000);
    EXPECT_TRUE(commands->writer.LogOpen);
    h.loop.wait(4000);
    form->mnuStopLogging.click();
    EXPECT_FALSE(commands->writer.LogOpen);
    EXPECT_TRUE(h.globals.PollingActive) << "the poll goes on";
    EXPECT_GE(logShape(logPath()).rows.at("DATA"), 2 + 1);
    form->mnuStopPolling.click();
    h.loop.wait(1500);
}

} // namespace
} // namespace zv::test
