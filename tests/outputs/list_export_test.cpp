// CSV text, the list exports and printing: fields and quoting, the exact lines of each file, the
// remembered folders, the cleared check marks, and what reaches the printer.

#include "outputs_fixture.h"

#include "core/local_time.h"
#include "core/registry.h"
#include "monitor/main_title.h"
#include "outputs/csv_text.h"
#include "outputs/list_export.h"

using namespace zv;

namespace {

class ListExportTest : public test::OutputsTest {
protected:
    void SetUp() override
    {
        test::OutputsTest::SetUp();
        history.setColumns({ { "Event" }, { "Time" }, { "Value" } });
        history.addRow({ "a", "Over Voltage", "", { "12:00", "4,2 V" } });
        history.addRow({ "b", "Say \"hi\"", "", { "12:01", "" } });
    }

    std::string now() const { return dateAndTime(h.loop.now()); }

    platform::ui::ListView history { "lvHistory" };
    OutputServices s = services();
    ListExport exporter { s };
};

} // namespace

TEST(CsvText, FieldsAreQuotedOnlyWhenTheyMustBe)
{
    EXPECT_EQ(csvField("plain text", ","), "plain text");
    EXPECT_EQ(csvField("4,2", ","), "\"4,2\"");
    EXPECT_EQ(csvField("4,2", ";"), "4,2");
    EXPECT_EQ(csvField("a;b", ";"), "\"a;b\"");
    EXPECT_EQ(csvField("say \"x\"", ","), "\"say \"\"x\"\"\"");
    EXPECT_EQ(csvField("two\r\nlines", ","), "\"two\r\nlines\"");
    EXPECT_EQ(csvLine({ "a", "", "b,c" }, ","), "a,,\"b,c\"");
    EXPECT_EQ(csvLine({}, ","), "");
}

TEST_F(ListExportTest, ListViewToCsvWritesTitlesRowsAndTheTrailer)
{
    h.dialogs.answerSaveFile(folder.file("history.csv"));
    exporter.SaveListViewToCSV(history);

    const auto& dialog = h.dialogs.lastShown();
    EXPECT_EQ(dialog.file.filter, "Comma Separated Values (*.csv)|*.csv|");
    EXPECT_EQ(dialog.file.fileName, "Safety History.csv");
    EXPECT_EQ(h.settings.value(std::string(kMainKey), "Path_ListViewCSV"), folder.path().string());

    const AppVersion v = appVersion();
    const auto& gateway = h.driver().GatewayParameters;
    const auto value
        = [&](const char* name) { return gateway.FindByName(name)->value.toText(kInvariantLocale); };
    const std::vector<std::string> expected { "Event,Time,Value", "Over Voltage,12:00,\"4,2 V\"",
        "\"Say \"\"hi\"\"\",12:01,",
        "Zentavia," + std::to_string(v.major) + "." + std::to_string(v.minor) + "."
            + std::to_string(v.revision),
        "Timestamp," + now(), "Epoch Hour," + value("Epoch Hour"),
        "Firmware Version," + value("Firmware Version"), "Chemistry ID," + value("Chemistry ID") };
    EXPECT_EQ(fileLines("history.csv"), expected);
    EXPECT_FALSE(value("Firmware Version").empty());
}

TEST_F(ListExportTest, CancelWritesNothingAndAFailureShowsTheError)
{
    h.dialogs.answerSaveFile(std::nullopt);
    exporter.SaveListViewToCSV(history);
    EXPECT_EQ(h.settings.value(std::string(kMainKey), "Path_ListViewCSV"), "");

    h.dialogs.answerSaveFile(folder.file("no/such/folder.csv"));
    h.dialogs.answerMessage(platform::Answer::OK);
    exporter.SaveListViewToCSV(history);
    EXPECT_EQ(h.dialogs.lastShown().kind, platform::DialogKind::MessageBox);
    EXPECT_EQ(h.dialogs.lastShown().text.rfind("An error has occurred\r\nError: ", 0), 0u);
    EXPECT_EQ(h.dialogs.pendingAnswers(), 0u);
}

TEST_F(ListExportTest, TabToCsvWritesTheCheckedRowsAndClearsTheMarks)
{
    auto& list = *lvParameters[0];
    ASSERT_GE(list.rowCount(), 3);
    list.setChecked("P1", true);
    list.setChecked("P3", true);
    h.dialogs.answerSaveFile(folder.file("tab.csv"));
    exporter.SaveTabToCSV(list, "Pack 0");

    const auto& dialog = h.dialogs.lastShown();
    EXPECT_EQ(dialog.file.filter, "Parameter Data (*.csv)|*.csv|");
    EXPECT_EQ(dialog.file.fileName, "Pack 0.csv");
    EXPECT_EQ(h.settings.value(std::string(kMainKey), "Path_ParameterCSV"), folder.path().string());
    const auto row = [&](const char* key) {
        const auto* r = list.row(key);
        return csvLine({ r->text.substr(0, r->text.size() - 1), r->subItems.front() }, ",");
    };
    EXPECT_EQ(fileLines("tab.csv"),
        (std::vector<std::string> { "Parameters - Pack 0 " + now(), row("P1"), row("P3") }));
    for (const auto& r : list.rows())
        EXPECT_FALSE(r.checked) << r.key;
}

TEST_F(ListExportTest, PrintSendsCaptionDateAndEveryRow)
{
    h.dialogs.answerPrint(true);
    exporter.PrintParameters(history, "Safety");
    const auto& printed = h.dialogs.lastShown();
    EXPECT_EQ(printed.kind, platform::DialogKind::Print);
    EXPECT_EQ(printed.text, "Parameters - Safety");
    EXPECT_EQ(printed.printedLines,
        (std::vector<std::string> { "Parameters - Safety", "Date " + shortDate(h.loop.now()),
            "Over Voltage\t12:00", "Say \"hi\"\t12:01" }));

    h.dialogs.answerPrint(false);
    h.dialogs.answerMessage(platform::Answer::OK);
    exporter.PrintParameters(history, "Safety");
    EXPECT_EQ(h.dialogs.lastShown().text,
        "An error has occurred\r\nError: The list could not be printed on the default printer.");
}
