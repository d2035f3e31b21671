// Log definition files: the text format as a table of files, the download image, and the three
// loaders against the in-process pack (limit, boxes, what reaches device file 30).

#include "device/log_sampler.h"
#include "log_rig.h"
#include "logging/log_definition.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

namespace zv::test {
namespace {

using ::testing::ElementsAre;

struct FormatCase {
    const char* name;
    const char* text;
    LogDefinitionOutcome outcome;
    std::size_t entries; // read before the end or the bad line
    const char* error = "";
};

const FormatCase kFormats[] = {
    { "comments and blank lines only", "; a comment\r\n\r\n   \r\n;Tick\t0\t0\tU\r\n",
        LogDefinitionOutcome::Ok, 0 },
    { "three tabs with an empty label", "\t1\t3\tS\n", LogDefinitionOutcome::Ok, 1 },
    { "blanks around a line", "   Tick\t0\t0\tU   \r\n", LogDefinitionOutcome::Ok, 1 },
    { "trailing tab", "Tick\t0\t0\tU\nCurrent\t1\t3\tS\t\n", LogDefinitionOutcome::BadFieldCount, 1 },
    { "three fields", "Tick\t0\t0\n", LogDefinitionOutcome::BadFieldCount, 0 },
    { "blanks instead of a tab", "Tick 0\t0\tU\n", LogDefinitionOutcome::BadFieldCount, 0 },
    { "file not a number", "Tick\tone\t0\tU\n", LogDefinitionOutcome::BadNumber, 0, "Type mismatch" },
    { "element with a fraction", "Tick\t0\t1.5\tU\n", LogDefinitionOutcome::BadNumber, 0, "Type mismatch" },
    { "element over 16 bits", "Tick\t0\t40000\tU\n", LogDefinitionOutcome::BadNumber, 0, "Overflow" },
    { "empty element", "Tick\t0\t\tU\n", LogDefinitionOutcome::BadNumber, 0, "Type mismatch" },
    { "no line end at the end", "A\t1\t2\tH\nB\t4\t5\tSTR", LogDefinitionOutcome::Ok, 2 },
};

TEST(LogDefinitionFormat, ReadsOrRefusesEachFile)
{
    for (const auto& c : kFormats) {
        SCOPED_TRACE(c.name);
        const auto parsed = parseLogDefinition(c.text);
        EXPECT_EQ(parsed.outcome, c.outcome);
        EXPECT_EQ(parsed.entries.size(), c.entries);
        EXPECT_EQ(parsed.error, c.error);
    }
}

TEST(LogDefinitionFormat, FieldsAndImage)
{
    const auto parsed = parseLogDefinition("Tick\t0\t0\tU\n\t1\t3\tS\nBig\t300\t-1\tH\n");
    ASSERT_EQ(parsed.entries.size(), 3u);
    EXPECT_EQ(parsed.entries[1].label, "");
    EXPECT_EQ(parsed.entries[1].dataType, "S");
    // Count word low byte first, then file and element as one byte each (low bytes).
    EXPECT_THAT(logDefinitionImage(parsed.entries), ElementsAre(3, 0, 0, 0, 1, 3, 0x2C, 0xFF));
    EXPECT_THAT(logDefinitionImage({}), ElementsAre(0, 0));
}

class LoaderTest : public ::testing::Test, public LogRig {
protected:
    void SetUp() override { ASSERT_TRUE(connect()); }

    LogDefinitionLoader& loader() { return writer().definitions; }

    // A definition of n entries of file 1.
    std::string entries(int n)
    {
        std::string text = "; generated\n";
        for (int i = 0; i < n; ++i)
            text += "W" + std::to_string(i) + "\t1\t" + std::to_string(i % 20) + "\tU\n";
        return text;
    }

