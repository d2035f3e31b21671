// Any device text through FormatData, ConvertRawToValue and the display text of a parameter.

#include "answering_dialogs.h"
#include "params/raw_conversion.h"
#include "params/smbus_parameter.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 6) {
        return 0;
    }
    const int elementSize = data[0] % 7;
    const int elementIndex = static_cast<int>(data[1] % 12) - 2;
    const int dataType = data[2] % 10;
    const double scale = data[3] / 1000.0;
    const int group = data[4] % 9;
    const std::string text(reinterpret_cast<const char*>(data + 5), size - 5);

    zv::fuzz::AnsweringDialogs dialogs;
    const zv::ValueConversion conversion(dialogs, zv::NumberLocale { data[1] % 2 ? ',' : '.' });
    zv::clsSMBusParameter parameter;
    parameter.value = conversion.FormatData(text, elementSize, elementIndex, dataType, scale, group);
    parameter.NewValue = text;
    const char* units[] = { "k", "k/min", "mV", "mA", "10mWh", "Watts", "(mAh | 10mWh)", "(mA | 10mW)", "" };
    parameter.EngineeringUnitsString = units[data[4] % 9];
    parameter.VScale = data[0] & 1;
    parameter.IPscale = (data[0] >> 1) & 1;
    zv::DisplaySettings settings;
    settings.VScale = 10;
    settings.IPScale = 100;
    settings.CapacityMode = data[2] & 1;
    settings.TemperatureUnits = (data[2] >> 1) & 1;
    for (int mode = 0; mode <= 5; ++mode) {
        (void)parameter.ToString(mode, settings);
    }
    (void)parameter.ScaledUnits(settings);

    const std::span<const std::uint8_t> block(data + 5, size - 5);
    (void)zv::ConvertRawToValue(block, dataType, data[1] % 40 - 4, data[3] % 40 - 4);
    (void)conversion.GetConfigurationValue(text, units[data[3] % 9], data[4] % 40);
    return 0;
}
