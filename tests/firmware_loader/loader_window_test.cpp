// frmBootStrapLoader end to end against the in-process pack on the virtual clock: a pack in its
// application loader brought back by the shipped image, a damaged image, images refused by
// target, the repeat of a failed verification, a pack pulled in the middle of a download, the
// calibration carried across the download, and what closing the window sets off.

#include "calibration/cal_file.h"
#include "core/active_form.h"
#include "core/target_table.h"
#include "driver/target_operations.h"
#include "firmware_loader/calibration_carry.h"
#include "firmware_loader/firmware_check.h"
#include "firmware_loader/frm_boot_strap_loader.h"
#include "platform/atomic_file.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace zv;
using platform::Answer;
using platform::DialogKind;
namespace fs = std::filesystem;

namespace {

const std::string kImage6000
    = test::programFolder() + "/Configuration Files/ZK9470/Firmware/FW_0002_0000_6000_0719.enc";
const std::string kImage5000
    = test::programFolder() + "/Configuration Files/ZK9460S12/Firmware/FW_0001_0000_5000_0012.enc";
const std::string kDamaged6000 = std::string(ZENTAVIA_TEST_IMAGES) + "/FW_0002_0000_6000_0719_damaged.enc";

zvsim::PackOptions pack(std::uint16_t target, zvsim::PackState state)
{
    zvsim::PackOptions options;
    options.targetId = target;
    options.state = state;
    return options;
}

class LoaderWindow {
public:
    explicit LoaderWindow(zvsim::PackOptions options)
        : sim(options)
        , folder(fs::temp_directory_path() / ("zv_loader_" + std::to_string(::getpid())))
    {
        fs::create_directories(folder);
        sim.globals.gINIFile = test::programFolder() + "/Zentavia.ini";
        // Events of the download as the test sees them; the loader passes them on.
        sim.main().hooks.firmwareDownloadComplete = [this](bool success) {
            completions.push_back(success);
            if (onComplete)
                onComplete(success);
        };
        window = std::make_unique<frmBootStrapLoader>(services());
    }
    ~LoaderWindow()
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    BootStrapLoaderServices services()
    {
        LoaderServices loader { sim.main(), sim.globals, sim.loop, sim.dialogs, test::programFolder() };
        BootStrapLoaderServices s { std::move(loader), sim.settings };
        s.mainWindowOpen = [this] { return mainWindowOpen; };
        s.enableMainWindow = [this](bool on) { calls.push_back(on ? "enable main" : "disable main"); };
        s.showMainWindow = [this] { calls.push_back("show main"); };
        s.restartApplication = [this] { calls.push_back("StartApplication"); };
        s.loadMainForm = [this] { calls.push_back("LoadMainForm"); };
        s.updateDeviceBits = [this] { calls.push_back("UpdateDeviceBits"); };
        s.beep = [this] { ++beeps; };
        return s;
    }

    // The start-up's state before the loader opens: the link up (and, for a pack that runs its
    // application, the target loaded as detection loads it).
    void open(bool targetLoaded = false)
    {
        ASSERT_TRUE(targetLoaded ? sim.connect(targetName()) : sim.openLink());
        if (targetLoaded) {
            sim.globals.gTargetID = targetIdText(sim.pack->model().options.targetId);
            sim.globals.gTargetName = targetName();
        }
        window->show();
    }

    std::string targetName() const
    {
        const auto id = targetIdText(sim.pack->model().options.targetId);
        return findTargetById(readTargetTable(sim.globals.gINIFile), id)->Name;
    }

    void load(const std::string& path)
    {
        sim.dialogs.answerOpenFiles({ path });
        window->cmdLoadImage.click();
    }

    [[nodiscard]] std::string info() const { return window->sbStatusBar.panelText(kInfoPanel); }
    [[nodiscard]] const zvsim::FirmwareVersions& firmware() const { return sim.pack->model().firmware; }
    [[nodiscard]] std::vector<std::string> boxTitles() const
    {
        std::vector<std::string> titles;
        for (const auto& shown : sim.dialogs.shown())
            if (shown.kind == DialogKind::MessageBox)
                titles.push_back(shown.title);
        return titles;
    }

