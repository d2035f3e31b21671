#pragma once
// The .dat form of a pack configuration: title and version, then one record a device file with
// its name and data enciphered with the pack key. The record of file 16 carries the pack's
// login secret.

#include "access/login.h"
#include "device_files/directory.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace zv {

// Title and version of a pack file, kept beside the list.
struct PackFileHeader {
    std::string title;
    std::string version; // "major.minor"
};

// The login secret of file 16: bytes 8 to 15 of its data.
struct PackPassword {
    bool present = false; // the file held a record of file 16
    PasswordBytes bytes {};
    std::string text; // the bytes without the zero ones
};

struct DatContent {
    PackFileHeader header;
    std::vector<PackProperties> files; // Cloned false, in file order
    PackPassword password;
};

// ReadWriteFileStatus(percent).
using PackProgress = std::function<void(int percent)>;

// Throws PackFormatError on a file that is short, has a bad field, or whose data does not
// decipher to the hexadecimal text of its size. Progress once a record when there are several.
[[nodiscard]] DatContent readDat(std::span<const std::uint8_t> bytes, const PackProgress& progress = {});

// The bytes of a .dat; every element must be Cloned (a configuration read from the device),
// otherwise PackFormatError. Progress once a record.
[[nodiscard]] std::vector<std::uint8_t> writeDat(
    const PackFileHeader& header, const PackConfigurationFile& list, const PackProgress& progress = {});

// The secret of a file-16 data text.
[[nodiscard]] PackPassword passwordOf(std::string_view fileData);

} // namespace zv
