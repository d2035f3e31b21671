// Saving and restoring .cal files against the in-process pack: what lands on the device, what
// reaches flash, and what the user is told.

#include "calibration/calibration_data.h"
#include "commands/command_words.h"
#include "support/sim_harness.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace zv::test {
namespace {

struct Target {
    std::uint16_t id;
    const char* idText;
    const char* name;
    long firmware;
};
constexpr Target k1001 { 0x1001, "1001", "ZK9460", 5000 };
constexpr Target k1003 { 0x1003, "1003", "ZK9470", 6000 };

class CalibrationDataTest : public ::testing::Test {
protected:
    void connect(const Target& target)
    {
        zvsim::PackOptions options;
        options.targetId = target.id;
        h = std::make_unique<SimHarness>(options);
        ASSERT_TRUE(h->connect(target.name));
        h->globals.gTargetID = target.idText;
        h->globals.gFirmwareVersion = target.firmware;
        CalibrationDataHooks hooks;
        hooks.notify = [this](const std::string& title, const std::string& text) {
            notes.push_back(title + ": " + text);
        };
        hooks.commitChanges = [this] {
            ++commits;
            return h->driver().WriteCommandFile(command_words::kCommit);
        };
        data = std::make_unique<CalibrationData>(
            CalibrationDataServices { h->driver(), h->globals, h->dialogs }, std::move(hooks));
        folder = std::filesystem::temp_directory_path()
            / ("zv_caldata_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    [[nodiscard]] zvsim::FileStore& files() { return h->pack->model().files; }
    [[nodiscard]] std::string deviceLine(int file) { return calLineText(files().bytes(file)); }
    [[nodiscard]] std::string path(const char* name) const { return (folder / name).string(); }
    void writeText(const std::string& file, const std::string& text)
    {
        ASSERT_EQ(writeFileAtomically(file, text), "");
    }

    std::unique_ptr<SimHarness> h;
    std::unique_ptr<CalibrationData> data;
    std::vector<std::string> notes;
    int commits = 0;
    std::filesystem::path folder;
};

TEST_F(CalibrationDataTest, SaveChangeRestoreReachesFlash)
{
    connect(k1001);
    const std::string saved = path("pack.cal");
    ASSERT_EQ(data->saveTo(saved), CalibrationOutcome::Done);
    const std::string text = *readTextFile(saved);
    EXPECT_EQ(text, deviceLine(24) + "\r\n" + deviceLine(31) + "\r\n");
    EXPECT_EQ(deviceLine(24).size(), 2u * 86);
    EXPECT_EQ(notes, std::vector<std::string> { "Save Calibration Data: Calibration data has been saved." });

    // Another calibration committed to flash, then the file put back.
    const std::string before24 = deviceLine(24);
    files().set("Current Gain", 30000);
    files().setSigned("Cell 3 Voltage Offset", -7);
    files().setWord(31, 10, 0x1234);
    files().commit();
    ASSERT_NE(deviceLine(24), before24);

    notes.clear();
    ASSERT_EQ(data->restoreFrom(saved), CalibrationOutcome::Done);
    EXPECT_TRUE(h->dialogs.shown().empty()); // sizes match: no question
    EXPECT_EQ(commits, 1);
    EXPECT_EQ(
        notes, std::vector<std::string> { "Restore Calibration Data: Calibration data has been restored." });
    files().restart(); // RAM from flash: the restored data was committed
    EXPECT_EQ(deviceLine(24) + "\r\n" + deviceLine(31) + "\r\n", text);
}

TEST_F(CalibrationDataTest, OneLineFilesByTarget)
{
    struct Case {
        const Target* target;
        std::optional<platform::Answer> answer; // to the "Warning!" question; none: not asked
        CalibrationOutcome outcome;
        bool file24Written;
    };
    const Case cases[] = {
        // 1003 keeps its calibration in file 24 alone; the default second line (15 bytes) never
        // matches file 31, so the question comes every time.
        { &k1003, platform::Answer::Yes, CalibrationOutcome::Done, true },
        { &k1003, platform::Answer::No, CalibrationOutcome::Refused, false },
        // Any other target needs line 2: the error box, nothing written.
        { &k1001, std::nullopt, CalibrationOutcome::Failed, false },
    };
    for (const auto& c : cases) {
        connect(*c.target);
        SCOPED_TRACE(c.target->idText);
        if (c.target == &k1003) { // and saves one line
            ASSERT_EQ(data->saveTo(path("saved.cal")), CalibrationOutcome::Done);
            EXPECT_EQ(*readTextFile(path("saved.cal")), deviceLine(24) + "\r\n");
            notes.clear();
        }
        std::vector<std::uint8_t> wanted = files().bytes(24);
        wanted[0] ^= 0x5A;
        const std::string file = path("one.cal");
        writeText(file, calLineText(wanted) + "\r\n");
        const auto before24 = files().bytes(24);
        const auto before31 = files().bytes(31);
        if (c.answer)
            h->dialogs.answerMessage(*c.answer);
        else
            h->dialogs.answerMessage(platform::Answer::OK);
        EXPECT_EQ(data->restoreFrom(file), c.outcome);
        ASSERT_EQ(h->dialogs.shown().size(), 1u);
        const auto& box = h->dialogs.shown()[0];
        if (c.answer) {
            EXPECT_EQ(box.title, "Warning!");
            EXPECT_EQ(box.buttons, platform::Buttons::YesNo);
        } else {
            EXPECT_EQ(box.text, "An error has occurred\nError: The calibration file has no second line.");
            EXPECT_EQ(box.icon, platform::Icon::Critical);
        }
        EXPECT_EQ(files().bytes(24), c.file24Written ? wanted : before24);
        EXPECT_EQ(files().bytes(31), before31); // never written from a one-line file
        EXPECT_EQ(commits, c.file24Written ? 1 : 0);
        if (c.answer == platform::Answer::No) {
            EXPECT_EQ(
                notes, std::vector<std::string> { "Restore Calibration Data: Operation has been aborted." });
        }
        notes.clear();
        commits = 0;
    }
}

TEST_F(CalibrationDataTest, SizeMismatchAsksAndMayGoOn)
{
    connect(k1001);
    // A file of another firmware: file 24 two bytes longer than this device's.
    std::vector<std::uint8_t> longer = files().bytes(24);
    longer[2] ^= 0x01;
    longer.push_back(0xAA);
    longer.push_back(0xBB);
    const std::string file = path("other.cal");
    writeText(file, calLineText(longer) + "\r\n" + deviceLine(31) + "\r\n");
    const auto before24 = files().bytes(24);

    h->dialogs.answerMessage(platform::Answer::No);
    EXPECT_EQ(data->restoreFrom(file), CalibrationOutcome::Refused);
    EXPECT_EQ(h->dialogs.shown().back().text,
        "The calibration data structure you are trying to load does not match the device.\n"
        "Loading this information may produce undesired results. Do you wish to continue?");
    EXPECT_EQ(files().bytes(24), before24);
    EXPECT_EQ(commits, 0);

    h->dialogs.answerMessage(platform::Answer::Yes);
    EXPECT_EQ(data->restoreFrom(file), CalibrationOutcome::Done);
    EXPECT_EQ(files().bytes(24), std::vector<std::uint8_t>(longer.begin(), longer.begin() + 86));
    EXPECT_EQ(commits, 1);
}

TEST_F(CalibrationDataTest, FailedWriteCommitsNothing)
{
    connect(k1001);
    std::vector<std::uint8_t> changed = files().bytes(24);
    changed[4] ^= 0xFF;
    const std::string file = path("changed.cal");
    writeText(file, calLineText(changed) + "\r\n" + deviceLine(31) + "\r\n");
    const std::string flash = files().flashText();
    const auto before24 = files().bytes(24);
    h->pack->faults().forcedStatus = 9; // the device refuses the write
    h->dialogs.answerMessage(platform::Answer::OK); // the error box
    EXPECT_EQ(data->restoreFrom(file), CalibrationOutcome::Failed);
    EXPECT_EQ(h->dialogs.shown().back().title, "Error downloading file");
    EXPECT_EQ(h->dialogs.lastShown().text,
        "An error has occurred while downloading the calibration data.\nOperation aborted");
    EXPECT_EQ(notes,
        std::vector<std::string> { "Restore Calibration Data: Calibration data has NOT been restored." });
    EXPECT_EQ(commits, 0);
    EXPECT_EQ(files().bytes(24), before24);
    EXPECT_EQ(files().flashText(), flash);

    // File 31 refused after file 24 went to RAM (a second line too short for the device): still
    // nothing reaches flash.
    writeText(file, calLineText(changed) + "\r\n" + deviceLine(31).substr(0, 100) + "\r\n");
    notes.clear();
    h->dialogs.answerMessage(platform::Answer::Yes); // the size question
    h->dialogs.answerMessage(platform::Answer::OK); // the error box
    EXPECT_EQ(data->restoreFrom(file), CalibrationOutcome::Failed);
    EXPECT_EQ(files().bytes(24), changed);
    EXPECT_EQ(notes,
        std::vector<std::string> { "Restore Calibration Data: Calibration data has NOT been restored." });
    EXPECT_EQ(commits, 0);
    EXPECT_EQ(files().flashText(), flash);
}

TEST_F(CalibrationDataTest, BadFilesLeaveTheDeviceAlone)
{
    connect(k1001);
    const auto before = files().flashText();
    const auto before24 = files().bytes(24);
    struct Case {
        std::string content; // empty: no file at all
        std::string error;
    };
    const Case cases[] = {
        { "", "Cannot read " + path("bad.cal") },
        { "00GG\r\n00\r\n", "The calibration file holds characters that are not hexadecimal digits." },
        { "000\r\n00\r\n", "The calibration file holds characters that are not hexadecimal digits." },
    };
    for (const auto& c : cases) {
        std::filesystem::remove(path("bad.cal"));
        if (!c.content.empty())
            writeText(path("bad.cal"), c.content);
        h->dialogs.answerMessage(platform::Answer::OK);
        EXPECT_EQ(data->restoreFrom(path("bad.cal")), CalibrationOutcome::Failed);
        EXPECT_EQ(h->dialogs.lastShown().text, "An error has occurred\nError: " + c.error);
    }
    EXPECT_EQ(files().bytes(24), before24);
    EXPECT_EQ(files().flashText(), before);
    EXPECT_EQ(commits, 0);
}

TEST_F(CalibrationDataTest, MenuCommandsRememberTheFolderAndRefuseWhilePolling)
{
    connect(k1001);
    bool polling = true;
    std::vector<std::string> frame;
    data->hooks().isPolling = [&polling] { return polling; };
    data->hooks().disableAllCommands = [&frame](bool) { frame.push_back("off"); };
    data->hooks().enableAllCommands = [&frame](bool) { frame.push_back("on"); };
    CalibrationData menu({ h->driver(), h->globals, h->dialogs, &h->settings }, data->hooks());

    h->dialogs.answerMessage(platform::Answer::OK);
    menu.mnuSaveCalibrationData_Click();
    EXPECT_EQ(h->dialogs.shown().back().text, "Cannot save calibration data while polling is active.");
    EXPECT_EQ(h->dialogs.shown().back().title, "Save Calibration Data");
    EXPECT_TRUE(frame.empty());

    polling = false;
    h->dialogs.answerSaveFile(std::nullopt); // cancelled: not a word
    menu.mnuSaveCalibrationData_Click();
    EXPECT_EQ(h->dialogs.shown().back().file.filter, "Calibration Files (*.cal)|*.cal|");
    EXPECT_EQ(frame, (std::vector<std::string> { "off", "on" }));
    EXPECT_FALSE(std::filesystem::exists(path("menu.cal")));

    h->dialogs.answerSaveFile(path("menu.cal"));
    menu.mnuSaveCalibrationData_Click();
    EXPECT_TRUE(std::filesystem::exists(path("menu.cal")));
    h->dialogs.answerOpenFiles({ path("menu.cal") });
    menu.mnuRestoreCalibrationData_Click();
    EXPECT_EQ(h->dialogs.shown().back().file.folder, folder.string());
    EXPECT_EQ(frame.back(), "on");
}

} // namespace
} // namespace zv::test
