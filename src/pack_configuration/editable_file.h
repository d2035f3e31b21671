#pragma once
// The text forms of one device file (.tmap, .aux, .sbd): a header of seven lines, then the file's
// contents one 16-bit value a line. "#" starts a comment; empty lines do not count.

#include "device_files/directory.h"
#include "pack_configuration/dat_file.h"

#include <string>
#include <string_view>
#include <vector>

namespace zv {

class ValueConversion;

struct EditableFile {
    PackFileHeader header;
    PackProperties file; // Cloned false, FileIndex 0
};

// The lines that count: comment cut off, tabs removed, trimmed, empty ones dropped.
[[nodiscard]] std::vector<std::string> editableLines(std::string_view text);

// FileMaxBytes comes from the directory entry of the file's number. Throws PackFormatError.
[[nodiscard]] EditableFile readEditablePCFile(
    std::string_view text, const ValueConversion& conversion, const DirectoryElements& directory);

} // namespace zv
