#pragma once
// Whole device files: reading in parts where a file is larger than one transfer, spreading a
// file's text over the parameters that live in it, and writing whole files.

#include "device_files/file_protocol.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zv {

class oDirectory;
class ParameterList;
class NodeList;
class ValueConversion;
class clsSMBusParameter;
class clsDirectoryElements;

// The value of a parameter whose place lies beyond the end of its device file.
inline constexpr const char* kValueOutsideFile = "#Error";

// Files that hold one section per node.
[[nodiscard]] bool isPerNodeFile(int fileNumber);

class FileTransfer {
public:
    FileTransfer(FileProtocol& files, oDirectory& directory, ParameterList& gateway, NodeList& nodes,
        const ValueConversion& conversion, const bool& demo);

    // What a read in parts does between two parts. The poll's GetFile sends them back to back;
    // a single parameter read waits for the target on the dongle, the read of every value on
    // either transport.
    enum class PartWait { None, DongleIdle, Idle };

    // Reads file `file` whole (in parts where needed). Empty optional on failure.
    [[nodiscard]] std::optional<std::string> readFile(int file, PartWait wait = PartWait::None);
    // Reads the file and gives its parameters their values.
    [[nodiscard]] bool GetFile(int file, std::string& text);
    // Writes the whole file from its bytes, in parts where needed.
    [[nodiscard]] bool PutFile(int file, const std::vector<std::uint8_t>& data);

    // Cuts the parameter's place out of its file's text into `value`; a waiting NewValue stays, so a
    // poll does not undo an edit not yet written. A place beyond the end of the file is "#Error".
    void applyValue(clsSMBusParameter& parameter, const std::string& fileText, int baseElement = 0) const;
    // The same from the file's bytes: the text of a file is decoded once, not once a parameter.
    void applyValue(
        clsSMBusParameter& parameter, std::span<const std::uint8_t> image, int baseElement = 0) const;
    // Gives every gateway parameter of the file, and for per-node files every node, its value.
    void spreadValues(int file, const std::string& text) const;
    // Elements of one node's section of a per-node file: the sum of the sizes of node 1's
    // parameters in that file, one element each, as the configuration lists them.
    [[nodiscard]] int sectionElements(int file) const;

private:
    FileProtocol& files_;
    oDirectory& directory_;
    ParameterList& gateway_;
    NodeList& nodes_;
    const ValueConversion& conversion_;
    const bool& demo_;
};

} // namespace zv
