#pragma once
// The pack's memory map: every device file with its directory fields and every parameter with its
// place. This one table drives the device and is what the configuration files in data/ describe.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zvsim {

// What a target id stands for.
struct TargetProfile {
    std::uint16_t id = 0;
    std::string name;
    int defaultCells = 4;
    bool averageVoltages = false; // the safety history keeps max/min/average instead of cells 1 to 4
    int firmwareVersion = 5000;
    int firmwareBuild = 12;
    int mapBegin = 0x3C; // first SMBus command of the SBD map
};

[[nodiscard]] TargetProfile targetProfile(std::uint16_t id);

// How a file keeps its contents across a restart.
enum class Persistence {
    Volatile, // rebuilt by the device (live data, protocol files)
    Committed, // RAM image, copied to flash by the commit command
    Direct, // written straight to flash
};

enum FileTypeBits : std::uint16_t { CloneBit = 0x100, CommitBit = 0x400 };

struct FileSpec {
    int number = 0;
    std::string name; // at most 11 characters
    int readLevel = 0;
    int writeLevel = 15; // 15: read-only
    int format = 2; // element size 1 to 4, 5 block
    bool clone = false;
    Persistence persistence = Persistence::Volatile;
    int chunk = 2;
    int size = 0; // bytes; per-node files: all nodes
    int maxBytes = 128;
    int version = 1;
    int location = 0;
    bool perNode = false;
    bool firmware = false; // written in block mode by the loader

    [[nodiscard]] std::uint16_t fileAccess() const
    {
        return static_cast<std::uint16_t>((readLevel & 15) | ((writeLevel & 15) << 4));
    }
    [[nodiscard]] std::uint16_t fileType() const
    {
        return static_cast<std::uint16_t>(
            (format << 4) | (clone ? CloneBit : 0) | (persistence == Persistence::Committed ? CommitBit : 0));
    }
    [[nodiscard]] int elementSize() const { return format == 5 ? chunk : format; }
};

// SubBlockDataType values.
enum SubType : int { BitField = 0, Byte = 1, Unsigned = 2, Signed = 3, Text = 6, HexText = 7 };

struct ParamSpec {
    std::string name;
    int file = 0;
    int index = 0; // in elements of the file's format
    int subType = Unsigned;
    double scaling = 1.0;
    std::string units;
    std::string number; // ParameterNumber as hex text
    int offsetMultiplier = 0;
    int dataType = 0; // 0 word, 1 block
    int vscale = 0; // block parameters: first byte position in the block
    int ipscale = 0; // block parameters: last byte position in the block
    double lower = 0;
    double upper = 65535;
    std::vector<std::string> bits; // 16 labels for bit fields, else empty
    int loggingType = 0;
    int tab = 0;
    int readLevel = 0;
    int writeLevel = 15;
    double initial = 0; // raw value at first power-on
    std::string initialText; // text parameters
};

struct MemoryMap {
    TargetProfile target;
    int cells = 0;
    std::vector<FileSpec> files; // by number, 0 to the last, then the "Error" entry
    std::vector<ParamSpec> gateway;
    std::vector<ParamSpec> cell; // one node; node n's section follows node n-1's

    [[nodiscard]] const FileSpec* file(int number) const;
    [[nodiscard]] const ParamSpec* gatewayParam(const std::string& name) const;
    [[nodiscard]] const ParamSpec* cellParam(const std::string& name) const;
    // Bytes of one node's section of a per-node file.
    [[nodiscard]] int sectionBytes(int fileNumber) const;
};

[[nodiscard]] MemoryMap buildMemoryMap(const TargetProfile& target, int cells);

// One entry of a log definition or SBD map: a column label, a file and an element of it, and
// how the word reads ("U", "S", "H").
struct SampleEntry {
    std::string label;
    int file = 0;
    int element = 0;
    std::string type = "U";
};

// The SBD map the pack ships with: the words behind the commands from "SBData Map Begin" on.
[[nodiscard]] std::vector<SampleEntry> defaultSbdMap(const MemoryMap& map);

// Captions of the parameter tabs (PT1.. and CT1..); the last pack tab is "Advanced".
[[nodiscard]] const std::vector<std::string>& packTabCaptions();
[[nodiscard]] const std::vector<std::string>& cellTabCaptions();

} // namespace zvsim
