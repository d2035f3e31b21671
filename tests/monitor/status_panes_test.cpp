#include "monitor/lamp_rule.h"
#include "monitor/status_panes.h"
#include "monitor_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace zv {
namespace {

using platform::ui::ListView;
using test::MonitorRig;

TEST(LampRule, FlagAndBitListLampsTurnRedOnFaultsAndKeepTheErrorFamily)
{
    using Rule = lamp::Lamp (*)(const std::string&, bool, bool);
    struct Case {
        Rule rule;
        std::string current;
        bool set;
        bool fault;
        lamp::Lamp expected;
    };
    const Rule flag = lamp::flagLamp;
    const Rule bits = lamp::bitListLamp;
    const Case cases[] {
        { flag, "ledoff", true, false, { "ledgreen", true } },
        { flag, "ledoff", true, true, { "ledred", true } },
        { flag, "ledred", false, true, { "ledoff", false } },
        { flag, "ledgreen", false, false, { "ledoff", false } },
        { flag, "error", false, false, { "errord", false } },
        { flag, "errord", true, false, { "error", true } },
        { flag, "errord", true, true, { "error", true } },
        { flag, "error", false, true, { "errord", false } },
        { bits, "infod", true, false, { "info", true } },
        { bits, "info", false, false, { "infod", false } },
        { bits, "check", true, false, { "info", true } },
        { bits, "", false, true, { "errord", false } },
        { bits, "infod", true, true, { "error", true } },
        { bits, "errord", true, false, { "error", true } },
        { bits, "error", false, false, { "errord", false } },
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.rule(c.current, c.set, c.fault), c.expected)
            << (c.rule == flag ? "flag " : "bit list ") << c.current << " set " << c.set << " fault "
            << c.fault;
}

TEST(LampRule, SafetyCountLampIsRedOnlyWhenAlertAndStatusAgree)
{
    EXPECT_EQ(lamp::safetyLamp(false, false), (lamp::Lamp { "ledoff", false }));
    EXPECT_EQ(lamp::safetyLamp(true, false), (lamp::Lamp { "ledyellow", true }));
    EXPECT_EQ(lamp::safetyLamp(false, true), (lamp::Lamp { "ledyellow", true }));
    EXPECT_EQ(lamp::safetyLamp(true, true), (lamp::Lamp { "ledred", true }));
}

class StatusPanesTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(rig.load()); }

    clsSMBusParameter& parameter(const std::string& name)
    {
        clsSMBusParameter* found = rig.h.driver().GatewayParameters.FindByName(name);
        if (!found)
            throw std::runtime_error("no parameter " + name);
        return *found;
    }
    void setWord(const std::string& name, double word) { parameter(name).value = DynamicValue(word); }

    // The icon and bold of a lamp: the row's own in column 0, a sub-item's in another.
    static lamp::Lamp lampOf(const ListView& list, const std::string& key, int column = 0)
    {
        const auto* row = list.row(key);
        if (!row)
            return { "no row", false };
        if (column == 0)
            return { row->icon, row->bold };
        const auto slot = static_cast<std::size_t>(column - 1);
        if (slot >= row->subStyles.size())
            return { "", false };
        return { row->subStyles[slot].icon, row->subStyles[slot].bold.value_or(false) };
    }

    MonitorRig rig;
    frmMain& f = *rig.form;
    StatusPanes& panes = rig.monitor->panes;
};

TEST_F(StatusPanesTest, RowsAreBuiltFromTheBitNamesAndOnlyTheShownTabIsVisible)
{
    ASSERT_EQ(f.lvFET.rowCount(), 1);
    const auto& fet = f.lvFET.rows()[0];
    EXPECT_EQ(fet.text, "D-FET");
    EXPECT_EQ(fet.subItems, (std::vector<std::string> { "C-FET", "P-FET", "Fuse" }));
    for (int column = 0; column <= 3; ++column)
        EXPECT_EQ(lampOf(f.lvFET, fet.key, column).icon, "ledoff");

    ListView& safety = f.lvFlags[0];
    ASSERT_EQ(safety.rowCount(), 32);
    EXPECT_EQ(safety.rows()[0].text, parameter("Safety Status").BitString.Item(1)->data);
    EXPECT_EQ(safety.rows()[16].text, parameter("Safety Status1").BitString.Item(1)->data);
    EXPECT_EQ(safety.rows()[0].subItems[0], parameter("Permanent Disable Status").BitString.Item(1)->data);
    EXPECT_EQ(safety.rows()[0].subItems[1], parameter("Charge Status").BitString.Item(1)->data);
    for (const auto& column : safety.columns())
        EXPECT_EQ(column.icon, "help") << column.header;
    EXPECT_EQ(f.lvFlags[1].rows()[15].text, "Bit 16");
    EXPECT_EQ(f.lvFlags[2].columns()[0].header, "SBData Flags");

    EXPECT_TRUE(f.lvFlags[0].visible());
    EXPECT_FALSE(f.lvFlags[1].visible());
    f.SSTabFlags.userSelect(2);
    EXPECT_FALSE(f.lvFlags[0].visible());
    EXPECT_FALSE(f.lvFlags[1].visible());
    EXPECT_TRUE(f.lvFlags[2].visible());
}

