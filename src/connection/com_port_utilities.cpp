#include "connection/com_port_utilities.h"

#include "connection/port_combo_box.h"
#include "platform/port_devices.h"

namespace zv {

std::string comPortName(int port)
{
    return "COM" + std::to_string(port);
}

PortProber systemPortProber(const platform::SettingsStore& settings)
{
    return [&settings](int port) { return platform::portExists(port, settings); };
}

clsCOMPortUtilities::clsCOMPortUtilities(PortProber prober, std::function<int()> currentPort)
    : prober_(std::move(prober))
    , currentPort_(std::move(currentPort))
{
}

void clsCOMPortUtilities::FillComboBoxWithAvailableCOMPorts(PortComboBox& combo) const
{
    const int current = currentPort_();
    combo.addPort(comPortName(current) + " (Default)", current);
    for (const int port : GetAvailableCOMPorts())
        combo.addPort(comPortName(port), port);
    combo.setListIndex(0);
}

std::vector<int> clsCOMPortUtilities::GetAvailableCOMPorts() const
{
    const int current = currentPort_();
    std::vector<int> ports;
    for (int port = 1; port <= platform::kHighestListedPort; ++port) {
        if (port != current && IsPortAvailable(port))
            ports.push_back(port);
    }
    return ports;
}

bool clsCOMPortUtilities::IsPortAvailable(int port) const
{
    return port > 0 && prober_(port);
}

} // namespace zv
