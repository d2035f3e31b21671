#pragma once
// Which COM ports this machine has, for the port lists of the connection dialogs. Only ports 1
// to 16 are looked for; the current port always heads a list, whatever its number.

#include <functional>
#include <string>
#include <vector>

namespace zv::platform {
class SettingsStore;
}

namespace zv {

class PortComboBox;

// "COM" and the port number.
[[nodiscard]] std::string comPortName(int port);

// Whether the device behind port n exists and could be opened, asked without taking it.
using PortProber = std::function<bool(int port)>;

// The prober of this machine: the device that port_devices maps n to is a character device now.
// The device is never opened, so a port held by another program counts as present; the
// connection attempt tells of that with error 8005.
[[nodiscard]] PortProber systemPortProber(const platform::SettingsStore& settings);

class clsCOMPortUtilities {
public:
    // currentPort gives the driver's SMBusCommPort when asked.
    clsCOMPortUtilities(PortProber prober, std::function<int()> currentPort);

    // Row 0 "COM<current> (Default)", then "COM<n>" for each other available port from 1 to 16;
    // row 0 is selected.
    void FillComboBoxWithAvailableCOMPorts(PortComboBox& combo) const;
    // The available ports other than the current one, in rising order.
    [[nodiscard]] std::vector<int> GetAvailableCOMPorts() const;
    [[nodiscard]] bool IsPortAvailable(int port) const;

private:
    PortProber prober_;
    std::function<int()> currentPort_;
};

} // namespace zv