    test::SimHarness sim;
    fs::path folder;
    std::unique_ptr<frmBootStrapLoader> window;
    std::vector<bool> completions;
    std::function<void(bool)> onComplete;
    std::vector<std::string> calls;
    bool mainWindowOpen = false;
    int beeps = 0;
};

} // namespace

TEST(LoaderWindow, ThePackInItsApplicationLoaderFailsADamagedImageAndComesBackWithTheShippedOne)
{
    LoaderWindow w(pack(0x1003, zvsim::PackState::AppLoader));
    w.open();
    auto& f = *w.window;
    EXPECT_TRUE(f.loader()->connectedBySelf);
    EXPECT_EQ(w.sim.globals.gTargetID, "1003");
    EXPECT_EQ(f.caption(), "Zentavia BootStrap Loader [System]");
    EXPECT_EQ(f.fraSystemInfo.caption(), "ZK9470 Information");
    EXPECT_EQ(f.lblAppFFileVersion.caption(), "0");
    EXPECT_EQ(w.info(), "Application memory failed to verify");
    EXPECT_EQ(f.lblFile.caption(), "n/a");
    EXPECT_FALSE(f.cmdDownload.enabled());

    w.load(kImage6000);
    const auto& dialog = w.sim.dialogs.lastShown();
    EXPECT_EQ(dialog.file.title, "ZK9470 Firmware Files");
    EXPECT_EQ(dialog.file.filter, "Programming Files (*.enc)|*.enc");
    EXPECT_EQ(dialog.file.folder, test::programFolder() + "/Configuration Files/ZK9470/Firmware");
    EXPECT_EQ(f.lblFile.caption(), "FW_0002_0000_6000_0719.enc");
    EXPECT_EQ(f.lblFileCount.caption(), "2");
    EXPECT_EQ(f.lblAppVersion.caption(), "App Version:");
    EXPECT_EQ(f.lblDataVersion.caption(), "Data Version:");
    EXPECT_EQ(f.lblFile1Version.caption(), "6000");
    EXPECT_EQ(f.lblFile2Version.caption(), "101");
    EXPECT_EQ(f.lblStatus.caption(), "Ready");
    ASSERT_TRUE(f.cmdDownload.enabled());

    // A damaged image leaves the pack in the application loader; the user may retry.
    w.load(kDamaged6000);
    f.cmdDownload.click();
    EXPECT_EQ(f.lastOutcome(), DownloadOutcome::DownloadFailed);
    EXPECT_EQ(w.completions, std::vector<bool> { false }) << "the second section is not sent";
    EXPECT_EQ(f.lblStatus.caption(), "Error");
    EXPECT_EQ(w.info(), "Firmware download failed");
    EXPECT_EQ(w.beeps, 1);
    w.sim.loop.advance(20000);
    EXPECT_EQ(w.sim.pack->model().state, zvsim::PackState::AppLoader);
    EXPECT_EQ(w.firmware().application, 0);
    EXPECT_TRUE(f.cmdDownload.enabled());

    w.load(kImage6000);
    const auto start = w.sim.loop.milliseconds();
    f.cmdDownload.click();
    EXPECT_EQ(f.lastOutcome(), DownloadOutcome::Verified);
    EXPECT_EQ(w.completions, (std::vector<bool> { false, true, true }));
    EXPECT_EQ(w.sim.pack->model().state, zvsim::PackState::Application);
    EXPECT_EQ(w.firmware().application, 6000);
    EXPECT_EQ(w.firmware().build, 719);
    EXPECT_EQ(w.firmware().data, 101);
    EXPECT_EQ(f.lblFW.caption(), "6000");
    EXPECT_EQ(f.lblFFileVersion.caption(), "101");
    EXPECT_EQ(w.info(), "Verification completed OK");
    EXPECT_EQ(f.caption(), "Zentavia BootStrap Loader");
    const auto seconds = (w.sim.loop.milliseconds() - start) / 1000;
    EXPECT_GE(seconds, 32) << "two sections, each followed by the 16 s reset wait";
    EXPECT_EQ(f.lblStatus.caption(), "Completed in " + std::to_string(seconds) + " Seconds");
    EXPECT_EQ(f.pgbRecords.value(), 100);
    EXPECT_TRUE(f.cmdLoadImage.enabled() && f.cmdDownload.enabled()) << "the buttons are given back";
    EXPECT_EQ(w.beeps, 1) << "no beep for the good download";
    EXPECT_TRUE(w.boxTitles().empty());
    EXPECT_EQ(w.sim.settings.value("Software\\Norvale Systems\\Zentavia 3\\Settings", "Path_BootLoader"),
        test::programFolder() + "/Configuration Files/ZK9470/Firmware");
}

