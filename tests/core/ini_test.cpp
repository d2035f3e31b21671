#include "core/ini_values.h"
#include "platform/ini_file.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using platform::IniFile;

constexpr const char* kSample = "; shipped settings\n"
                                "[Setup]\n"
                                "Communications = 1\n"
                                "Address=11\n"
                                "this line has no equals sign\n"
                                "\n"
                                "[T1]\n"
                                "ID=1001\n"
                                "Name=ZK9460\n"
                                "URL=https://example.invalid/a,b\\c\n"
                                "Quoted=\"as written\"\n"
                                "Aux Include=C:\\Aux\\x.aux\n"
                                "YAxis(0).Min=-5\n";

TEST(IniFile, ReadsNamesCaseInsensitivelyAndValuesVerbatim)
{
    const auto ini = IniFile::parse(kSample);
    EXPECT_EQ(ini.value("setup", "COMMUNICATIONS"), "1");
    EXPECT_EQ(ini.value("SETUP", "address"), "11");
    EXPECT_EQ(ini.value("t1", "url"), "https://example.invalid/a,b\\c");
    EXPECT_EQ(ini.value("T1", "Quoted"), "\"as written\"");
    EXPECT_EQ(ini.value("T1", "aux include"), "C:\\Aux\\x.aux");
    EXPECT_EQ(ini.value("T1", "YAxis(0).Min"), "-5");
    EXPECT_EQ(ini.keys("T1"),
        (std::vector<std::string> { "ID", "Name", "URL", "Quoted", "Aux Include", "YAxis(0).Min" }));
}

TEST(IniFile, MissingOrMalformedReadsAsEmpty)
{
    const auto ini = IniFile::parse(kSample);
    EXPECT_EQ(ini.value("Setup", "this line has no equals sign"), "");
    EXPECT_EQ(ini.value("Setup", "Protocol"), "");
    EXPECT_EQ(ini.value("T9", "ID"), "");
    EXPECT_EQ(IniFile::parse("key=before any section\n[A]\n=no key\nk=v\n").keys("A"),
        std::vector<std::string> { "k" });
    EXPECT_TRUE(IniFile::load("/nonexistent/folder/x.ini").sections().empty());
}

TEST(IniFile, WritingKeepsOrderCommentsAndUnreadableLines)
{
    auto ini = IniFile::parse(kSample);
    ini.setValue("setup", "ADDRESS", "22"); // the key keeps its own spelling
    ini.setValue("Setup", "Protocol", "0"); // new key: after the section's last entry
    ini.setValue("T2", "ID", "1002"); // new section at the end
    const std::string expected = "; shipped settings\n"
                                 "[Setup]\n"
                                 "Communications = 1\n"
                                 "Address=22\n"
                                 "Protocol=0\n"
                                 "this line has no equals sign\n"
                                 "\n"
                                 "[T1]\n"
                                 "ID=1001\n"
                                 "Name=ZK9460\n"
                                 "URL=https://example.invalid/a,b\\c\n"
                                 "Quoted=\"as written\"\n"
                                 "Aux Include=C:\\Aux\\x.aux\n"
                                 "YAxis(0).Min=-5\n"
                                 "[T2]\n"
                                 "ID=1002\n";
    EXPECT_EQ(ini.text(), expected);
}

TEST(IniFile, KeepsWindowsLineEndings)
{
    auto ini = IniFile::parse("[A]\r\nx=1\r\n");
    EXPECT_EQ(ini.value("A", "x"), "1");
    ini.setValue("A", "y", "2");
    EXPECT_EQ(ini.text(), "[A]\r\nx=1\r\ny=2\r\n");
}

TEST(IniValues, MissingFileOrKeyGivesEmptyTextAndValuesAreCutAtTheReadBuffer)
{
    testing::TempFolder folder;
    EXPECT_EQ(GetINIValue("Setup", "Address", folder.file("missing.ini")), "");
    const auto file
        = folder.write("Zentavia.ini", "[Setup]\nAddress=11\n[Data]\nhex=" + std::string(3000, 'A') + "\n");
    EXPECT_EQ(GetINIValue("Setup", "Communications", file), "");
    EXPECT_EQ(GetINIValue("Setup", "Address", file), "11");
    EXPECT_EQ(GetINIValue("Data", "hex", file), std::string(kIniBufferSize - 1, 'A'));
}

TEST(IniValues, SetCreatesTheFileAndKeepsOtherContent)
{
    testing::TempFolder folder;
    const auto file = folder.file("demo.ini");
    EXPECT_TRUE(SetINIValue("Target", "ID", "1003", file));
    EXPECT_TRUE(SetINIValue("Data", "File1", "0A0B", file));
    EXPECT_TRUE(SetINIValue("target", "id", "1001", file));
    EXPECT_EQ(folder.read("demo.ini"), "[Target]\nID=1001\n[Data]\nFile1=0A0B\n");
    EXPECT_FALSE(SetINIValue("A", "b", "c", folder.file("no/such/folder/x.ini")));
}

} // namespace
} // namespace zv
