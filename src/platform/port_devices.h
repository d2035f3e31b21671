#pragma once
// Port numbers and the Linux devices behind them.
//
//   COM1  .. COM8   /dev/ttyUSB0 .. /dev/ttyUSB7   (USB serial converters)
//   COM9  .. COM16  /dev/ttyACM0 .. /dev/ttyACM7   (USB CDC modems, such as many dongles)
//
// A value "COM<n>" in the settings store under the key path "Ports" overrides the number n
// (any n >= 1, also above 16): a stable /dev/serial/by-id/... name, a pseudo-terminal or a link
// to one. For example, in the settings file:
//
//   [Ports]
//   COM3=/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A1B2C3-if00-port0

#include <string>
#include <string_view>

namespace zv::platform {

class SettingsStore;

inline constexpr std::string_view kPortsKeyPath = "Ports";
inline constexpr int kHighestListedPort = 16;

// The device path of port n; empty when n has none (n < 1, or above 16 without an override).
[[nodiscard]] std::string devicePathForPort(int n, const SettingsStore& settings);

// Whether port n names a character device that is present now. The device is not opened
// (opening a serial device may reset the board behind it), so a port held by another program
// counts as present: the open tells of that with error 8005.
[[nodiscard]] bool portExists(int n, const SettingsStore& settings);

// The same test for a device path.
[[nodiscard]] bool deviceExists(const std::string& path);

} // namespace zv::platform