TEST_F(StatusPanesTest, SafetyGridCountsAlertAndStatusOnAllFourPairsAndTheFuseLampFollows)
{
    struct Pair {
        const char* alert;
        const char* status;
        int firstRow;
        int column;
    };
    const Pair pairs[] { { "Safety Alert", "Safety Status", 1, 0 },
        { "Safety Alert1", "Safety Status1", 17, 0 },
        { "Permanent Disable Alert", "Permanent Disable Status", 1, 1 },
        { "Charge Alert", "Charge Status", 1, 2 } };
    // Bit 1 both, bit 2 the alert only, bit 3 the status only, bit 4 neither.
    for (const auto& p : pairs) {
        setWord(p.alert, 0b011);
        setWord(p.status, 0b101);
    }
    panes.showSafetyWords();
    for (const auto& p : pairs) {
        const ListView& list = f.lvFlags[0];
        const auto row = [&p](int bit) { return std::to_string(p.firstRow + bit - 1); };
        EXPECT_EQ(lampOf(list, row(1), p.column), (lamp::Lamp { "ledred", true })) << p.alert;
        EXPECT_EQ(lampOf(list, row(2), p.column), (lamp::Lamp { "ledyellow", true })) << p.alert;
        EXPECT_EQ(lampOf(list, row(3), p.column), (lamp::Lamp { "ledyellow", true })) << p.alert;
        EXPECT_EQ(lampOf(list, row(4), p.column), (lamp::Lamp { "ledoff", false })) << p.alert;
    }

    // Row 17 follows the first bit of the second pair, not the first pair.
    setWord("Safety Alert1", 0);
    setWord("Safety Status1", 0);
    panes.showSafetyWords();
    EXPECT_EQ(lampOf(f.lvFlags[0], "1").icon, "ledred");
    EXPECT_EQ(lampOf(f.lvFlags[0], "17").icon, "ledoff");

    // The fuse lamp follows the top bit of "Safety Flags".
    for (const auto& [word, icon] : { std::pair { 0x8000, "ledred" }, { 0x7FFF, "ledgreen" } }) {
        setWord("Safety Flags", word);
        panes.showSafetyWords();
        EXPECT_EQ(lampOf(f.lvFET, "fet", 3).icon, icon) << word;
    }
}

TEST_F(StatusPanesTest, FlagLampsUseTheFaultMaskAndKeepTheErrorFamily)
{
    // "Battery Status" marks bit 12 (0x800) a fault, bit 7 (0x40) information.
    setWord("Battery Status", 0x0840);
    panes.showSampleFlags();
    EXPECT_EQ(lampOf(f.lvFlags[2], "12"), (lamp::Lamp { "ledred", true }));
    EXPECT_EQ(lampOf(f.lvFlags[2], "7"), (lamp::Lamp { "ledgreen", true }));
    EXPECT_EQ(lampOf(f.lvFlags[2], "1"), (lamp::Lamp { "ledoff", false }));

    // "Internal Flags 2" goes to the second column of the system grid.
    f.lvFlags[1].setSubItemStyle("2", 1, { .icon = "error" });
    setWord("Internal Flags 2", 0);
    setWord("System Flags", 0b10);
    panes.showSampleFlags();
    EXPECT_EQ(lampOf(f.lvFlags[1], "2", 1), (lamp::Lamp { "errord", false }));
    EXPECT_EQ(lampOf(f.lvFlags[1], "2"), (lamp::Lamp { "ledgreen", true }));
    setWord("Internal Flags 2", 0b10);
    panes.showSampleFlags();
    EXPECT_EQ(lampOf(f.lvFlags[1], "2", 1), (lamp::Lamp { "error", true }));
}

