#pragma once
// The numbers of calibration: the command words of each step written to the command file, the
// entry ranges, how the calibration words of file 24 and the sensor words of file 21 are shown,
// and the offset and gain per cell of the two-point voltage wizard.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

struct NumberLocale;

// The calibration commands of device file 27.
enum class CalibrationCommand : std::uint16_t {
    CurrentOffset = 0,
    CurrentGain = 1,
    Temperature = 2,
    SelectCell = 8,
    LowerVoltage = 9,
    UpperVoltage = 10,
};

// The four bytes of a step: the command and its argument as 16-bit words, low byte first. The
// argument is taken modulo 65536.
[[nodiscard]] std::vector<std::uint8_t> calibrationCommandBytes(CalibrationCommand command, int argument);

// The applied current as the device takes it: 16-bit two's complement (-1000 gives 64536).
[[nodiscard]] int currentGainArgument(int milliamps);
// The ambient temperature in tenths of a kelvin: Kelvin x 10, or Celsius x 10 + 2732; rounded
// half to even.
[[nodiscard]] int temperatureArgument(double value, bool celsius);

// Entry ranges, both ends included.
inline constexpr int kCurrentLimitMa = 32000;
inline constexpr int kKelvinLow = 291;
inline constexpr int kKelvinHigh = 303;
inline constexpr int kCelsiusLow = 18;
inline constexpr int kCelsiusHigh = 30;
inline constexpr int kVoltageLowMv = 2700;
inline constexpr int kVoltageHighMv = 4500;
// What an empty field takes on leaving it.
inline constexpr const char* kFirstVoltageDefault = "2750";
inline constexpr const char* kSecondVoltageDefault = "4250";

// The text of an entry field as a number (either separator is taken as the decimal point);
// nothing for an empty or malformed text.
[[nodiscard]] std::optional<double> entryNumber(std::string_view text);
// The characters the entry fields take besides control keys.
[[nodiscard]] bool calibrationEntryKey(char32_t key);

// The shown forms of the calibration words (file 24) and sensor words (file 21).
[[nodiscard]] int signedWord(std::uint16_t word);
[[nodiscard]] std::string gainText(std::uint16_t word, const NumberLocale& locale); // word / 32767, "0.000"
[[nodiscard]] std::string sensorTemperatureText(std::uint16_t word, bool celsius, const NumberLocale& locale);
[[nodiscard]] std::string sensorOffsetText(std::uint16_t word, bool celsius, const NumberLocale& locale);

// The 16-bit words of a file's hex text, low byte first; an odd byte at the end is dropped.
[[nodiscard]] std::vector<std::uint16_t> fileWords(std::string_view hex);
[[nodiscard]] std::vector<std::uint8_t> wordBytes(const std::vector<std::uint16_t>& words);

// The two-point voltage wizard. Node n (1 to 16) has its offset at word 10 + 2(n - 1) and its
// gain at word 11 + 2(n - 1); 32768 is gain 1.
inline constexpr int kWizardNodes = 16;
inline constexpr std::size_t kFirstCellWord = 10;
inline constexpr std::uint16_t kUnitGainWord = 32768;
[[nodiscard]] constexpr std::size_t offsetWordOf(int node)
{
    return kFirstCellWord + 2 * static_cast<std::size_t>(node - 1);
}
[[nodiscard]] constexpr std::size_t gainWordOf(int node)
{
    return offsetWordOf(node) + 1;
}

// The words with every node's pair set to offset 0, gain 32768; words that are not there are
// added as zeros first.
[[nodiscard]] std::vector<std::uint16_t> clearedCalibration(std::vector<std::uint16_t> words);

struct CellCalibration {
    double slope = 0; // m: actual per measured mV
    long offsetMv = 0; // b, rounded
    std::uint16_t offsetWord = 0; // b in 16-bit two's complement
    std::uint16_t gainWord = 0; // 32768 / m, rounded
};
// m = (high actual - low actual) / (high measured - low measured), b = low actual - m x low
// measured. Nothing, with the reason in `error`, when the two readings are equal or a result
// leaves its 16-bit word.
[[nodiscard]] std::optional<CellCalibration> computeCellCalibration(
    int lowActual, int lowMeasured, int highActual, int highMeasured, std::string& error);

} // namespace zv