// On a pack that runs its application: the loader opens in the target's firmware folder, offers
// to preserve the calibration on target 1001 only, and checks each image against the target.
TEST(LoaderWindow, ImagesAreCheckedAgainstTheTarget)
{
    const fs::path oneSection = fs::temp_directory_path() / "zv_one_section.enc";
    const fs::path trailingBlank = fs::temp_directory_path() / "zv_trailing_blank.enc";
    const fs::path invalid = fs::temp_directory_path() / "zv_invalid.enc";
    {
        std::ofstream(oneSection, std::ios::binary)
            << "3C556C6D617220426F6F746C6F61643E\r\n0100020089130A0000000000\r\n";
        std::ofstream(trailingBlank, std::ios::binary) << "3C556C6D617220426F6F746C6F61643E \r\n0100\r\n";
        std::ofstream(invalid, std::ios::binary)
            << "3C556C6D617220426F6F746C6F61643E\r\n0100020089130A00FF00\r\n";
    }
    struct Case {
        std::uint16_t target;
        std::string image;
        const char* title; // the box, or nothing
        std::string text;
        bool ready;
    } cases[] = {
        { 0x1002, kImage6000, "Invalid File Version",
            "Error: File FW_0002_0000_6000_0719.enc is not compatible with this device.", false },
        { 0x1003, kImage6000, nullptr, "", true },
        { 0x1002, kImage5000, nullptr, "", true },
        { 0x1003, kImage5000, "Invalid File Version",
            "Error: File FW_0001_0000_5000_0012.enc is not compatible with this device.", false },
        { 0x1002, oneSection.string(), nullptr, "", true },
        { 0x1002, trailingBlank.string(), "Invalid File Format",
            "The file zv_trailing_blank.enc is not a valid firmware file.", false },
        { 0x1002, invalid.string(), "Invalid File Format", "Error: File zv_invalid.enc is invalid.", false },
        { 0x1001, kImage5000, nullptr, "", true },
    };
    for (const auto& c : cases) {
        LoaderWindow w(pack(c.target, zvsim::PackState::Application));
        w.open(true);
        EXPECT_EQ(w.window->chkPreserve.visible(), c.target == 0x1001) << c.target;
        EXPECT_FALSE(w.window->loader()->connectedBySelf);
        EXPECT_EQ(w.window->caption(), "Zentavia BootStrap Loader");
        EXPECT_EQ(w.info(), "Verification completed OK");
        w.sim.dialogs.answerOpenFiles({});
        w.window->cmdLoadImage.click();
        EXPECT_EQ(w.sim.dialogs.lastShown().file.folder,
            test::programFolder() + "/Configuration Files/" + (c.target == 0x1003 ? "ZK9470" : "ZK9460S12")
                + "/Firmware");
        EXPECT_EQ(w.window->lblFile.caption(), "n/a") << "a cancelled dialog changes nothing";

        w.sim.dialogs.answerOpenFiles({ c.image });
        if (c.title)
            w.sim.dialogs.answerMessage(Answer::OK);
        w.window->cmdLoadImage.click();
        const auto titles = w.boxTitles();
        if (c.title) {
            ASSERT_EQ(titles.size(), 1u) << c.image;
            EXPECT_EQ(titles[0], c.title);
            EXPECT_EQ(w.sim.dialogs.lastShown().text, c.text);
            EXPECT_EQ(w.sim.dialogs.lastShown().icon, platform::Icon::Critical);
        } else {
            EXPECT_TRUE(titles.empty()) << c.image;
        }
        EXPECT_EQ(w.window->cmdDownload.enabled(), c.ready) << c.image;
        EXPECT_EQ(w.window->mnuDownload.enabled(), c.ready) << c.image;
        if (c.image == oneSection.string()) {
            EXPECT_EQ(w.window->lblFileCount.caption(), "1");
            EXPECT_EQ(w.window->lblAppVersion.caption(), "File Version:");
            EXPECT_EQ(w.window->lblDataVersion.caption(), "File Version:");
            EXPECT_EQ(w.window->lblFile1Version.caption(), "5001");
            EXPECT_EQ(w.window->lblFile2Version.caption(), "n/a");
        }
    }
    for (const auto& path : { oneSection, trailingBlank, invalid })
        fs::remove(path);
}

