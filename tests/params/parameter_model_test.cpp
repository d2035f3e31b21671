// The keyed lists of parameters, nodes, bit labels and commands, and the dynamic value.

#include "device_files/directory_element.h"
#include "params/dynamic_value.h"
#include "params/runtime_error.h"
#include "params/smbus_parameter.h"

#include <gtest/gtest.h>

#include <vector>

namespace zv {
namespace {

std::vector<std::string> names(const ParameterList& list)
{
    std::vector<std::string> result;
    for (const auto& p : list) {
        result.push_back(p.ParameterName);
    }
    return result;
}

TEST(KeyedLists, PositionsFromOneKeysWithoutCaseAndInsertionOrder)
{
    ParameterList list;
    list.Add("1", "Voltage").ParameterName = "Voltage";
    list.Add("2").ParameterName = "Current";
    list.Add("3", "soc").ParameterName = "State of Charge";

    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list.Item(1)->ParameterNumber, "1");
    EXPECT_EQ(list.Item(3)->ParameterName, "State of Charge");
    EXPECT_EQ(list.Item(0), nullptr);
    EXPECT_EQ(list.Item(4), nullptr);
    EXPECT_EQ(list.Item("VOLTAGE")->ParameterName, "Voltage");
    EXPECT_EQ(list.Item("Current"), nullptr) << "added without a key";
    EXPECT_THROW(list.Add("4", "SOC"), RuntimeError);

    EXPECT_TRUE(list.Remove("soc"));
    EXPECT_TRUE(list.Remove(1));
    EXPECT_FALSE(list.Remove(5));
    EXPECT_EQ(names(list), std::vector<std::string> { "Current" });
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
}

TEST(KeyedLists, FindByNameIgnoresCaseAndTakesTheFirstMatch)
{
    ParameterList list;
    list.Add("1").ParameterName = "State of Charge";
    list.Add("2").ParameterName = "state of charge";
    EXPECT_EQ(list.FindByName("STATE OF CHARGE"), list.Item(1));
    EXPECT_EQ(list.FindByName("State of Charg"), nullptr);
}

TEST(KeyedLists, BitLabelsOfAParameterWithoutLabelsAreAnEmptyList)
{
    clsSMBusParameter parameter;
    EXPECT_EQ(parameter.BitString.Count(), 0);
    EXPECT_EQ(parameter.BitString.Item(1), nullptr);
    parameter.BitString.Add("");
    parameter.BitString.Add("Overvoltage", "ov");
    EXPECT_EQ(parameter.BitString.Item(1)->data, "");
    EXPECT_EQ(parameter.BitString.Item("OV")->data, "Overvoltage");
}

TEST(NodeList, CopyRebuildsDestinationFieldByFieldWithoutValues)
{
    NodeList nodes;
    EXPECT_EQ(nodes.Item(1), nullptr);
    nodes.Add();
    EXPECT_EQ(nodes.Item(1)->NodeParameters.Count(), 0);
    nodes.Add();
    auto& source = nodes.Item(1)->NodeParameters.Add("1");
    source.ParameterName = "Cell Voltage";
    source.EngineeringUnitsString = "mV";
    source.SubBlockDataScaling = 0.5;
    source.FileNumber = 6;
    source.BitString.Add("Balancing");
    source.value = 3700.0;
    source.NewValue = "3600";
    nodes.Item(2)->NodeParameters.Add("99").ParameterName = "stale";

    ASSERT_TRUE(nodes.Copy(1, 2));
    const auto& target = nodes.Item(2)->NodeParameters;
    ASSERT_EQ(target.Count(), 1);
    const auto& copy = *target.Item(1);
    EXPECT_EQ(copy.ParameterName, "Cell Voltage");
    EXPECT_EQ(copy.EngineeringUnitsString, "mV");
    EXPECT_EQ(copy.SubBlockDataScaling, 0.5);
    EXPECT_EQ(copy.FileNumber, 6);
    EXPECT_EQ(copy.BitString.Item(1)->data, "Balancing");
    EXPECT_TRUE(copy.value.isEmpty());
    EXPECT_TRUE(copy.NewValue.isEmpty());

    // The copy is independent of its source.
    nodes.Item(1)->NodeParameters.Item(1)->BitString.Item(1)->data = "changed";
    EXPECT_EQ(copy.BitString.Item(1)->data, "Balancing");
    EXPECT_FALSE(nodes.Copy(1, 3));
}

TEST(DynamicValue, KeepsEmptyNullNumberAndTextApart)
{
    const DynamicValue empty;
    const DynamicValue null = DynamicValue::null();
    const DynamicValue emptyText = "";
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_TRUE(null.isNull());
    EXPECT_NE(empty, null);
    EXPECT_NE(empty, emptyText);
    for (const auto& nothing : { empty, null, emptyText }) {
        EXPECT_FALSE(nothing.hasContent());
        EXPECT_EQ(nothing.toText(kInvariantLocale), "");
    }
    EXPECT_TRUE(DynamicValue(0.0).hasContent());
    EXPECT_EQ(DynamicValue(2.5).toText(NumberLocale { ',' }), "2,5");
    EXPECT_EQ(DynamicValue("2,5").asNumber(NumberLocale { ',' }), 2.5);
    EXPECT_EQ(DynamicValue("2,5").asNumber(kInvariantLocale), std::nullopt);
}

TEST(DirectoryElement, RecordFieldsAndDerivedValues)
{
    std::vector<std::uint8_t> record = { 'C', 'o', 'n', 'f', 1, 'g', 0, 0, 0, 0, 0, 0x21, 0x00, 0x30, 0x01,
        10, 0, 4, 0, 0x00, 0x10, 3, 0, 0x20, 0x00 };
    const auto entry = parseDirectoryRecord(record);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->FileName, "Confg");
    EXPECT_EQ(entry->readLevel(), 1U);
    EXPECT_EQ(entry->writeLevel(), 2U);
    EXPECT_EQ(entry->FileType(), 0x130U);
    EXPECT_EQ(entry->FileFormat(), 3U);
    EXPECT_TRUE(entry->FileClone());
    EXPECT_EQ(entry->FileLocation, 0x1000U);
    EXPECT_EQ(entry->FileMaxBytes, 32U);
    EXPECT_EQ(entry->FileLength(), 2U) << "10 / 4 rounds to even";
    clsDirectoryElements e;
    e.FileChunk = 4;
    e.FileSize = 14;
    EXPECT_EQ(e.FileLength(), 4U);
    e.FileSize = 11;
    EXPECT_EQ(e.FileLength(), 3U);
    e.setFileType(0x12345);
    EXPECT_EQ(e.FileType(), 0x2345U);
    EXPECT_FALSE(parseDirectoryRecord(std::vector<std::uint8_t>(24)));
}

} // namespace
} // namespace zv
