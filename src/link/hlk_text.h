#pragma once
// The HLK dongle's ASCII forms: "~XX" bytes, the command strings of the SMBus transactions and
// the parsing of "/MRC" replies. Pure text in, text or values out.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// "~" and two upper-case hex digits ("~0B").
[[nodiscard]] std::string ByteToTildeHex(std::uint8_t value);
// Baud rate text of a dongle baud index: 0 "19200", 1 "57600", 2 "115200", otherwise "".
[[nodiscard]] std::string GetBaudRate(int index);

namespace hlk {

// Write word with PEC over address, command, low, high: "/T~CC~LL~HH~PP" CR.
[[nodiscard]] std::string writeWord(std::uint8_t writeAddress, std::uint8_t command, int value);
// Write block with PEC over address, command, count, data: "/T~CC~NN~D0..~PP" CR.
[[nodiscard]] std::string writeBlock(
    std::uint8_t writeAddress, std::uint8_t command, std::span<const std::uint8_t> data);
// The bytes as they stand, no command, length or PEC: "/T~B0~B1.." CR.
[[nodiscard]] std::string writeRaw(std::span<const std::uint8_t> bytes);
// The command byte of a read, without stop: "/*T~CC" CR.
[[nodiscard]] std::string readCommand(std::uint8_t command);
inline constexpr std::string_view kReadWord = "/R3\r";
inline constexpr std::string_view kReadBlock = "/R~00\r";

struct WordReply {
    std::uint8_t low = 0;
    std::uint8_t high = 0;
    std::uint8_t pec = 0;
};
// "/MRC~LL~HH~PP": the pairs stand three characters apart from "/MRC" + 5.
// nullopt when the text cannot be parsed.
[[nodiscard]] std::optional<WordReply> parseWordReply(std::string_view reply);

// "/MRC~NN~D0..": the length, then N pairs. nullopt when the reply is too short for its
// length or the length is 0 (an empty block cannot be taken).
[[nodiscard]] std::optional<std::vector<std::uint8_t>> parseBlockReply(std::string_view reply);

// The two hex digits at text[pos], or nullopt.
[[nodiscard]] std::optional<std::uint8_t> hexPairAt(std::string_view text, std::size_t pos);

} // namespace hlk
} // namespace zv
