#pragma once
// The .xml form of a pack configuration: an export of a .dat, plain, with a checksum a row of
// 32 bytes, and the verifying read that compares the document with the list it came from.

#include "device_files/directory.h"

#include <functional>
#include <string>
#include <string_view>

namespace zv {

struct XmlPackageInfo {
    std::string version; // "major.minor" of the application
    std::string createdFrom; // the .dat file's name without its folder
    std::string timeStamp; // the export's date and time in the user's form
};

// Results of the verifying read.
enum XmlReadResult : int {
    kXmlRead = 0,
    kXmlNotLoaded = 1,
    kXmlChecksum = 2,
    kXmlDifferent = 5,
};

// The document of every element that is not Cloned, indented two spaces a level.
// Progress (percent) once an element.
[[nodiscard]] std::string writePackXml(const PackConfigurationFile& list, const XmlPackageInfo& info,
    const std::function<void(int)>& progress = {});

// Reads the document and compares its files, by position, with the list: id, size, chunk and
// data. On a checksum failure or a difference the list is cleared.
[[nodiscard]] int verifyPackXml(std::string_view document, PackConfigurationFile& list);

// The checksum of one row: the sum of its bytes modulo 256.
[[nodiscard]] int rowChecksum(std::string_view hexRow);

} // namespace zv