TEST(LoaderWindow, APackPulledInTheMiddleOfADownloadFailsAndASecondDownloadSucceeds)
{
    LoaderWindow w(pack(0x1001, zvsim::PackState::AppLoader));
    // The cable is pulled while the second block of the first section goes out.
    bool pulled = false;
    w.sim.main().hooks.firmwareDownloadStatus = [&](int, const std::string& text) {
        if (text == "Downloading block 2 of 3" && !pulled) {
            pulled = true;
            w.sim.port.pull();
        }
    };
    w.open();
    w.load(kImage5000);
    const auto start = w.sim.loop.milliseconds();
    w.window->cmdDownload.click();
    EXPECT_EQ(w.window->lastOutcome(), DownloadOutcome::DownloadFailed);
    EXPECT_EQ(w.completions, std::vector<bool> { false });
    EXPECT_EQ(w.window->lblStatus.caption(), "Error");
    EXPECT_EQ(w.info(), "Firmware download failed");
    EXPECT_LT(w.sim.loop.milliseconds() - start, 120000) << "no wait without end";
    EXPECT_EQ(w.sim.pack->model().state, zvsim::PackState::AppLoader);

    w.sim.port.plugIn();
    w.sim.replaceEndpoint({});
    w.window->cmdDownload.click();
    EXPECT_EQ(w.window->lastOutcome(), DownloadOutcome::Verified);
    EXPECT_EQ(w.sim.pack->model().state, zvsim::PackState::Application);
    EXPECT_EQ(w.firmware().application, 5000);
    EXPECT_EQ(w.firmware().data, 101);
}

namespace {

// Target 1001 with distinct calibration bytes behind file 24's head, and the box ticked.
void preparePreserve(LoaderWindow& w)
{
    w.open(true);
    auto& calibration = w.sim.pack->model().files.bytes(24);
    for (std::size_t i = 0; i < calibration.size(); ++i)
        calibration[i] = static_cast<std::uint8_t>(0x40 + i);
    w.sim.dialogs.answerMessage(Answer::Yes);
    w.window->chkPreserve.userClick();
    ASSERT_EQ(w.window->chkPreserve.value(), platform::ui::CheckBox::Checked);
    ASSERT_EQ(w.sim.dialogs.lastShown().title, "Confirm Selection");
    w.load(kImage5000);
    w.sim.dialogs.answerSaveFile((w.folder / "before.cal").string());
}

} // namespace

TEST(LoaderWindow, PreservingCarriesTheOldCalibrationIntoTheNewFirmware)
{
    LoaderWindow w(pack(0x1001, zvsim::PackState::Application));
    preparePreserve(w);
    const auto old = w.sim.pack->model().files.bytes(24);
    w.sim.dialogs.answerMessage(Answer::OK);
    w.window->cmdDownload.click();

    EXPECT_EQ(w.window->lastOutcome(), DownloadOutcome::Verified);
    const auto& box = w.sim.dialogs.lastShown();
    EXPECT_EQ(box.title, "Preserve Calibration");
    EXPECT_EQ(box.text, "Calibration has been preserved.");
    EXPECT_EQ(w.window->chkPreserve.value(), platform::ui::CheckBox::Unchecked);
    // The restart into the new firmware put back the file's stored values (the test's pattern
    // lived in RAM only): the head is what the new firmware has, the calibration the old one.
    const std::string restore = test::programFolder() + "/CalRestore/";
    const std::string fresh = readWholeFile(restore + "tmp.cal");
    const std::string head = fresh.substr(0, 72);
    EXPECT_NE(head, calLineText(old).substr(0, 72));
    EXPECT_NE(fresh.substr(72, 100), calLineText(old).substr(72)) << "the new firmware lost the calibration";
    const auto& now = w.sim.pack->model().files.bytes(24);
    EXPECT_EQ(calLineText(now), head + calLineText(old).substr(72));
    EXPECT_EQ(
        readWholeFile(restore + "modified.cal").substr(0, 174), head + calLineText(old).substr(72) + "\r\n");
    const auto saved = readWholeFile((w.folder / "before.cal").string());
    EXPECT_EQ(saved.substr(0, saved.find("\r\n")), calLineText(old));
}

