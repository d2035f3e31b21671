// The disk forms of a pack configuration, bytes and text in, records out: .dat, .xml, the
// one-file text forms and the data-set.

#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "pack_configuration/dat_file.h"
#include "pack_configuration/editable_file.h"
#include "pack_configuration/pack_format_error.h"
#include "pack_configuration/ppcsv_file.h"
#include "pack_configuration/xml_file.h"
#include "params/raw_conversion.h"
#include "platform/atomic_file.h"
#include "platform/testing/scripted_dialogs.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

namespace zv::test {
namespace {

using ::testing::HasSubstr;

PackProperties element(int number, std::string data, int chunk = 2, int maxBytes = 128, bool cloned = true)
{
    PackProperties file;
    file.Cloned = cloned;
    file.FileNumber = static_cast<std::uint8_t>(number);
    file.FileName = "File" + std::to_string(number);
    file.FileSize = static_cast<std::uint16_t>(data.size() / 2);
    file.FileChunk = static_cast<std::uint16_t>(chunk);
    file.FileMaxBytes = static_cast<std::uint16_t>(maxBytes);
    file.FileData = std::move(data);
    return file;
}

std::string repeat(const std::string& text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

// A password file of three 8-byte records; the second is the pack's login secret.
std::string passwordFile(const std::string& secondRecord)
{
    return repeat("75", 8) + secondRecord + repeat("FF", 8);
}

std::vector<std::uint8_t> datOf(const std::vector<PackProperties>& files)
{
    PackConfigurationFile list;
    for (const auto& file : files)
        list.Append(file);
    return writeDat({ "Zentavia", "3.0" }, list);
}

TEST(DatFile, WritesEncipheredRecordsThatReadBackWithThePackSecret)
{
    const std::string engineer = "656E67696E656572"; // "engineer"
    const auto bytes = datOf({ element(9, "47003C00"), element(16, passwordFile(engineer), 8, 24),
        element(8, repeat("41", 96), 32, 64) });
    const std::string raw(bytes.begin(), bytes.end());
    EXPECT_EQ(raw.find("File9"), std::string::npos) << "names are enciphered";
    EXPECT_EQ(raw.find("47003C00"), std::string::npos) << "data are enciphered";
    EXPECT_NE(raw.find(modCryptText::EncryptText("File9", kPackKey)), std::string::npos);

    std::vector<int> percents;
    const auto content = readDat(bytes, [&](int percent) { percents.push_back(percent); });
    EXPECT_EQ(content.header.title, "Zentavia");
    EXPECT_EQ(content.header.version, "3.0");
    ASSERT_EQ(content.files.size(), 3u);
    EXPECT_EQ(percents, (std::vector<int> { 33, 66, 100 }));
    const PackProperties& f = content.files[2];
    EXPECT_FALSE(f.Cloned) << "read from disk";
    EXPECT_EQ(std::tie(f.FileName, f.FileNumber, f.FileSize, f.FileChunk, f.FileMaxBytes),
        std::make_tuple(std::string("File8"), std::uint8_t { 8 }, std::uint16_t { 96 }, std::uint16_t { 32 },
            std::uint16_t { 64 }));
    EXPECT_EQ(f.FileData.text(), repeat("41", 96));
    EXPECT_TRUE(content.password.present);
    EXPECT_EQ(content.password.text, "engineer");
    EXPECT_EQ(content.password.bytes, passwordBytes("engineer"));
    EXPECT_EQ(passwordOf(passwordFile("7365637265740000")).text, "secret") << "zero bytes dropped";
}

TEST(DatFile, RefusesWhatIsNotAPackConfiguration)
{
    const auto good = datOf({ element(9, "47003C00"), element(10, "9A103610") });
    auto tampered = good;
    // A digit of the first record's enciphered data (the record's last field comes after it).
    const std::string raw(good.begin(), good.end());
    const auto data = raw.find(modCryptText::EncryptText("47003C00", kPackKey));
    ASSERT_NE(data, std::string::npos);
    tampered[data + 3] = tampered[data + 3] == 'A' ? 'B' : 'A';
    auto hugeCount = good;
    hugeCount[2 + 8 + 2 + 3] = 0x40; // count field, high byte
    struct Case {
        const char* what;
        std::vector<std::uint8_t> bytes;
    };
    const std::vector<Case> cases {
        { "tampered data", tampered },
        { "cut short", { good.begin(), good.end() - 5 } },
        { "a count beyond the file", hugeCount },
        { "empty", {} },
    };
    for (const auto& c : cases) {
        EXPECT_THROW((void)readDat(c.bytes), PackFormatError) << c.what;
    }
    try {
        (void)readDat(tampered);
    } catch (const PackFormatError& error) {
        const std::string text = invalidFileFormatText("/x/p.dat", error);
        EXPECT_THAT(text,
            HasSubstr("An error has occurred while reading the file '/x/p.dat'.\r\n"
                      "Please verify that '/x/p.dat' is a Pack Configuration File.\r\nError: "));
        EXPECT_THAT(text, HasSubstr("\r\nLine: "));
        EXPECT_GT(error.line(), 0);
    }
    EXPECT_THROW((void)datOf({ element(9, "4700", 2, 128, false) }), PackFormatError)
        << "only a configuration read from the device is written";
}

TEST(XmlFile, RowsOfThirtyTwoBytesPaddedWithFFAndCheckedBySum)
{
    PackConfigurationFile list;
    list.Append(element(8, repeat("01", 32), 32, 64, false));
    list.Append(element(9, repeat("01", 33), 2, 128, false));
    list.Append(element(10, "", 2, 128, true)); // from the device: not exported
    const std::string xml = writePackXml(list, { "3.0", "p.dat", "11/24/26 10:00:00" });
    EXPECT_THAT(xml,
        HasSubstr("    <File id=\"08\" size=\"0020\" chunk=\"20\">\n"
                  "      <Data csum=\"20\">"
            + repeat("01", 32) + "</Data>\n    </File>\n"));
    EXPECT_THAT(xml,
        HasSubstr("    <File id=\"09\" size=\"0021\" chunk=\"02\">\n      <Data csum=\"20\">"
            + repeat("01", 32) + "</Data>\n      <Data csum=\"E2\">01" + repeat("FF", 31) + "</Data>\n"));
    EXPECT_THAT(xml, ::testing::Not(HasSubstr("id=\"0A\"")));

    list.Remove(3);
    EXPECT_EQ(verifyPackXml(xml, list), kXmlRead);
    EXPECT_EQ(list.Count(), 2) << "the padding is cut away by the size";
}

TEST(XmlFile, TheDocumentAndItsIndentation)
{
    PackConfigurationFile list;
    list.Append(element(6, "0102", 2, 64, false));
    list.Append(
        element(8, "4E6F72" + repeat("00", 29) + "0A5A4B" + repeat("00", 29) + "4C494F4E" + repeat("00", 28),
            32, 64, false));
    for (int i = 3; i <= 9; ++i)
        list.Append(element(i + 10, "0000", 2, 128, false));
    list.Append(element(37, "6400", 2, 128, false));
    const std::string xml = writePackXml(list, { "3.0", "pack.dat", "11/24/26 10:00:00" });
    const std::string expected
        = "<?xml version='1.0'?>\n<PackConfiguration>\n"
          "  <!--The content contained in <PackageInfo> is informational only and does not get written to "
          "the device-->\n"
          "  <PackageInfo type=\"DAT\" version=\"3.0\">\n    <ManufactureName>Nor</ManufactureName>\n"
          "    <DeviceName>ZK</DeviceName>\n    <DeviceChemistry>LION</DeviceChemistry>\n"
          "    <ChemistryID>100</ChemistryID>\n    <CreatedFrom>pack.dat</CreatedFrom>\n"
          "    <TimeStamp>11/24/26 10:00:00</TimeStamp>\n  </PackageInfo>\n"
          "  <!--All values below are hexadecimal-->\n  <Files>\n    <File id=\"06\" size=\"0002\" "
          "chunk=\"02\">\n"
          "      <Data csum=\"E5\">0102"
        + repeat("FF", 30) + "</Data>\n    </File>\n";
    EXPECT_EQ(xml.substr(0, expected.size()), expected);
    EXPECT_THAT(xml, ::testing::EndsWith("  </Files>\n</PackConfiguration>\n"));
}

TEST(XmlFile, TheVerifyingReadTellsWhatDiffers)
{
    PackConfigurationFile list;
    list.Append(element(9, "47003C00", 2, 128, false));
    list.Append(element(10, "9A10", 2, 128, false));
    const std::string xml = writePackXml(list, { "3.0", "p.dat", "now" });
    const auto replaced = [&](const std::string& from, const std::string& to) {
        std::string text = xml;
        text.replace(text.find(from), from.size(), to);
        return text;
    };
    struct Case {
        const char* what;
        std::string document;
        int result;
    };
    const std::vector<Case> cases {
        { "as written", xml, kXmlRead },
        { "not XML", "<PackConfiguration><Files>", kXmlNotLoaded },
        { "a data byte changed", replaced("47003C00", "47003C01"), kXmlChecksum },
        { "a checksum changed", replaced("csum=\"", "csum=\"1"), kXmlChecksum },
        { "another size", replaced("size=\"0004\"", "size=\"0003\""), kXmlDifferent },
        { "attributes by position", replaced("id=\"09\" size=\"0004\"", "size=\"0004\" id=\"09\""),
            kXmlDifferent },
        { "a file missing",
            xml.substr(0, xml.find("    <File id=\"0A\"")) + xml.substr(xml.find("  </Files>")),
            kXmlDifferent },
    };
    for (const auto& c : cases) {
        PackConfigurationFile copy = list;
        EXPECT_EQ(verifyPackXml(c.document, copy), c.result) << c.what;
        EXPECT_EQ(copy.Count(), c.result == kXmlRead || c.result == kXmlNotLoaded ? 2 : 0)
            << c.what << ": the list is cleared on a difference";
    }
}

class EditableFileTest : public ::testing::Test {
protected:
    EditableFileTest()
    {
        for (int file = 0; file <= 15; ++file)
            directory.Add("F" + std::to_string(file)).FileMaxBytes = file == 13 ? 32 : 128;
    }
    platform::ScriptedDialogs dialogs;
    ValueConversion conversion { dialogs, {} };
    DirectoryElements directory;
};

TEST_F(EditableFileTest, CommentsAndBlankLinesDoNotCount)
{
    const std::string text = "# a thermistor map\r\nZentavia\r\n3.0\r\n   # only a comment\r\n1\r\n\t13\r\n"
                             "TempMap # the name\r\n2\r\n6\r\n100\r\n&H1234\r\n-1\r\n";
    const auto file = readEditablePCFile(text, conversion, directory);
    EXPECT_EQ(file.header.title, "Zentavia");
    EXPECT_EQ(file.header.version, "3.0");
    const PackProperties& f = file.file;
    EXPECT_EQ(std::tie(f.FileName, f.FileNumber, f.FileSize, f.FileChunk, f.FileMaxBytes),
        std::make_tuple(std::string("TempMap"), std::uint8_t { 13 }, std::uint16_t { 6 }, std::uint16_t { 2 },
            std::uint16_t { 32 }))
        << "the largest part from the directory entry of the file";
    EXPECT_EQ(file.file.FileData.text(), "64003412FFFF") << "low byte first";
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(EditableFileTest, RefusesAShortOrWrongFile)
{
    const std::string header = "Zentavia\n3.0\n1\n13\nTempMap\n2\n";
    for (const std::string& text : { header, header + "6\n1\n2\n", header + "6\n1\n2\n70000\n",
             header + "6\n1\n2\nabc\n", std::string("Zentavia\n3.0\n1\n99\nX\n2\n2\n1\n") }) {
        EXPECT_THROW((void)readEditablePCFile(text, conversion, directory), PackFormatError) << text;
    }
    EXPECT_TRUE(dialogs.shown().empty()) << "the reader reports by its error, never a box of its own";
}

TEST(PpcsvFile, WritesTheHeaderAndOneBlockATab)
{
    const auto lines = ppcsvLines({ 3, 0, 7, "ZK9460S12", 12, true, 1, 10 },
        { { "Configuration", 2,
              { { "Algorithm Enable", "", "0x0047" }, { "Design Voltage", "mV", "44400" } } },
            { "Empty", 3, {} }, { "Protection", 4, { { "Over Temperature Limit", "k", "333.1" } } } });
    EXPECT_EQ(lines,
        (std::vector<std::string> { "# Zentavia Version 3.0.7", "# Target = ZK9460S12", "# Cells = 12",
            "# CapacityMode = Enabled", "# VScale x 1", "# IPScale x 10",
            "# Scaled values are identified by a division sign + scalar in the units column", "",
            "<Configuration>,2,", "Algorithm Enable,,0x0047", "Design Voltage,mV,44400", "",
            "<Protection>,4,", "Over Temperature Limit,k,333.1" }));
}

TEST(PpcsvFile, ReadsNamesAndValuesAndStopsAtTheFirstFault)
{
    const std::string text = "# header\r\n\r\n<Protection>,4,\r\n Design Voltage ,mV,44400\r\n"
                             "Over Temperature Limit\tk\t333,1\r\nDevice Name,\r\n";
    const auto entries = parsePpcsv(text);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].line, 4);
    EXPECT_EQ(entries[0].name, "Design Voltage");
    EXPECT_EQ(entries[0].value, "44400");
    EXPECT_EQ(entries[1].value, "333,1") << "split at tabs: a decimal comma stays as it is";
    EXPECT_EQ(entries[2].value, std::nullopt);

    const ParameterTypeLookup model = [](const std::string& name) -> std::optional<int> {
        if (name == "Device Name")
            return 6;
        if (name == "Design Voltage" || name == "Over Temperature Limit")
            return 2;
        return std::nullopt;
    };
    EXPECT_EQ(checkDataSet(entries, model), std::nullopt) << "a text may be empty";
    struct Case {
        std::string text;
        std::string title;
        std::string message;
    };
    const std::string tryAgain = "\r\nPlease correct the problem and try again.";
    const std::string parsing = "An error has occurred while parsing the 'ppcsv' file.\r\n";
    for (const auto& c : std::vector<Case> {
             { "#\r\nDesign Voltage,mV,1\r\nNo Such Thing,,1\r\n", "Error Parsing File",
                 "An error has occurred while parsing the 'ppcsv' file on line number 3." + tryAgain },
             { "Design Voltage,mV,1\r\nDesign Voltage,mV,2\r\n", "Duplicate Entry Detected",
                 parsing + "The parameter 'Design Voltage' has a duplicate entry." + tryAgain },
             { "Design Voltage,mV,\r\n", "Value Field Missing",
                 parsing + "The parameter 'Design Voltage' has no value associated with it." + tryAgain } }) {
        const auto fault = checkDataSet(parsePpcsv(c.text), model);
        ASSERT_TRUE(fault) << c.text;
        EXPECT_EQ(fault->title, c.title);
        EXPECT_EQ(fault->text, c.message);
    }
}

TEST(AtomicFile, ReplacesTheTargetWholeOrNotAtAll)
{
    const auto folder = std::filesystem::temp_directory_path() / ("zv_atomic_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    const std::string target = (folder / "pack.dat").string();
    writeFileReplacing(target, "old");
    writeFileReplacing(target, "new content");
    EXPECT_EQ(readWholeFile(target), "new content");
    EXPECT_THROW(writeFileReplacing((folder / "missing" / "pack.dat").string(), "x"), std::runtime_error);
    EXPECT_EQ(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()), 1)
        << "no temporary file is left behind";
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace zv::test
