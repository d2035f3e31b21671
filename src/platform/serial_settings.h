#pragma once
// The line settings text of a serial port: "baud,parity,data,stop", for example "115200,n,8,1".

#include <optional>
#include <string_view>

namespace zv::platform {

enum class Parity { None, Even, Odd, Mark, Space };
enum class StopBits { One, OneAndHalf, Two };

struct SerialSettings {
    int baud = 0;
    Parity parity = Parity::None;
    int dataBits = 8;
    StopBits stopBits = StopBits::One;
};

// Reads the text; blanks around the fields and the case of the parity letter do not matter.
// Empty when a field is missing, not a number, or out of range (baud > 0, data bits 5..8,
// stop bits 1, 1.5 or 2).
[[nodiscard]] std::optional<SerialSettings> parseSerialSettings(std::string_view text);

} // namespace zv::platform
