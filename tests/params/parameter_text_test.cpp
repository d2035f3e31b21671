// The display text of a parameter (ToString) and what one raw count means (ScaledUnits).

#include "params/smbus_parameter.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

clsSMBusParameter parameter(const std::string& unit, DynamicValue value, DynamicValue newValue = {})
{
    clsSMBusParameter p;
    p.EngineeringUnitsString = unit;
    p.value = std::move(value);
    p.NewValue = std::move(newValue);
    return p;
}

DisplaySettings celsius()
{
    return DisplaySettings {};
}
DisplaySettings kelvin()
{
    DisplaySettings s;
    s.TemperatureUnits = 0;
    return s;
}

TEST(ToStringTemperatures, KelvinValuesShownInCelsiusAboveTheLimit)
{
    EXPECT_EQ(parameter("k", 298).ToString(0, celsius()), "25.0 °C");
    EXPECT_EQ(parameter("Kelvin", 298.6).ToString(0, celsius()), "25.6 °C");
    EXPECT_EQ(parameter("k", 50).ToString(0, celsius()), "50.0 °C") << "below 75 no offset";
    EXPECT_EQ(parameter("k", 75).ToString(0, celsius()), "75.0 °C") << "75 itself is not above";
    EXPECT_EQ(parameter("k", 76).ToString(0, celsius()), "-197.0 °C");
    EXPECT_EQ(parameter("k/min", 2).ToString(0, celsius()), "2.0 °C/Min");
    EXPECT_EQ(parameter("k", 298, "30").ToString(1, celsius()), "30.0 °C (was 25.0 °C)");
    EXPECT_EQ(parameter("k", 298).ToString(2, celsius()), "25.0");
    auto commaLocale = celsius();
    commaLocale.locale.decimalSeparator = ',';
    EXPECT_EQ(parameter("k", 298.5).ToString(0, commaLocale), "25,5 °C");
}

TEST(ToStringTemperatures, KelvinDisplayKeepsValuesWithTheKelvinUnit)
{
    EXPECT_EQ(parameter("k", 298).ToString(0, kelvin()), "298.0 K");
    EXPECT_EQ(parameter("kelvin", 298).ToString(0, kelvin()), "298.0 K");
    EXPECT_EQ(parameter("k/min", 3).ToString(0, kelvin()), "3.0 K/Min");
    EXPECT_EQ(parameter("Celsius", 21).ToString(0, kelvin()), "21.0 °C");
    EXPECT_EQ(parameter("C", 21).ToString(0, celsius()), "21.0 °C");
}

TEST(ToStringUnits, ScalingFlagsMultiplyByTheTargetScales)
{
    DisplaySettings s;
    s.VScale = 10;
    s.IPScale = 100;
    auto mv = parameter("mV", 370);
    EXPECT_EQ(mv.ToString(0, s), "370 mV") << "no flag, no scaling";
    mv.VScale = 1;
    EXPECT_EQ(mv.ToString(0, s), "3700 mV");
    auto ma = parameter("mA", -5);
    ma.IPscale = 1;
    EXPECT_EQ(ma.ToString(0, s), "-500 mA");
    ma.VScale = 1;
    ma.IPscale = 0;
    EXPECT_EQ(ma.ToString(0, s), "-5 mA") << "the voltage flag does not scale a current";
    auto energy = parameter("10mWh", 7);
    EXPECT_EQ(energy.ToString(0, s), "70 mWh");
    energy.VScale = 1;
    energy.IPscale = 1;
    EXPECT_EQ(energy.ToString(0, s), "70000 mWh");
    auto power = parameter("Watts", 2);
    power.VScale = 1;
    EXPECT_EQ(power.ToString(0, s), "20 Watts");
}

TEST(ToStringUnits, CapacityUnitsFollowCapacityMode)
{
    DisplaySettings s;
    s.VScale = 10;
    s.IPScale = 2;
    auto capacity = parameter("(mAh | 10mWh)", 100);
    capacity.VScale = 1;
    capacity.IPscale = 1;
    auto rate = parameter("(mA | 10mW)", 100);
    rate.IPscale = 1;

    s.CapacityMode = 0;
    EXPECT_EQ(capacity.ToString(0, s), "200 mAh");
    EXPECT_EQ(rate.ToString(0, s), "200 mA");
    s.CapacityMode = 1;
    EXPECT_EQ(capacity.ToString(0, s), "20000 mWh");
    EXPECT_EQ(rate.ToString(0, s), "2000 mW") << "v is 1 without the VScale flag";
}

