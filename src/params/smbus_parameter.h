#pragma once
// The parameter objects: one named device value with its place in a device file, scaling,
// limits and levels (clsSMBusParameter), its bit labels (clsBitString), the cell nodes
// (clsNode) and the SMBus commands of static reads (clsSMBusCommand), each in a keyed list.

#include "params/display_settings.h"
#include "params/dynamic_value.h"
#include "params/keyed_list.h"

#include <cstdint>
#include <string>

namespace zv {

class clsBitString {
public:
    std::string data; // label of one bit; empty for an unused bit
};

class BitStringList : public KeyedList<clsBitString> {
public:
    clsBitString& Add(const std::string& text, const std::string& key = {});
};

class clsSMBusParameter {
public:
    std::uint8_t DataType = 0; // SMBus-command parameter: 0 word, 1 block
    std::string EngineeringUnitsString;
    double LowerWriteLimit = 0;
    std::uint8_t OffsetMultiplier = 0;
    std::string ParameterName;
    std::string ParameterNumber; // hex text, with or without "0x"
    std::uint8_t ReadPrivilegeLevel = 0;
    double SubBlockDataScaling = 0; // 0: none
    std::uint8_t SubBlockDataType = 0;
    std::uint8_t VScale = 0; // 1: times the global VScale (block parameter: first byte position)
    std::uint8_t IPscale = 0; // 1: times the global IPScale (block parameter: last byte position)
    double UpperWriteLimit = 0;
    std::uint8_t WritePrivilegeLevel = 0;
    BitStringList BitString;
    std::uint8_t LoggingType = 0;
    DynamicValue value;
    DynamicValue NewValue;
    std::uint8_t TabOrder = 0;
    std::uint8_t FileNumber = 0;
    std::uint8_t FileIndex = 0;

    // Mode 0 value and unit, 1 new value and old, 2 value, 3 hex, 4 hex new and old; other: value.
    [[nodiscard]] std::string ToString(int mode, const DisplaySettings& settings) const;
    // What one raw count means, for the editor ("mV / 10", "mWh / 10", ...).
    [[nodiscard]] std::string ScaledUnits(const DisplaySettings& settings) const;
};

// GatewayParameters and NodeParameters.
class ParameterList : public KeyedList<clsSMBusParameter> {
public:
    // Creates a parameter with index as its ParameterNumber.
    clsSMBusParameter& Add(const std::string& index, const std::string& key = {});
    // First parameter whose ParameterName matches without regard to case; nothing if none.
    [[nodiscard]] clsSMBusParameter* FindByName(std::string_view name) const;
};

class clsNode {
public:
    ParameterList NodeParameters;
};

class NodeList : public KeyedList<clsNode> {
public:
    // Nodes are numbered by their position from 1.
    clsNode& Add(const std::string& key = {});
    // Rebuilds the destination's parameters as copies of the source's, value and NewValue
    // left empty. False when either node is missing.
    bool Copy(int sourceIndex, int destinationIndex);
};

class clsSMBusCommand {
public:
    std::uint8_t DataType = 0;
    std::uint8_t CommandNumber = 0;
};

// colCommands: one entry per distinct SMBus command, key "0x" + hex number.
class CommandList : public KeyedList<clsSMBusCommand> {
public:
    clsSMBusCommand& Add(std::uint8_t dataType, std::uint8_t commandNumber, const std::string& key);
};

} // namespace zv
