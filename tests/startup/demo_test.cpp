// The demo capture of a device and the program run from it.

#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "core/ini_values.h"
#include "core/temp_folder.h"
#include "platform/ini_file.h"
#include "startup/demo_capture.h"
#include "startup_fixture.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

class DemoTest : public ::testing::Test, public test::StartupFixture {
protected:
    // A driver that reads its files from the capture, as /demo makes it.
    clsMain& demoMain(const std::string& demoFile)
    {
        sim.globals.gDemo = true;
        sim.globals.gDemoFile = demoFile;
        CellWeftServices services { sim.port, sim.loop, sim.dialogs, sim.settings, sim.globals,
            test::programFolder() };
        services.demo = demoFileSource(demoFile);
        demo_ = std::make_unique<clsMain>(std::move(services), sim.dialogs);
        return *demo_;
    }

    void capture(const std::string& demoFile)
    {
        ASSERT_EQ(sim.driver().SMBus_Init(), 0);
        ASSERT_EQ(detection().DetectTarget(false), detect::kLoaded);
        sim.globals.gDemoFile = demoFile;
        ASSERT_TRUE(GenerateDemoINI(sim.driver(), sim.globals, {}));
    }

    zv::testing::TempFolder folder;

private:
    std::unique_ptr<clsMain> demo_;
};

TEST_F(DemoTest, TheCaptureReplacesTheOldFileWithTheEncipheredIdAndEveryFile)
{
    const std::string file = folder.write("demo.ini", "[Data]\nStale=1\n");
    capture(file);
    EXPECT_EQ(GetINIValue("Data", "Stale", file), "");
    const std::string id = GetINIValue("Target", "ID", file);
    EXPECT_NE(id, "1001");
    EXPECT_EQ(modCryptText::DecryptText(id, kPackKey), "1001");
    EXPECT_FALSE(GetINIValue("Data", "Dir0", file).empty());
    const auto* config = sim.driver().Directory.DirectoryElements.fileEntry(9);
    EXPECT_EQ(GetINIValue("Data", "File9", file).size(), 2u * config->FileSize)
        << "file 9 whole, as hex text";
    EXPECT_FALSE(GetINIValue("Data", "File27", file).empty());
}

TEST_F(DemoTest, TheProgramRunsFromTheCaptureWithoutTheBus)
{
    const std::string file = folder.file("demo.ini");
    capture(file);
    clsMain& demo = demoMain(file);
    detection().setMain(&demo);
    sim.port.clearWritten();
    calls.clear();

    ASSERT_EQ(detection().DetectDemoTarget(false), detect::kLoaded);

    EXPECT_EQ(sim.globals.gTargetID, "1001");
    EXPECT_EQ(sim.globals.gTargetName, "ZK9460");
    EXPECT_EQ(demo.CellWeft().nodes.Count(), 8);
    EXPECT_EQ(demo.UserAccessLevel(), 2) << "demo mode counts as level 2";
    EXPECT_EQ(demo.CellWeft().Parameters.display.VScale, 1);
    EXPECT_TRUE(sim.port.written().empty());
    EXPECT_TRUE(calls.empty()) << "the caller shows the main window";
}

TEST_F(DemoTest, TheShippedCaptureHoldsTheDirectoryTheSimulatedPackServes)
{
    const std::string file = folder.file("demo.ini");
    capture(file);
    const auto fresh = platform::IniFile::load(file);
    const auto shipped = platform::IniFile::load(test::programFolder() + "/demo.ini");
    EXPECT_EQ(shipped.keys("Data"), fresh.keys("Data")) << "remake it: zentavia-make-demo-ini data/demo.ini";
    for (const std::string& key : fresh.keys("Data")) {
        if (key.starts_with("Dir")) {
            EXPECT_EQ(shipped.value("Data", key), fresh.value("Data", key)) << key;
        }
    }
}

TEST_F(DemoTest, TheShippedCaptureStartsTheWholeProgram)
{
    sim.globals.gDemo = true;
    StartupParts parts;
    parts.createMain = [this]() -> clsMain& { return demoMain(test::programFolder() + "/demo.ini"); };
    Startup startup(services(), sim.settings, std::move(parts), hooks());
    startup.StartApplication();
    EXPECT_EQ(calls, std::vector<std::string> { "showMainForm" });
    EXPECT_FALSE(sim.globals.gTargetName.empty());
    EXPECT_TRUE(sim.port.written().empty());
}

} // namespace
