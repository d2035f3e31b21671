// The pack configuration flows end to end against the in-process 12-cell pack on the virtual
// clock: a .dat saved, the pack changed, the .dat loaded back; the failures on the way; the
// .xml export; the data-set round trip and import.

#include "commands/command_words.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "pack_configuration/pack_flows.h"
#include "platform/atomic_file.h"
#include "platform/desktop.h"
#include "support/sim_harness.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using platform::Answer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
namespace fs = std::filesystem;

constexpr const char* kTarget = "ZK9460S12";
const std::vector<int> kCloneFiles { 6, 8, 9, 10, 12, 13, 14, 15, 16, 37, 39 };

zvsim::PackOptions twelveCells()
{
    zvsim::PackOptions options;
    options.targetId = 0x1002;
    return options;
}

class PackFlowTest : public ::testing::Test, public SimHarness {
protected:
    PackFlowTest()
        : SimHarness(twelveCells())
        , folder(fs::temp_directory_path() / ("zv_pack_flows_" + std::to_string(::getpid())))
    {
        fs::create_directories(folder);
        globals.gINIFile = programFolder() + "/Zentavia.ini";
        globals.gTargetSection = "T2";
        globals.gTargetName = kTarget;
        globals.gTargetID = "1002";
        EXPECT_TRUE(connect(kTarget));
        main().hooks.updateProgress = [this](int percent, const std::string& text) {
            if (onProgress)
                onProgress(percent, text);
        };
        PackFlowHooks hooks;
        hooks.showSplash = [this](const std::string& text) { splashes.push_back(text); };
        hooks.login = [this](const PasswordBytes& bytes) {
            logins.push_back(bytes);
            return true;
        };
        hooks.CommitChanges = [this] {
            ++commits;
            return driver().WriteCommandFile(command_words::kCommit);
        };
        hooks.CommandInitialize = [this](bool relearn) {
            const bool ok = driver().WriteCommandFile(
                relearn ? command_words::kInitializeRelearn : command_words::kInitialize,
                command_words::initializeWaitMs("1002"));
            (void)driver().SMBus_ReInit();
            return ok;
        };
        hooks.detectTarget = [this] {
            auto& d = driver();
            return d.Bus.UnlockDevice() == 0 && d.Bus.EnableUlmarCommandSet() && loadTarget(kTarget);
        };
        hooks.Parameters_ReadAll = [this] { return driver().GetAllValues(); };
        flows = std::make_unique<PackConfigurationFlows>(
            PackFlowServices { main(), globals, settings, dialogs, loop, programFolder() }, std::move(hooks));
    }
    ~PackFlowTest() override { fs::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    std::vector<std::uint8_t>& packFile(int file) { return pack->model().files.bytes(file); }
    std::map<int, std::vector<std::uint8_t>> cloneFiles()
    {
        std::map<int, std::vector<std::uint8_t>> files;
        for (const int file : kCloneFiles)
            files[file] = packFile(file);
        return files;
    }
    std::vector<std::string> boxTitles() const
    {
        std::vector<std::string> titles;
        for (const auto& shown : dialogs.shown())
            titles.push_back(shown.title);
        return titles;
    }
    // Changes a value in every clone file of the pack (not the wired bit of file 9, which only
    // the wired command lets a write change).
    void changeThePack()
    {
        auto& files = pack->model().files;
        files.set("Cell Over Voltage Limit", 4000);
        files.set("Design Voltage", 40000);
        for (const int file : kCloneFiles)
            if (file != 16)
                packFile(file)[0] ^= 0x52;
    }
    std::string saveDat(const std::string& name = "pack.dat")
    {
        const std::string file = path(name);
        EXPECT_TRUE(flows->savePackConfiguration(file));
        return file;
    }

    fs::path folder;
    std::unique_ptr<PackConfigurationFlows> flows;
    std::vector<std::string> splashes;
    std::vector<PasswordBytes> logins;
    int commits = 0;
    std::function<void(int, const std::string&)> onProgress;
};

TEST_F(PackFlowTest, ASavedConfigurationLoadsBackBitForBit)
{
    const auto* identity = driver().Directory.DirectoryElements.fileEntry(8);
    ASSERT_GT(identity->FileSize, identity->FileMaxBytes) << "file 8 is written in parts at record offsets";
    ASSERT_EQ(driver().nodes.Count(), 12);
    const auto saved = cloneFiles();
    const std::string file = saveDat();
    ASSERT_EQ(dialogs.notifications().size(), 1u);
    EXPECT_EQ(dialogs.notifications()[0].text, "Pack configuration has been saved.");

    changeThePack();
    pack->model().files.commit();
    ASSERT_NE(cloneFiles(), saved);

    const auto started = loop.milliseconds();
    ASSERT_TRUE(flows->loadFromFile(file, false)) << flows->lastFailure;
    EXPECT_EQ(cloneFiles(), saved) << "every cloned file reads back equal after commit and restart";
    EXPECT_EQ(commits, 1);
    EXPECT_THAT(logins, ElementsAre(passwordBytes("engineer"))) << "the pack's own level 2 password";
    EXPECT_THAT(splashes,
        ElementsAre("Reading File Contents...", "Initializing Configuration...",
            "Loading Pack Configuration...", "Committing Changes To Flash...", "Initializing Device...",
            "Initializing communications..."));
    EXPECT_TRUE(pack->model().dataFlow) << "the data flow runs again";
    EXPECT_GE(loop.milliseconds() - started, 3000 + 3000 + 1000 + 5000 + 1000) << "the waits of the flow";
    EXPECT_EQ(driver().nodes.Count(), 12) << "detected again";
    EXPECT_TRUE(dialogs.shown().empty());
}

// Files that are not a pack configuration are refused before any write; a write that fails half
// way leaves the flash as it was.
TEST_F(PackFlowTest, RefusedFilesAndAHalfWayFailureLeaveTheFlashAsItWas)
{
    const std::string file = saveDat();
    std::string bytes = readWholeFile(file);
    bytes[bytes.size() - 10] = bytes[bytes.size() - 10] == 'A' ? 'B' : 'A'; // inside the last data text
    writeFileReplacing(path("tampered.dat"), bytes);
    writeFileReplacing(path("pack.txt"), "x");
    for (int box = 0; box < 4; ++box)
        dialogs.answerMessage(Answer::OK);
    EXPECT_FALSE(flows->loadFromFile(path("tampered.dat"), false));
    EXPECT_FALSE(flows->loadFromFile(path("pack.txt"), false));
    EXPECT_THAT(dialogs.shown()[0].text,
        HasSubstr(
            "Please verify that '" + path("tampered.dat") + "' is a Pack Configuration File.\r\nError: "));
    EXPECT_EQ(dialogs.shown()[1].text,
        "The file pack.txt has the wrong extension.\r\nPlease select a different file.");
    EXPECT_THAT(splashes, ::testing::Each("Reading File Contents...")) << "nothing was written";

    changeThePack();
    pack->model().files.commit();
    const std::string flash = pack->model().files.flashText();
    onProgress = [this](int percent, const std::string& text) {
        if (text == "Writing Configuration " && percent >= 50)
            pack->faults().forcedStatus = 5;
    };
    EXPECT_FALSE(flows->loadFromFile(file, false));
    EXPECT_THAT(boxTitles(),
        ElementsAre("Invalid file format", "Invalid File Extension", "Error downloading file", ""));
    EXPECT_EQ(dialogs.shown()[2].text,
        "An error has occurred while downloading the pack configuration.\r\nOperation aborted");
    EXPECT_EQ(dialogs.shown()[3].text, pack_texts::kLoadFailed);
    EXPECT_EQ(commits, 0);
    EXPECT_TRUE(logins.empty());
    pack->model().files.restart();
    EXPECT_EQ(pack->model().files.flashText(), flash) << "nothing was committed";
}

TEST_F(PackFlowTest, PasswordCasesThatSkipTheLogin)
{
    ASSERT_TRUE(flows->ReadPackConfiguration());
    auto& list = driver().Directory.PackConfigurationFile;
    const auto passwords = [&list]() -> PackProperties* {
        for (auto& element : list)
            if (element.FileNumber == 16)
                return &element;
        return nullptr;
    };
    ASSERT_NE(passwords(), nullptr);
    const std::string original = passwords()->FileData.text();
    for (const std::string& record : { std::string(16, '0'), std::string(16, 'F') }) {
        passwords()->FileData = original.substr(0, 16) + record + original.substr(32);
        writeFileReplacing(path("p.dat"), [&] {
            const auto bytes = writeDat(applicationHeader(), list);
            return std::string(bytes.begin(), bytes.end());
        }());
        ASSERT_TRUE(flows->LoadPackConfiguration(path("p.dat")));
        ASSERT_TRUE(flows->ReadPackConfiguration());
    }
    // A one-file text form: file 14 written whole, no login.
    std::ofstream(path("map.tmap")) << "Zentavia\n3.0\n1\n14\nTempMap\n2\n16\n"
                                    << "# eight thermistor points\n1\n2\n3\n4\n5\n6\n7\n&H1000\n";
    ASSERT_TRUE(flows->LoadPackConfiguration(path("map.tmap")));
    EXPECT_TRUE(logins.empty());
    EXPECT_EQ(
        packFile(14), (std::vector<std::uint8_t> { 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0, 0, 0x10 }));
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(PackFlowTest, ExportToXmlVerifiesWhatItWrote)
{
    const std::string dat = saveDat("line.dat.copy.dat");
    dialogs.answerMessage(Answer::OK);
    const auto xml = flows->exportDatToXml(dat);
    ASSERT_TRUE(xml);
    EXPECT_EQ(*xml, path("line.xml.copy.xml")) << "both \".dat\" are replaced";
    EXPECT_EQ(dialogs.shown().back().text, "Export Successful!\r\nFile exported to: " + *xml);
    const std::string document = readWholeFile(*xml);
    EXPECT_THAT(document, HasSubstr("<DeviceName>ZK9460S12</DeviceName>"));
    EXPECT_THAT(document, HasSubstr("<CreatedFrom>line.dat.copy.dat</CreatedFrom>"));
    if (std::system("command -v xmllint >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "xmllint (libxml2-utils) is not installed";
    EXPECT_EQ(std::system(("xmllint --noout '" + *xml + "'").c_str()), 0) << "well formed";
}

TEST_F(PackFlowTest, DataSetRoundTripAndImport)
{
    auto& files = pack->model().files;
    const std::vector<std::pair<const char*, std::uint32_t>> values { { "Cell Over Voltage Limit", 4150 },
        { "Over Temperature Limit", 3331 }, { "Algorithm Enable", 0x0047 }, { "Charging Current", 2500 } };
    for (const auto& [name, raw] : values)
        files.set(name, raw);
    EXPECT_TRUE(flows->SaveDataSet(path("set.ppcsv")));
    const std::string text = readWholeFile(path("set.ppcsv"));
    EXPECT_THAT(text, HasSubstr("\r\n<Protection>,3,\r\nCell Over Voltage Limit,mV,4150\r\n"));
    EXPECT_THAT(text, HasSubstr("Over Temperature Limit,k,333.1\r\n")) << "kelvin, with a point";
    EXPECT_THAT(text, HasSubstr("Algorithm Enable,0,0x0047\r\n")) << "the units of a bit field: its mask";
    EXPECT_THAT(text, ::testing::Not(HasSubstr("<Advanced>")));

    for (const auto& [name, raw] : values)
        files.set(name, raw + 16);
    dialogs.answerMessage(Answer::OK); // chemistry file missing
    dialogs.answerMessage(Answer::No); // no auxiliary override
    ASSERT_TRUE(flows->loadDataSetToDevice(path("set.ppcsv")));
    for (const auto& [name, raw] : values)
        EXPECT_EQ(files.get(name), raw) << name;
    EXPECT_EQ(commits, 1);
    EXPECT_THAT(boxTitles(), ElementsAre("Chemistry File Missing", "Override Learned Chemistry Data"));
    EXPECT_EQ(dialogs.shown()[0].text,
        "The chemistry file 0100.chem could not be located at the path:\r\n" + programFolder()
            + "/Chemistry/\r\nPlease try again, if this problem persists, please reinstall the Zentavia");

    // Import: only what differs from the pack waits as an edit; the kelvin preference is set first.
    files.set("Charging Current", 1234);
    driver().Parameters.display.TemperatureUnits = 1;
    dialogs.answerMessage(Answer::Yes);
    ASSERT_TRUE(flows->ImportDataSet(path("set.ppcsv")));
    EXPECT_EQ(dialogs.shown().back().title, "Preference Change Required");
    EXPECT_EQ(readSetting(settings, "TemperatureUnits", programFolder()), "0");
    EXPECT_EQ(driver().GatewayParameters.FindByName("Charging Current")->NewValue, DynamicValue("2500"));
    EXPECT_TRUE(driver().GatewayParameters.FindByName("Over Temperature Limit")->NewValue.isEmpty());
    EXPECT_EQ(files.get("Charging Current"), 1234u) << "nothing is written by an import";
}

TEST_F(PackFlowTest, ADataLogOpensInTheSystemsProgramOrSaysWhyNot)
{
    struct Desktop : platform::Desktop {
        bool openExternal(const std::string& path) override
        {
            opened.push_back(path);
            return accept;
        }
        bool accept = true;
        std::vector<std::string> opened;
    } desktop;
    writeFileReplacing(path("log.csv"), "a,b\r\n");
    std::vector<std::string> info;
    const auto open = [&](const std::string& file, bool refused) {
        dialogs.answerOpenFiles({ file });
        if (refused)
            dialogs.answerMessage(Answer::OK);
        flows->mnuExport_Click(desktop, [&](const std::string& text) { info.push_back(text); });
    };
    open(path("log.csv"), false);
    EXPECT_EQ(desktop.opened, std::vector<std::string> { path("log.csv") });
    EXPECT_EQ(dialogs.shown().back().file.filter, "Data Log Files (*.csv)|*.csv|");
    EXPECT_EQ(readSetting(settings, "Path_Export", programFolder()), folder.string());
    desktop.accept = false;
    open(path("log.csv"), true);
    open(path("missing.csv"), true);
    EXPECT_THAT(boxTitles(), ElementsAre("", "", "File Error", "", "File Error")) << "file dialogs and boxes";
    EXPECT_THAT(info,
        ElementsAre(HasSubstr("There is no application associated"), "The specified file was not found."));
}

} // namespace
} // namespace zv::test