TEST_F(StatusPanesTest, UnnamedBitsSkipFetLampsButKeepTheirRowsInTheGrids)
{
    parameter("FET Status").BitString.Item(1)->data.clear();
    setWord("FET Status", 0b010); // C-FET set: now the first named bit
    panes.showSampleFlags();
    EXPECT_EQ(lampOf(f.lvFET, "fet", 0).icon, "ledgreen");
    EXPECT_EQ(lampOf(f.lvFET, "fet", 1).icon, "ledoff");

    parameter("System Flags").BitString.Item(1)->data.clear();
    setWord("System Flags", 0b11);
    panes.showSampleFlags();
    EXPECT_EQ(lampOf(f.lvFlags[1], "1").icon, "ledoff");
    EXPECT_EQ(lampOf(f.lvFlags[1], "2").icon, "ledgreen");
}

TEST_F(StatusPanesTest, EmptyListsAndWordsThatAreNoNumbersChangeNothing)
{
    setWord("FET Status", 1);
    f.lvFET.clear();
    panes.UpdatalvFET(&parameter("FET Status"));
    EXPECT_EQ(f.lvFET.rowCount(), 0);

    panes.buildRows();
    parameter("FET Status").value = DynamicValue("#Error");
    parameter("Safety Alert").value = DynamicValue("#Error");
    setWord("Safety Status", 1);
    panes.showSampleFlags();
    panes.showSafetyWords();
    EXPECT_EQ(lampOf(f.lvFET, "fet").icon, "ledoff");
    EXPECT_EQ(lampOf(f.lvFlags[0], "1").icon, "ledoff");

    // A missing word goes to the common handler (none here) and the panes stay as they are.
    EXPECT_NO_THROW(panes.UpdatalvFlags(nullptr, 1, 1));
}

TEST_F(StatusPanesTest, ColumnTitlesOfTheSafetyGridExplainTheirBits)
{
    rig.h.dialogs.answerMessage(platform::Answer::OK);
    f.lvFlags[0].userColumnClick(2);
    ASSERT_EQ(rig.h.dialogs.shown().size(), 1u);
    EXPECT_EQ(rig.h.dialogs.shown()[0].text,
        "[Charge Flags]\r\nFC = Fully charged\r\nTCA = Terminate charge\r\nCHGIN = Charge inhibit\r\n"
        "CHGSUSP = Charge suspend\r\nPCHG = Precharge\r\nMCHG = Maintenance charge\r\n");
    EXPECT_EQ(rig.h.dialogs.shown()[0].title, "Zentavia");

    const std::string safety = panes.columnMeanings(0);
    EXPECT_EQ(safety.rfind("[Safety Flags]\r\nCOV = Cell over voltage\r\n", 0), 0u);
    EXPECT_NE(safety.find("OTS = Sense resistor over temperature\r\n"), std::string::npos) << "Safety Alert1";
    EXPECT_EQ(safety.find("Unused"), std::string::npos);
    EXPECT_EQ(panes.columnMeanings(1).rfind("[Failure Flags]\r\nSOV = Safety over voltage\r\n", 0), 0u);
}

TEST_F(StatusPanesTest, GatewayClickListsBatteryStatusAndAlarmsLightItsRows)
{
    parameter("Battery Status").value = DynamicValue();
    f.lvGateway.userSelect(kGatewayRow);
    EXPECT_EQ(f.fraStatus.caption(), "Battery Status");
    EXPECT_EQ(lampOf(f.lvStatus, "12bit").icon, "errord") << "a fault bit";
    EXPECT_EQ(lampOf(f.lvStatus, "7bit").icon, "infod");

    rig.h.main().BroadcastAlarmReceived(0x0840);
    EXPECT_EQ(lampOf(f.lvStatus, "12bit"), (lamp::Lamp { "error", true }));
    EXPECT_EQ(lampOf(f.lvStatus, "7bit"), (lamp::Lamp { "info", true }));
    rig.h.main().BroadcastAlarmReceived(0);
    EXPECT_EQ(lampOf(f.lvStatus, "12bit"), (lamp::Lamp { "errord", false }));
    EXPECT_EQ(lampOf(f.lvStatus, "7bit"), (lamp::Lamp { "infod", false }));

    // Another cell selected, or the bit list of a parameter shown: the alarm leaves lvStatus.
    rig.h.globals.CurrentNode = 1;
    rig.h.main().BroadcastAlarmReceived(0x0040);
    EXPECT_EQ(lampOf(f.lvStatus, "7bit").icon, "infod");
    rig.h.globals.CurrentNode = 0;
    f.fraStatus.setCaption("Bit Encoded Data");
    rig.h.main().BroadcastAlarmReceived(0x0040);
    EXPECT_EQ(lampOf(f.lvStatus, "7bit").icon, "infod");
}