TEST(LoaderWindow, ANewCalibrationShorterThanTheOldAsksAndNoLeavesTheDownloadInPlace)
{
    LoaderWindow w(pack(0x1001, zvsim::PackState::Application));
    preparePreserve(w);
    // The new firmware's file 24 is eight bytes shorter: the old calibration no longer fits.
    w.onComplete = [&](bool) {
        auto& model = w.sim.pack->model();
        if (model.map.files[24].size == 86) {
            model.map.files[24].size = 78;
            model.files.bytes(24).resize(78);
        }
    };
    w.sim.dialogs.answerMessage(Answer::No);
    w.sim.dialogs.answerMessage(Answer::OK);
    w.window->cmdDownload.click();

    const auto& shown = w.sim.dialogs.shown();
    ASSERT_GE(shown.size(), 2u);
    const auto& question = shown[shown.size() - 2];
    EXPECT_EQ(question.title, "Warning!");
    EXPECT_EQ(question.buttons, platform::Buttons::YesNo);
    EXPECT_EQ(question.text.substr(0, 50), "The calibration data structure you are trying to l");
    const auto& failure = shown.back();
    EXPECT_EQ(failure.title, "Restore Calibration");
    EXPECT_EQ(failure.icon, platform::Icon::Critical);
    EXPECT_NE(
        failure.text.find("The file can be found at " + test::programFolder() + "/CalRestore/modified.cal."),
        std::string::npos);
    EXPECT_EQ(w.window->lastOutcome(), DownloadOutcome::Verified) << "the download stays in place";
    EXPECT_EQ(w.firmware().data, 101);
    EXPECT_EQ(w.window->chkPreserve.value(), platform::ui::CheckBox::Checked);
}

TEST(LoaderWindow, AFailedSaveOffersAbortRetryAndIgnore)
{
    struct Case {
        std::vector<Answer> answers;
        DownloadOutcome outcome;
        bool stillTicked;
    } cases[] = {
        { { Answer::Abort }, DownloadOutcome::Aborted, true },
        { { Answer::Retry, Answer::Abort }, DownloadOutcome::Aborted, true },
        { { Answer::Ignore }, DownloadOutcome::Verified, false },
    };
    for (const auto& c : cases) {
        LoaderWindow w(pack(0x1001, zvsim::PackState::Application));
        w.open(true);
        w.sim.dialogs.answerMessage(Answer::Yes);
        w.window->chkPreserve.userClick();
        w.load(kImage5000);
        for (auto answer : c.answers) {
            w.sim.dialogs.answerSaveFile((w.folder / "no such folder" / "x.cal").string());
            w.sim.dialogs.answerMessage(answer);
        }
        w.window->cmdDownload.click();
        EXPECT_EQ(w.sim.dialogs.lastShown().title, "Preserve Calibration Failed");
        EXPECT_EQ(w.sim.dialogs.lastShown().buttons, platform::Buttons::AbortRetryIgnore);
        EXPECT_EQ(w.window->lastOutcome(), c.outcome);
        EXPECT_EQ(w.window->chkPreserve.value() == platform::ui::CheckBox::Checked, c.stillTicked);
        EXPECT_EQ(w.completions.empty(), c.outcome == DownloadOutcome::Aborted);
        EXPECT_FALSE(w.window->downloading());
    }
}

