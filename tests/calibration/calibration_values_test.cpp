// Known answers of the calibration numbers: the arguments each step sends, the shown forms of the
// calibration words, and the wizard's offset and gain per cell.

#include "calibration/calibration_values.h"
#include "params/number_text.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

TEST(CalibrationValuesTest, StepArguments)
{
    struct Current {
        int ma;
        int argument;
    };
    for (const auto& c : { Current { -1000, 64536 }, Current { -1, 65535 }, Current { 0, 0 },
             Current { 32000, 32000 }, Current { -32000, 33536 } })
        EXPECT_EQ(currentGainArgument(c.ma), c.argument) << c.ma;

    struct Temperature {
        double value;
        bool celsius;
        int tenthsK;
    };
    for (const auto& c : { Temperature { 25, true, 2982 }, Temperature { 298, false, 2980 },
             Temperature { 18, true, 2912 }, Temperature { 30, true, 3032 }, Temperature { 291, false, 2910 },
             Temperature { 25.3, true, 2985 }, Temperature { 298.15, false, 2982 }, // 2981.5: half to even
             Temperature { 298.25, false, 2982 } }) // 2982.5: half to even
        EXPECT_EQ(temperatureArgument(c.value, c.celsius), c.tenthsK) << c.value << (c.celsius ? " C" : " K");

    // Code and argument, each low byte first.
    using Bytes = std::vector<std::uint8_t>;
    const std::tuple<CalibrationCommand, int, Bytes> commands[] = {
        { CalibrationCommand::CurrentGain, 64536, { 0x01, 0x00, 0x18, 0xFC } },
        { CalibrationCommand::CurrentGain, -1000, { 0x01, 0x00, 0x18, 0xFC } },
        { CalibrationCommand::Temperature, 2982, { 0x02, 0x00, 0xA6, 0x0B } },
        { CalibrationCommand::UpperVoltage, 4200, { 0x0A, 0x00, 0x68, 0x10 } },
        { CalibrationCommand::SelectCell, 3, { 0x08, 0x00, 0x03, 0x00 } },
    };
    for (const auto& [command, argument, bytes] : commands)
        EXPECT_EQ(calibrationCommandBytes(command, argument), bytes) << argument;
}

TEST(CalibrationValuesTest, ShownForms)
{
    const NumberLocale point;
    EXPECT_EQ(signedWord(65534), -2);
    EXPECT_EQ(signedWord(32767), 32767);
    EXPECT_EQ(gainText(32767, point), "1.000");
    EXPECT_EQ(gainText(30000, point), "0.916");
    // Celsius takes off 273, not 273.2; the offset is shifted the same way and has no unit.
    EXPECT_EQ(sensorTemperatureText(2982, true, point), "25.2 °C");
    EXPECT_EQ(sensorTemperatureText(2982, false, point), "298.2 K");
    EXPECT_EQ(sensorOffsetText(65531, true, point), "-273.5");
    EXPECT_EQ(sensorOffsetText(65531, false, point), "-0.5");
    EXPECT_EQ(sensorOffsetText(12, false, point), "1.2");
}

TEST(CalibrationValuesTest, WizardOffsetAndGain)
{
    struct Case {
        int lowActual, lowMeasured, highActual, highMeasured;
        std::uint16_t offsetWord, gainWord;
        long offset;
    };
    const Case cases[] = {
        // Actual and measured apart by the same amount: gain 1.
        { 3000, 3000, 4000, 4000, 0, 32768, 0 },
        { 3000, 2990, 4000, 3990, 10, 32768, 10 },
        // Reading 2 mV high at both points.
        { 3000, 3002, 4000, 4002, 65534, 32768, -2 },
        // The device reads 0.4 % high: m = 1000 / 1004, gain 32768 x 1.004 = 32899.07.
        { 3000, 3012, 4000, 4016, 0, 32899, 0 },
        // m = 0.5: 32768 / 0.5 = 65536 does not fit a word (below).
        { 3000, 3000, 3500, 4000, 65535, 0, 0 },
    };
    for (const auto& c : cases) {
        std::string error;
        const auto result
            = computeCellCalibration(c.lowActual, c.lowMeasured, c.highActual, c.highMeasured, error);
        if (c.gainWord == 0) {
            EXPECT_FALSE(result);
            EXPECT_NE(error, "");
            continue;
        }
        ASSERT_TRUE(result) << error;
        EXPECT_EQ(result->gainWord, c.gainWord) << c.lowMeasured << " " << c.highMeasured;
        EXPECT_EQ(result->offsetWord, c.offsetWord);
        EXPECT_EQ(result->offsetMv, c.offset);
    }
    std::string error;
    EXPECT_FALSE(computeCellCalibration(3000, 3500, 4000, 3500, error)) << "equal readings";
    EXPECT_FALSE(computeCellCalibration(3000, 3000, 3000, 4000, error)) << "no slope";
    EXPECT_FALSE(computeCellCalibration(3000, 40000, 4000, 41000, error)) << "offset beyond a word";

    // Cleared pairs: offset 0, gain 32768 for all 16 nodes; the words around them stay.
    std::vector<std::uint16_t> words(43, 7);
    const auto cleared = clearedCalibration(words);
    ASSERT_EQ(cleared.size(), 43u);
    for (std::size_t i = 0; i < cleared.size(); ++i) {
        const bool pair = i >= 10 && i <= 41;
        EXPECT_EQ(cleared[i], !pair ? 7 : (i % 2 == 0 ? 0 : 32768)) << i;
    }
    EXPECT_EQ(clearedCalibration({}).size(), 42u);
}

} // namespace
} // namespace zv
