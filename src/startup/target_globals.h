#pragma once
// The globals a connection takes from the gateway's parameters once files 9, 5, 11 and 18 are read.

#include <optional>

namespace zv {

class clsCellWeft;
struct AppGlobals;

// The value of a gateway parameter as a number; nothing when there is no such parameter or value.
[[nodiscard]] std::optional<double> gatewayNumber(const clsCellWeft& driver, const char* name);

// gAlgEnableBit3 and gAlgEnableBit5 ("Algorithm enable"), gInternalFlag0 ("Internal Flags 2"),
// gFirmwareVersion, gFirmwareBuild and gTempSensorCount.
void readTargetGlobals(const clsCellWeft& driver, AppGlobals& globals);

} // namespace zv