TEST(LoaderWindow, ClosingAfterADownloadWhoseVerificationPassedOnTheRepeatRunsTheSecondStage)
{
    struct Case {
        bool download;
        std::vector<std::string> calls;
    } cases[] = {
        { false, { "enable main", "show main" } },
        { true,
            { "disable main", "enable main", "StartApplication", "LoadMainForm", "UpdateDeviceBits",
                "enable main", "show main" } },
    };
    for (const auto& c : cases) {
        LoaderWindow w(pack(0x1003, zvsim::PackState::Application));
        w.mainWindowOpen = true;
        w.open(true);
        if (c.download) {
            // The first file read after the last section fails: the first verification cannot read
            // file 5, its repeat passes and the download counts as a success.
            w.onComplete = [&](bool) {
                if (w.completions.size() == 2)
                    w.sim.pack->faults().forcedStatus = 4;
            };
            w.load(kImage6000);
            w.window->cmdDownload.click();
            EXPECT_EQ(w.sim.pack->faults().forcedStatus, -1) << "the fault was met";
            EXPECT_EQ(w.window->lastOutcome(), DownloadOutcome::Verified);
            EXPECT_EQ(w.info(), "Verification completed OK");
            EXPECT_TRUE(w.boxTitles().empty());
        }
        w.window->mnuClose.click();
        EXPECT_FALSE(w.window->loaded());
        EXPECT_EQ(w.calls, c.calls);
        EXPECT_FALSE(w.sim.main().hooks.firmwareDownloadComplete == nullptr)
            << "the test's hook is given back";
    }
}

TEST(FirmwareCheck, TheTwoKnownBadReleasesAreOfferedTheirReplacement)
{
    struct Case {
        long version;
        long build;
        const char* text; // nothing: no issue
        const char* image;
    } cases[] = {
        { 6000, 717,
            "Warning: The detected firmware 6000 build 717 has a known issue.\nIt is recommended that you "
            "update the "
            "firmware to release 6000 Build 719.\nWould you like to upgrade now?",
            "ZK9470/Firmware/FW_0002_0000_6000_0719.enc" },
        { 4452, 3,
            "Warning: The detected firmware 4452 build 3 has a known issue.\nPlease update the firmware to "
            "version "
            "5000\nWould you like to upgrade now?",
            "ZK9460S12/Firmware/FW_0001_0000_5000_0012.enc" },
        { 6000, 719, nullptr, nullptr },
        { 6000, 716, nullptr, nullptr },
        { 5000, 12, nullptr, nullptr },
    };
    for (const auto& c : cases) {
        const auto issue = knownFirmwareIssue(c.version, c.build, "/opt/zv");
        ASSERT_EQ(issue.has_value(), c.text != nullptr) << c.version << " " << c.build;
        if (issue) {
            EXPECT_EQ(issue->text, c.text);
            EXPECT_EQ(issue->imagePath, std::string("/opt/zv/Configuration Files/") + c.image);
        }
    }
}

TEST(FirmwareCheck, AYesAtStartUpLoadsAndDownloadsTheReplacement)
{
    LoaderWindow w(pack(0x1003, zvsim::PackState::Application));
    auto& model = w.sim.pack->model();
    model.firmware.application = 6000;
    model.firmware.build = 717;
    model.publishState();
    ASSERT_TRUE(w.sim.connect("ZK9470"));
    w.sim.globals.gTargetID = "1003";
    w.sim.globals.gTargetName = "ZK9470";
    w.sim.globals.gFirmwareVersion = 6000;
    w.sim.globals.gFirmwareBuild = 717;
    FirmwareCheckServices services { w.sim.globals, w.sim.dialogs, w.sim.loop, test::programFolder(),
        [&]() -> frmBootStrapLoader& {
            w.window->show();
            return *w.window;
        } };

    w.sim.globals.gDemo = true;
    EXPECT_FALSE(CheckFirmwareAtStartup(services)) << "not in demo mode";
    w.sim.globals.gDemo = false;
    w.sim.dialogs.answerMessage(Answer::No);
    EXPECT_FALSE(CheckFirmwareAtStartup(services));
    EXPECT_FALSE(w.window->loaded());

    w.sim.dialogs.answerMessage(Answer::Yes);
    EXPECT_TRUE(CheckFirmwareAtStartup(services));
    EXPECT_EQ(w.sim.dialogs.lastShown().title, "Firmware Issue Detected");
    EXPECT_EQ(w.window->lblFile.caption(), "FW_0002_0000_6000_0719.enc");
    EXPECT_EQ(w.window->lastOutcome(), DownloadOutcome::Verified);
    EXPECT_EQ(model.firmware.build, 719);
    EXPECT_EQ(w.window->lblFW.caption(), "6000");
}