TEST_F(StatusPanesTest, BitEncodedParameterListsItsNamedBits)
{
    setWord("System Flags", 0x41);
    panes.showBitEncoded(parameter("System Flags"));
    EXPECT_EQ(f.fraStatus.caption(), "Bit Encoded Data");
    EXPECT_EQ(f.lvStatus.row("1bit")->text, "Charging");
    EXPECT_EQ(lampOf(f.lvStatus, "1bit"), (lamp::Lamp { "info", true }));
    EXPECT_EQ(lampOf(f.lvStatus, "2bit"), (lamp::Lamp { "infod", false }));
    EXPECT_EQ(lampOf(f.lvStatus, "7bit"), (lamp::Lamp { "error", true })) << "mask 64";

    // A sample redraws the list only while it shows "Bit Encoded Data".
    setWord("System Flags", 0x02);
    panes.UpdatalvStatus(&parameter("System Flags"), false);
    EXPECT_EQ(lampOf(f.lvStatus, "2bit"), (lamp::Lamp { "info", true }));
    EXPECT_EQ(lampOf(f.lvStatus, "7bit"), (lamp::Lamp { "errord", false }));
    f.fraStatus.setCaption("Battery Status");
    setWord("System Flags", 0x01);
    panes.UpdatalvStatus(&parameter("System Flags"), false);
    EXPECT_EQ(lampOf(f.lvStatus, "1bit").icon, "infod");
}

TEST_F(StatusPanesTest, ClickOnABitEncodedParameterRowListsItsBits)
{
    ParameterTabs& tabs = rig.monitor->tabs;
    tabs.LoadTabs();
    // The first tab that shows a bit-encoded parameter, and its row.
    for (int tab = 0; tab < static_cast<int>(f.lvParameters.size()); ++tab) {
        for (const auto& row : f.lvParameters[static_cast<std::size_t>(tab)].rows()) {
            const clsSMBusParameter* shown
                = tabs.parameterOfRow(f.lvParameters[static_cast<std::size_t>(tab)], row.key, 0);
            if (!shown || shown->SubBlockDataType != 0)
                continue;
            f.SSTab.userSelect(tab);
            tabs.currentParameters().userSelect(row.key);
            EXPECT_EQ(f.fraStatus.caption(), "Bit Encoded Data");
            int named = 0;
            for (int bit = 1; bit <= 16; ++bit)
                named += !shown->BitString.Item(bit)->data.empty();
            EXPECT_EQ(f.lvStatus.rowCount(), named) << row.text;
            return;
        }
    }
    FAIL() << "no bit-encoded parameter in the lists";
}

TEST_F(StatusPanesTest, SampleAndSafetyReadFillThePanesFromThePack)
{
    ASSERT_TRUE(rig.monitor->poll.ReadSafetyData());
    EXPECT_EQ(lampOf(f.lvFET, "fet", 3).icon, "ledgreen") << "fuse intact";
    ASSERT_TRUE(rig.monitor->poll.UpdateDynamicData());
    const clsSMBusParameter& battery = parameter("Battery Status");
    const long word = std::lround(*battery.value.asNumber({}));
    ASSERT_NE(word, 0);
    for (int bit = 1; bit <= 16; ++bit) {
        const bool set = (word >> (bit - 1)) & 1;
        const bool fault = (0xD800 >> (bit - 1)) & 1;
        EXPECT_EQ(
            lampOf(f.lvFlags[2], std::to_string(bit)).icon, set ? (fault ? "ledred" : "ledgreen") : "ledoff")
            << bit;
    }
}

TEST_F(StatusPanesTest, PackAlarmBroadcastReachesBatteryStatusRows)
{
    rig.h.pack->model().options.alarmPeriodMs = 5000;
    parameter("Battery Status").value = DynamicValue();
    f.lvGateway.userSelect(kGatewayRow);
    const auto lit = [this] {
        int count = 0;
        for (const auto& row : f.lvStatus.rows())
            count += row.icon == "info" || row.icon == "error";
        return count;
    };
    ASSERT_EQ(lit(), 0);
    const long before = rig.h.driver().Link.BroadcastCount;
    rig.h.loop.advance(6000);
    EXPECT_GT(rig.h.driver().Link.BroadcastCount, before);
    EXPECT_GT(lit(), 0);
    EXPECT_EQ(f.lvStatus.row("1bit")->icon, "infod") << "Alarm.cfg maps no alarm to the error code";
    const auto& status = parameter("Status").value;
    EXPECT_TRUE(status.isNumber()) << "MapAlarmsToStatus stored the mapped word";
}

} // namespace
} // namespace zv
