#include "monitor/main_title.h"

namespace zv {

AppVersion appVersion()
{
    return { ZENTAVIA_VERSION_MAJOR, ZENTAVIA_VERSION_MINOR, ZENTAVIA_VERSION_PATCH };
}

std::string mainTitle(const TitleFacts& facts)
{
    const AppVersion& v = facts.version;
    std::string title
        = "Norvale Systems - Zentavia " + std::to_string(v.major) + "." + std::to_string(v.minor) + " ";
    if (v.revision != 0)
        title += "Build(" + std::to_string(v.revision) + ") ";
    title += ": " + facts.targetName;
    if (facts.demo)
        title += " DEMO";
    if (facts.voltageCalibration)
        title += " : Unoffical Release - Voltage Calibration Enabled";
    return title;
}

} // namespace zv
