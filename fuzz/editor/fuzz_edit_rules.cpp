// Any typed text against a parameter whose type, scaling and limits come from the first bytes:
// the check of the number, each key, the raw hex of an accepted value and the text conversions.

#include "editor/edit_rules.h"
#include "fuzz_text.h"
#include "params/smbus_parameter.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4)
        return 0;
    zv::clsSMBusParameter parameter;
    parameter.SubBlockDataType = static_cast<std::uint8_t>(data[0] % 16);
    parameter.SubBlockDataScaling = data[1] % 4 == 0 ? 0.0 : std::pow(10.0, data[1] % 7 - 3);
    parameter.LowerWriteLimit = static_cast<std::int8_t>(data[2]) * 100.0;
    parameter.UpperWriteLimit = parameter.LowerWriteLimit + data[3] * 1000.0;
    parameter.VScale = static_cast<std::uint8_t>(data[2] & 1);
    parameter.IPscale = static_cast<std::uint8_t>(data[3] & 1);
    parameter.ParameterName = "Fuzzed";
    const zv::DisplaySettings display;
    const std::string typed = zv::fuzz::text(data + 4, size - 4);

    const auto verdict = zv::validateNumber(typed, parameter, display);
    for (const unsigned char c : typed)
        (void)zv::keyAllowed(c, parameter, display);
    (void)zv::numericRangeText(parameter, display);
    (void)zv::rawRangeText(parameter);
    if (verdict.accepted) {
        char* end = nullptr;
        const double number = std::strtod(typed.c_str(), &end);
        if (std::isfinite(number))
            (void)zv::rawHex(number, parameter);
    }
    const std::string hex = zv::trimToHex(typed);
    for (const char c : hex)
        if (!std::isxdigit(static_cast<unsigned char>(c)) || std::islower(static_cast<unsigned char>(c)))
            std::abort();
    (void)zv::hexToAscii(typed);
    (void)zv::asciiToHex(typed);
    return 0;
}
