// The pack parameter summary against the simulated pack: the rows each mode selects, the
// password and calibration sections, the cells from last to first, and the command around it.

#include "outputs_fixture.h"

#include "core/registry.h"
#include "outputs/pack_summary.h"

#include <algorithm>

using namespace zv;

namespace {

class PackSummaryTest : public test::OutputsTest {
protected:
    std::vector<std::string> lines(SummaryMode mode)
    {
        OutputServices s = services();
        return PackSummary(s).Lines(mode);
    }

    static bool has(const std::vector<std::string>& lines, const std::string& line)
    {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    static bool hasRowOf(const std::vector<std::string>& lines, const std::string& name, char separator = ',')
    {
        return std::any_of(lines.begin(), lines.end(),
            [&](const std::string& line) { return line.rfind(name + separator, 0) == 0; });
    }

    // The index of the line, or -1.
    static long at(const std::vector<std::string>& lines, const std::string& line)
    {
        const auto found = std::find(lines.begin(), lines.end(), line);
        return found == lines.end() ? -1 : found - lines.begin();
    }
};

} // namespace

TEST(PackedDate, DayMonthAndYearComeFromTheirBits)
{
    EXPECT_EQ(packedDateText((44u << 9) | (3u << 5) | 15u), "03/15/2024");
    EXPECT_EQ(packedDateText((0u << 9) | (1u << 5) | 1u), "01/01/1980");
    EXPECT_EQ(packedDateText(0xFFFFu), "15/31/2107");
}

TEST_F(PackSummaryTest, AllParametersHoldEverySectionInOrder)
{
    const auto l = lines(SummaryMode::All);
    ASSERT_GE(l.size(), 4u);
    EXPECT_EQ(l[0], "[System Parameters]");
    EXPECT_EQ(l[1], "");
    EXPECT_EQ(l[2], "<Pack 0>");
    // The value column's blanks become separators, so value and units are two fields.
    const auto& first = lvParameters[0]->rows().front();
    std::string value = first.subItems.front();
    std::replace(value.begin(), value.end(), ' ', ',');
    EXPECT_EQ(l[3], "Current," + value);
    EXPECT_NE(value.find(','), std::string::npos) << "value and units: " << value;

    EXPECT_TRUE(has(l, "Level 1,user"));
    EXPECT_TRUE(has(l, "Level 2,engineer"));
    const long passwords = at(l, "<Passwords>");
    const long calibration = at(l, "<Calibration>");
    const long cells = at(l, "[Cell Parameters]");
    ASSERT_GT(passwords, 3);
    EXPECT_EQ(l[static_cast<std::size_t>(passwords - 1)], "");
    EXPECT_GT(calibration, passwords);
    EXPECT_GT(cells, calibration);
    const auto* status = h.driver().GatewayParameters.FindByName("Calibration Status");
    EXPECT_EQ(l[static_cast<std::size_t>(calibration + 1)],
        "Calibration Status," + status->value.toText(kInvariantLocale) + ",0")
        << "only bit-encoded parameters of file 24";
    EXPECT_EQ(l[static_cast<std::size_t>(calibration + 2)], "");

    // Cells from the last to the first, each with its own tabs.
    const int count = h.driver().nodes.Count();
    ASSERT_GT(count, 1);
    long previous = cells;
    for (int cell = count; cell >= 1; --cell) {
        const long heading = at(l, "[Cell " + std::to_string(cell) + "]");
        EXPECT_GT(heading, previous) << "cell " << cell;
        EXPECT_EQ(l[static_cast<std::size_t>(heading + 1)], "");
        EXPECT_EQ(l[static_cast<std::size_t>(heading + 2)], "<Cell Dynamic>");
        previous = heading;
    }
    EXPECT_EQ(lvNodes.selectedKey(), "n1") << "each cell was selected in turn";
}

TEST_F(PackSummaryTest, ModesSelectRowsByWriteLevel)
{
    const auto dynamic = lines(SummaryMode::Dynamic);
    EXPECT_TRUE(hasRowOf(dynamic, "Current"));
    EXPECT_FALSE(hasRowOf(dynamic, "Design Capacity"));
    EXPECT_TRUE(has(dynamic, "[Cell Parameters]"));
    EXPECT_TRUE(hasRowOf(dynamic, "Voltage"));
    EXPECT_FALSE(hasRowOf(dynamic, "Node Address")) << "a cell's static parameter";
    EXPECT_FALSE(has(dynamic, "<Cell Config>")) << "a tab without a qualifying row is left out";

    const auto statics = lines(SummaryMode::Static);
    EXPECT_TRUE(hasRowOf(statics, "Design Capacity"));
    EXPECT_FALSE(hasRowOf(statics, "Current"));
    EXPECT_FALSE(has(statics, "[Cell Parameters]"));
    EXPECT_FALSE(has(statics, "<Pack 0>"));
    EXPECT_TRUE(has(statics, "<Calibration>"));
}

TEST_F(PackSummaryTest, ManufactureDateIsWrittenAsADateAndHiddenTabsAreSkipped)
{
    auto* date = h.driver().GatewayParameters.FindByName("Manufacture Date");
    ASSERT_NE(date, nullptr);
    date->value = DynamicValue((44 << 9) | (3 << 5) | 15);
    loadTabs();
    const auto l = lines(SummaryMode::All);
    EXPECT_TRUE(has(l, "Manufacture Date,03/15/2024"));

    SSTab.setTabVisible(0, false);
    const auto hidden = lines(SummaryMode::All);
    EXPECT_FALSE(has(hidden, "<Pack 0>"));
    EXPECT_FALSE(hasRowOf(hidden, "Current"));
}

TEST_F(PackSummaryTest, RegionalSeparatorAndLevelOneWithoutPasswords)
{
    h.globals.setDecimalSeparator(',');
    h.main().UserAccessLevel() = 1;
    h.port.clearWritten();
    const auto l = lines(SummaryMode::All);
    EXPECT_FALSE(has(l, "<Passwords>"));
    EXPECT_EQ(h.port.written().find("/T~3C~06~00~10"), std::string::npos) << "file 16 is not read";
    EXPECT_TRUE(hasRowOf(l, "Current", ';'));
    EXPECT_FALSE(hasRowOf(l, "Current", ','));

    h.main().UserAccessLevel() = 2;
    EXPECT_TRUE(has(lines(SummaryMode::Static), "Level 2;engineer"));
}

TEST_F(PackSummaryTest, SaveAsksReadsWritesAndNotifies)
{
    OutputServices s = services();
    PackSummary summary(s);
    h.settings.setValue(std::string(kMainKey), "Path_Parameters", "/old/place");
    h.dialogs.answerSaveFile(folder.file("pack.csv"));
    summary.Save(SummaryMode::Static);

    const auto& dialog = h.dialogs.lastShown();
    EXPECT_EQ(dialog.file.filter, "Pack Summary Files (*.csv)|*.csv|");
    EXPECT_EQ(dialog.file.folder, "/old/place");
    EXPECT_EQ(h.settings.value(std::string(kMainKey), "Path_Parameters"), folder.path().string());
    EXPECT_EQ(readAlls, 1);
    EXPECT_EQ(pointer, (std::vector<int> { 11, 0 }));
    const auto written = fileLines("pack.csv");
    EXPECT_EQ(written, lines(SummaryMode::Static));
    ASSERT_EQ(h.dialogs.notifications().size(), 1u);
    EXPECT_EQ(h.dialogs.notifications()[0].title, "Save Pack Parameters Summary");
    EXPECT_EQ(h.dialogs.notifications()[0].text, "Pack parameters has been saved.");
    EXPECT_EQ(h.dialogs.notifications()[0].icon, platform::Icon::Information);
}

TEST_F(PackSummaryTest, CancelIsSilentAndAFailureShowsTheError)
{
    OutputServices s = services();
    PackSummary summary(s);
    h.dialogs.answerSaveFile(std::nullopt);
    summary.Save(SummaryMode::All);
    EXPECT_EQ(readAlls, 0);
    EXPECT_TRUE(pointer.empty());

    h.dialogs.answerSaveFile(folder.file("missing/pack.csv"));
    h.dialogs.answerMessage(platform::Answer::OK);
    summary.Save(SummaryMode::All);
    const auto& box = h.dialogs.lastShown();
    EXPECT_EQ(box.text.rfind("An error has occurred\r\nError: Cannot open ", 0), 0u) << box.text;
    EXPECT_TRUE(h.dialogs.notifications().empty());
    EXPECT_EQ(pointer, (std::vector<int> { 11, 0 })) << "the pointer comes back after a failure";
}