TEST(ToStringModes, HexModesNewValuesAndOddities)
{
    const auto settings = celsius();
    auto flags = parameter("", 4660);
    EXPECT_EQ(flags.ToString(3, settings), "0x1234");
    EXPECT_EQ(flags.ToString(4, settings), "0x1234 ") << "without a new value the unit stays";
    flags.NewValue = "0x00FF";
    EXPECT_EQ(flags.ToString(4, settings), "0x00FF (was 0x1234)");
    EXPECT_EQ(flags.ToString(1, settings), "0x00FF  (was 4660 )");

    auto volts = parameter("mV", 3700);
    EXPECT_EQ(volts.ToString(4, settings), "0x0E74 mV");
    volts.NewValue = "";
    EXPECT_EQ(volts.ToString(1, settings), "3700 mV") << "an empty text is no new value";
    volts.NewValue = DynamicValue::null();
    EXPECT_EQ(volts.ToString(1, settings), "3700 mV");
    EXPECT_EQ(volts.ToString(9, settings), "3700");

    EXPECT_EQ(parameter("mV", "#Error").ToString(0, settings), "");
    EXPECT_EQ(parameter("mV", " 12 ").ToString(0, settings), "12 mV") << "trimmed";
    EXPECT_EQ(parameter("", "Pack.").ToString(2, settings), "Pack") << "a trailing point goes";
    EXPECT_EQ(parameter("mV", "#Error - Bad Config").ToString(0, settings), "#Error - Bad Config mV");
}

TEST(ScaledUnitsTest, RawCountMeaningByUnitFlagsAndScales)
{
    DisplaySettings s;
    s.VScale = 10;
    s.IPScale = 100;
    auto p = parameter("mV", 0);
    EXPECT_EQ(p.ScaledUnits(s), "mV");
    p.VScale = 1;
    EXPECT_EQ(p.ScaledUnits(s), "mV / 10");
    p = parameter("mA", 0);
    p.IPscale = 1;
    EXPECT_EQ(p.ScaledUnits(s), "mA / 100");
    p = parameter("10mWh", 0);
    EXPECT_EQ(p.ScaledUnits(s), "mWh / 10");
    p.VScale = 1;
    EXPECT_EQ(p.ScaledUnits(s), "mWh / 10000");
    p = parameter("Watts", 0);
    p.IPscale = 1;
    EXPECT_EQ(p.ScaledUnits(s), "Watts / 1000");
    p = parameter("Watts", 0);
    EXPECT_EQ(p.ScaledUnits(s), "Watts");

    for (const int mode : { 0, 1 }) {
        s.CapacityMode = mode;
        auto capacity = parameter("(mAh | 10mWh)", 0);
        auto rate = parameter("(mA | 10mW)", 0);
        EXPECT_EQ(capacity.ScaledUnits(s), mode == 1 ? "mWh / 10" : "mAh");
        EXPECT_EQ(rate.ScaledUnits(s), mode == 1 ? "mW / 10" : "mA");
        capacity.IPscale = 1;
        rate.IPscale = 1;
        EXPECT_EQ(capacity.ScaledUnits(s), mode == 1 ? "mWh / 10000" : "mAh / 100");
        EXPECT_EQ(rate.ScaledUnits(s), mode == 1 ? "mW / 10000" : "mA / 100");
    }

    DisplaySettings unscaled;
    auto capacity = parameter("(mAh | 10mWh)", 0);
    capacity.VScale = 1;
    unscaled.CapacityMode = 1;
    EXPECT_EQ(capacity.ScaledUnits(unscaled), "mWh / 10") << "flags without a scale";
    EXPECT_EQ(parameter("seconds", 0).ScaledUnits(s), "seconds");
}

} // namespace
} // namespace zv
