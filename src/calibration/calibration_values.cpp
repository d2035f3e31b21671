#include "calibration/calibration_values.h"

#include "params/number_text.h"
#include "platform/text.h"

#include <algorithm>
#include <cmath>

namespace zv {

std::vector<std::uint8_t> calibrationCommandBytes(CalibrationCommand command, int argument)
{
    const auto code = static_cast<std::uint16_t>(command);
    const auto word = static_cast<std::uint16_t>(static_cast<unsigned>(argument) & 0xFFFF);
    return { static_cast<std::uint8_t>(code & 0xFF), static_cast<std::uint8_t>(code >> 8),
        static_cast<std::uint8_t>(word & 0xFF), static_cast<std::uint8_t>(word >> 8) };
}

int currentGainArgument(int milliamps)
{
    return milliamps < 0 ? milliamps + 65536 : milliamps;
}

int temperatureArgument(double value, bool celsius)
{
    return static_cast<int>(roundHalfEven(toFifteenDigits(value * 10 + (celsius ? 2732 : 0))));
}

std::optional<double> entryNumber(std::string_view text)
{
    std::string normal(text);
    for (char& c : normal)
        if (c == ',')
            c = '.';
    return parseNumber(normal, '.');
}

bool calibrationEntryKey(char32_t key)
{
    return key < 32 || std::u32string_view(U"-0123456789.,").find(key) != std::u32string_view::npos;
}

int signedWord(std::uint16_t word)
{
    return word > 32767 ? word - 65536 : word;
}

std::string gainText(std::uint16_t word, const NumberLocale& locale)
{
    return formatNumber(word / 32767.0, "0.000", locale);
}

std::string sensorTemperatureText(std::uint16_t word, bool celsius, const NumberLocale& locale)
{
    return celsius ? generalNumberText(toFifteenDigits(word / 10.0 - 273), locale) + " °C"
                   : generalNumberText(word / 10.0, locale) + " K";
}

std::string sensorOffsetText(std::uint16_t word, bool celsius, const NumberLocale& locale)
{
    const double tenths = signedWord(word) / 10.0;
    return generalNumberText(toFifteenDigits(celsius ? tenths - 273 : tenths), locale);
}

std::vector<std::uint16_t> fileWords(std::string_view hex)
{
    std::vector<std::uint16_t> words;
    const auto digit = [](char c) { return std::max(0, platform::hexDigitValue(c)); };
    for (std::size_t i = 0; i + 4 <= hex.size(); i += 4) {
        const int low = digit(hex[i]) * 16 + digit(hex[i + 1]);
        const int high = digit(hex[i + 2]) * 16 + digit(hex[i + 3]);
        words.push_back(static_cast<std::uint16_t>(high << 8 | low));
    }
    return words;
}

std::vector<std::uint8_t> wordBytes(const std::vector<std::uint16_t>& words)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(words.size() * 2);
    for (const std::uint16_t word : words) {
        bytes.push_back(static_cast<std::uint8_t>(word & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(word >> 8));
    }
    return bytes;
}

std::vector<std::uint16_t> clearedCalibration(std::vector<std::uint16_t> words)
{
    if (words.size() < gainWordOf(kWizardNodes) + 1)
        words.resize(gainWordOf(kWizardNodes) + 1, 0);
    for (int node = 1; node <= kWizardNodes; ++node) {
        words[offsetWordOf(node)] = 0;
        words[gainWordOf(node)] = kUnitGainWord;
    }
    return words;
}

std::optional<CellCalibration> computeCellCalibration(
    int lowActual, int lowMeasured, int highActual, int highMeasured, std::string& error)
{
    if (highMeasured == lowMeasured) {
        error = "the device reported the same voltage at both points for";
        return std::nullopt;
    }
    CellCalibration result;
    result.slope = static_cast<double>(highActual - lowActual) / (highMeasured - lowMeasured);
    const double gain = result.slope == 0 ? -1 : roundHalfEven(32768.0 / result.slope);
    const double offset = roundHalfEven(lowActual - result.slope * lowMeasured);
    if (gain < 1 || gain > 65535) {
        error = "the gain is outside the range of the device for";
        return std::nullopt;
    }
    if (offset < -32768 || offset > 32767) {
        error = "the offset is outside the range of the device for";
        return std::nullopt;
    }
    result.gainWord = static_cast<std::uint16_t>(gain);
    result.offsetMv = static_cast<long>(offset);
    result.offsetWord
        = static_cast<std::uint16_t>(result.offsetMv < 0 ? result.offsetMv + 65536 : result.offsetMv);
    return result;
}

} // namespace zv
