#include "startup/target_globals.h"

#include "core/globals.h"
#include "driver/cellweft.h"

namespace zv {

std::optional<double> gatewayNumber(const clsCellWeft& driver, const char* name)
{
    const clsSMBusParameter* parameter = driver.GatewayParameters.FindByName(name);
    if (!parameter)
        return std::nullopt;
    return parameter->value.asNumber(driver.Parameters.display.locale);
}

void readTargetGlobals(const clsCellWeft& driver, AppGlobals& globals)
{
    const auto number
        = [&](const char* name) { return static_cast<long>(gatewayNumber(driver, name).value_or(0)); };
    const long algorithm = number("Algorithm enable");
    globals.gAlgEnableBit3 = (algorithm & 0x08) != 0;
    globals.gAlgEnableBit5 = (algorithm & 0x20) != 0;
    globals.gInternalFlag0 = (number("Internal Flags 2") & 0x01) != 0;
    globals.gFirmwareVersion = number("Firmware Version");
    globals.gFirmwareBuild = number("FW Build");
    globals.gTempSensorCount = static_cast<int>(number("Temperature Sensor Count") & 0xFF);
}

} // namespace zv
