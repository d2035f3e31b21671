#include "core/globals.h"
#include "core/registry.h"
#include "core/settings_table.h"
#include "platform/ini_settings_store.h"
#include "platform/testing/memory_settings_store.h"
#include "temp_folder.h"

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

namespace zv {
namespace {

const std::string kMain(kMainKey);
const std::string kFolder = "/opt/zentavia";

TEST(Registry, EmptyOrMissingValueGivesTheDefault)
{
    platform::MemorySettingsStore store;
    EXPECT_EQ(GetRegistryValue(store, kMain, "CommPort", "1"), "1");
    store.setValue(kMain, "CommPort", "");
    EXPECT_EQ(GetRegistryValue(store, kMain, "CommPort", "1"), "1");
    store.setValue(kMain, "CommPort", std::string("4\0\0", 3));
    EXPECT_EQ(GetRegistryValue(store, kMain, "commport", "1"), "4");
    SetRegistryValue(store, targetKey("ZK9460"), "StaticDefinitionFile", "x.slog");
    EXPECT_EQ(store.value(
                  "Software\\Norvale Systems\\Zentavia 3\\Settings\\Targets\\ZK9460", "StaticDefinitionFile"),
        "x.slog");
}

TEST(SettingsTable, DefaultsComeFromTheTable)
{
    platform::MemorySettingsStore store;
    EXPECT_EQ(readSetting(store, "AlternateRowColor", kFolder), "&HFFF8F0");
    EXPECT_EQ(readSetting(store, "Path_Script", kFolder), "");
    EXPECT_EQ(readSetting(store, "LogFile", kFolder), "/opt/zentavia/Data Logging Files/default.csv");
    EXPECT_THROW((void)readSetting(store, "NoSuchSetting", kFolder), std::out_of_range);

    writeSetting(store, "Aux Include", "a.aux");
    EXPECT_EQ(readSetting(store, "aux include", kFolder), "a.aux");
}

TEST(SettingsTable, PerTargetDefinitionFilesDefaultToTheTargetFiles)
{
    platform::MemorySettingsStore store;
    EXPECT_EQ(readStaticDefinitionFile(store, kFolder, "ZK9460", "pack.slog"),
        "/opt/zentavia/Data Logging Files/pack.slog");
    SetRegistryValue(store, targetKey("ZK9460"), "DynamicDefinitionFile", "/home/u/mine.dlog");
    EXPECT_EQ(readDynamicDefinitionFile(store, kFolder, "ZK9460", "pack.dlog"), "/home/u/mine.dlog");
    EXPECT_EQ(readDynamicDefinitionFile(store, kFolder, "ZK9470", "pack.dlog"),
        "/opt/zentavia/Data Logging Files/pack.dlog");
}

TEST(StartupSettings, ReadsNumbersTheWayTheStoreHoldsThem)
{
    platform::MemorySettingsStore store;
    const auto defaults = readStartupSettings(store, kFolder);
    EXPECT_EQ(defaults.CommPort, 1);
    EXPECT_EQ(defaults.Baud, 2);
    EXPECT_EQ(defaults.Clock, 2);
    EXPECT_TRUE(defaults.ReadWriteLogging);
    EXPECT_FALSE(defaults.AutoWrite);
    EXPECT_EQ(defaults.AlternateRowColor, 0xFFF8F0u);
    EXPECT_EQ(defaults.MaxPlottingChannels, 10);

    writeSetting(store, "CommPort", " 7 ");
    writeSetting(store, "ReadWriteLogging", "0");
    writeSetting(store, "ForeColor1", "255");
    writeSetting(store, "MaxPlottingChannels", "12 channels");
    const auto s = readStartupSettings(store, kFolder);
    EXPECT_EQ(s.CommPort, 7);
    EXPECT_FALSE(s.ReadWriteLogging);
    EXPECT_EQ(s.ForeColor1, 0xFFu);
    EXPECT_EQ(s.MaxPlottingChannels, 12);
}

TEST(StartupSettings, BadPortBaudOrClockTextFallsBackToTheDefault)
{
    platform::MemorySettingsStore store;
    writeSetting(store, "CommPort", "COM3");
    writeSetting(store, "Baud", "9");
    writeSetting(store, "Clock", "1x");
    auto s = readStartupSettings(store, kFolder);
    EXPECT_EQ(s.CommPort, 1);
    EXPECT_EQ(s.Baud, 2);
    EXPECT_EQ(s.Clock, 2);

    writeSetting(store, "CommPort", "0");
    writeSetting(store, "Baud", "0");
    writeSetting(store, "Clock", "3");
    s = readStartupSettings(store, kFolder);
    EXPECT_EQ(s.CommPort, 1);
    EXPECT_EQ(s.Baud, 0);
    EXPECT_EQ(s.Clock, 3);
}

TEST(Globals, AddressAndSeparators)
{
    AppGlobals g;
    g.setAddress(0x0B);
    EXPECT_EQ(g.SMBusWriteAddress, 0x16);
    g.setAddress(0xC5); // shifted out of 8 bits
    EXPECT_EQ(g.gAddress7, 0xC5);
    EXPECT_EQ(g.SMBusWriteAddress, 0x8A);
    g.setDecimalSeparator(',');
    EXPECT_EQ(g.gListSep, ";");
    g.setDecimalSeparator('.');
    EXPECT_EQ(g.gListSep, ",");
}

TEST(IniSettingsStore, KeepsValuesUnderKeyPathsAcrossRuns)
{
    testing::TempFolder folder;
    const auto path = folder.file("cfg/Zentavia/Zentavia.conf");
    {
        platform::IniSettingsStore store(path);
        writeSetting(store, "CommPort", "3");
        SetRegistryValue(store, targetKey("ZK9460"), "StaticDefinitionFile", "C:\\logs\\a,b.slog");
    }
    platform::IniSettingsStore again(path);
    EXPECT_EQ(readSetting(again, "CommPort", kFolder), "3");
    EXPECT_EQ(readStaticDefinitionFile(again, kFolder, "zk9460", "x"), "C:\\logs\\a,b.slog");
    EXPECT_EQ(folder.read("cfg/Zentavia/Zentavia.conf"),
        "[Software\\Norvale Systems\\Zentavia 3\\Settings]\nCommPort=3\n"
        "[Software\\Norvale Systems\\Zentavia 3\\Settings\\Targets\\ZK9460]\n"
        "StaticDefinitionFile=C:\\logs\\a,b.slog\n");
}

TEST(IniSettingsStore, DamagedFilesGiveDefaultsAndNoFailure)
{
    testing::TempFolder folder;
    // Malformed: binary noise and broken lines around one good value.
    const auto malformed = folder.write("bad.conf",
        std::string("\x01\x02garbage\n[Software\\Norvale Systems\\Zentavia 3\\Settings\n=x\n")
            + "[Software\\Norvale Systems\\Zentavia 3\\Settings]\nBaud=1\nnot a line\n");
    platform::IniSettingsStore damaged(malformed);
    EXPECT_EQ(readStartupSettings(damaged, kFolder).Baud, 1);
    EXPECT_EQ(readStartupSettings(damaged, kFolder).CommPort, 1);
    EXPECT_EQ(damaged.loadProblem(), "") << "a file that could be read";
    EXPECT_EQ(platform::IniSettingsStore(folder.file("first-run.conf")).loadProblem(), "") << "not there yet";

    // Unreadable and unwritable: the path is a folder.
    std::filesystem::create_directories(folder.file("a-folder"));
    platform::IniSettingsStore unusable(folder.file("a-folder"));
    EXPECT_EQ(unusable.loadProblem(),
        "The settings file " + folder.file("a-folder") + " cannot be read; every setting has its default");
    EXPECT_EQ(readStartupSettings(unusable, kFolder).Clock, 2);
    writeSetting(unusable, "Clock", "1"); // ignored silently on disk
    EXPECT_TRUE(std::filesystem::is_directory(folder.file("a-folder")));
    EXPECT_EQ(readStartupSettings(unusable, kFolder).Clock, 1); // this run still sees it

    // Unwritable: the folder cannot be created below a file.
    platform::IniSettingsStore blocked(folder.write("plain-file", "x") + "/sub/Zentavia.conf");
    writeSetting(blocked, "Baud", "0");
    EXPECT_EQ(folder.read("plain-file"), "x");
}

TEST(IniSettingsStore, PathComesFromTheEnvironment)
{
    const char* saved = std::getenv("ZENTAVIA_SETTINGS");
    const std::string restore = saved ? saved : "";
    setenv("ZENTAVIA_SETTINGS", "/tmp/explicit.ini", 1);
    EXPECT_EQ(platform::IniSettingsStore::defaultPath(), "/tmp/explicit.ini");
    unsetenv("ZENTAVIA_SETTINGS");
    setenv("XDG_CONFIG_HOME", "/tmp/xdg", 1);
    EXPECT_EQ(platform::IniSettingsStore::defaultPath(), "/tmp/xdg/Zentavia/Zentavia.conf");
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", "/home/someone", 1);
    EXPECT_EQ(platform::IniSettingsStore::defaultPath(), "/home/someone/.config/Zentavia/Zentavia.conf");
    if (saved)
        setenv("ZENTAVIA_SETTINGS", restore.c_str(), 1);
}

} // namespace
} // namespace zv