    // The count word in device file 30.
    int downloadedCount() { return zvsim::definitionEntries(sim.pack->model().files.bytes(30)).size(); }
};

TEST_F(LoaderTest, DynamicLimitExactlyPassesOneMoreDownloadsNothingStaticIsLeftToTheDevice)
{
    const int limit = loader().definitionLimit();
    ASSERT_GT(limit, 1);
    const auto before = sim.loop.milliseconds();
    ASSERT_TRUE(loader().LoadDynamicLogDefinition(file("limit.dlog", entries(limit))));
    EXPECT_GE(sim.loop.milliseconds() - before, 3000) << "the load waits for the device";
    EXPECT_EQ(downloadedCount(), limit);
    EXPECT_EQ(sim.driver().Directory.LogFile.FileCount, limit);
    EXPECT_EQ(sim.driver().Directory.LogFile.Item(std::to_string(limit))->FileLabel,
        "W" + std::to_string(limit - 1));

    ASSERT_TRUE(loader().LoadDynamicLogDefinition(file("two.dlog", entries(2))));
    sim.dialogs.answerMessage(platform::Answer::OK);
    EXPECT_FALSE(loader().LoadDynamicLogDefinition(file("over.dlog", entries(limit + 1))));
    EXPECT_EQ(sim.dialogs.lastShown().title, "Too Many Log Definitions");
    EXPECT_EQ(sim.dialogs.lastShown().text,
        "The maximum number of log definitions must not exceed " + std::to_string(limit) + ".\r\nThere are "
            + std::to_string(limit + 1) + " currently defined. Please reduce the number of entries.");
    EXPECT_EQ(downloadedCount(), 2) << "nothing was downloaded";

    // A static one over the limit: the application sends it; the device refuses so long a definition.
    sim.dialogs.answerMessage(platform::Answer::OK);
    EXPECT_FALSE(loader().LoadStaticLogDefinition(file("big.slog", entries(limit + 1))));
    EXPECT_EQ(sim.dialogs.lastShown().text,
        "An error has occurred while attempting to download the Static Data Log Definition File");
}

struct BoxCase {
    const char* name;
    const char* text; // nullptr: the file is missing
    bool menu; // mnuLoadLoggingDefinitionFile's own load
    const char* title;
    const char* message; // "%p" stands for the path
};

const BoxCase kBoxes[] = {
    { "bad line, dynamic", "Tick\t0\t0\n", false, "Dynamic Data Log Definition File Error",
        "Invalid File Format" },
    { "bad line, menu", "Tick\t0\t0\n", true, "File Error", "Invalid File Format" },
    { "not a number", "Tick\tx\t0\tU\n", false, "Error loading file",
        "An error has occurred while attempting to load the file %p\r\nError: Type mismatch" },
    { "missing file", nullptr, false, "Error loading file",
        "The file %p is missing.\r\nError: File not found" },
};

TEST_F(LoaderTest, EachFailureShowsItsBoxAndKeepsTheEntriesBeforeIt)
{
    for (const auto& c : kBoxes) {
        SCOPED_TRACE(c.name);
        const std::string path = c.text ? file("bad.dlog", std::string("First\t1\t0\tU\n") + c.text)
                                        : (folder / "none.dlog").string();
        sim.dialogs.answerMessage(platform::Answer::OK);
        EXPECT_FALSE(c.menu ? loader().loadChosen(path) : loader().LoadDynamicLogDefinition(path));
        std::string message = c.message;
        if (const auto at = message.find("%p"); at != std::string::npos)
            message.replace(at, 2, path);
        EXPECT_EQ(sim.dialogs.lastShown().title, c.title);
        EXPECT_EQ(sim.dialogs.lastShown().text, message);
        if (c.text) {
            EXPECT_EQ(sim.driver().Directory.LogFile.Item("1")->FileLabel, "First");
        }
    }
}

TEST_F(LoaderTest, MenuLoadTellsTheOutcomeByName)
{
    const std::string good = file("menu.dlog", "Tick\t0\t0\tU\nCurrent\t1\t0\tS\n");
    sim.dialogs.answerOpenFiles({ good });
    sim.dialogs.answerMessage(platform::Answer::OK);
    std::vector<int> pointer;
    loader().mnuLoadLoggingDefinitionFile(programFolder(), [&](int p) { pointer.push_back(p); });
    const auto& shown = sim.dialogs.shown();
    EXPECT_EQ(shown[shown.size() - 2].file.filter, "Dynamic Log Definition File (*.dlog)|*.dlog");
    EXPECT_EQ(shown[shown.size() - 2].file.folder, programFolder() + "/Data Logging Files");
    EXPECT_EQ(shown.back().title, "Load logging definition file");
    EXPECT_EQ(shown.back().text, "Log definition file menu.dlog has loaded succussfully.");
    EXPECT_THAT(pointer, ElementsAre(11, 0));
    EXPECT_EQ(downloadedCount(), 2);

    sim.dialogs.answerOpenFiles({ file("broken.dlog", "x\n") });
    sim.dialogs.answerMessage(platform::Answer::OK); // "Invalid File Format"
    sim.dialogs.answerMessage(platform::Answer::OK);
    loader().mnuLoadLoggingDefinitionFile(programFolder(), {});
    EXPECT_EQ(sim.dialogs.lastShown().text, "An error has occurred while loading file broken.dlog.");
}

// The definitions shipped in "Data Logging Files" fit the pack and decode to plausible values.
TEST_F(LoaderTest, ShippedDefinitionsLoadAndDecodeThePacksValues)
{
    const std::string folder = programFolder() + "/Data Logging Files/";
    ASSERT_TRUE(loader().LoadStaticLogDefinition(folder + "characterize_12cell.slog"));
    ASSERT_TRUE(loader().LoadDynamicLogDefinition(folder + "characterize_12cell.dlog"));
    ASSERT_TRUE(loader().LoadMapDefinition(folder + "SBData.map"));
    writer().settings.DynamicDefinitionFile = folder + "characterize_12cell.dlog";
    ASSERT_TRUE(start("shipped"));
    sample();
    const auto fields = [](const std::string& line) {
        std::vector<std::string> row;
        std::stringstream in(line);
        for (std::string field; std::getline(in, field, ',');)
            row.push_back(field);
        return row;
    };
    std::vector<std::string> header;
    std::vector<std::string> data;
    for (const auto& line : lines()) {
        if (line.starts_with("HEADER [D],"))
            header = fields(line);
        if (line.starts_with("DATA,"))
            data = fields(line);
    }
    ASSERT_EQ(header.size(), data.size());
    const auto column = [&](const std::string& label) {
        const auto at = std::find(header.begin(), header.end(), label);
        return at == header.end() ? -1 : std::stoi(data[static_cast<std::size_t>(at - header.begin())]);
    };
    EXPECT_GT(column("Cell 1 Voltage"), 2500);
    EXPECT_LT(column("Cell 1 Voltage"), 4500);
    EXPECT_GT(column("Cell 1 Temperature"), 2500) << "tenths of a kelvin";
    EXPECT_GT(column("Pack Voltage"), 8 * 2500);
    EXPECT_GE(column("Relative State of Charge"), 0);
    EXPECT_LE(column("Relative State of Charge"), 100);
}

} // namespace
} // namespace zv::test
