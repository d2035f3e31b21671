#pragma once
// The device files as bytes: a RAM image of each file and the flash behind the files that keep
// their contents, with access to a parameter's place by its name.

#include "device/memory_map.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zvsim {

class FileStore {
public:
    explicit FileStore(const MemoryMap& map);

    [[nodiscard]] std::vector<std::uint8_t>& bytes(int file);
    [[nodiscard]] const std::vector<std::uint8_t>& bytes(int file) const;

    // A parameter's raw value; node 0 is the gateway list, 1 to N a cell.
    [[nodiscard]] std::uint32_t get(std::string_view name, int node = 0) const;
    void set(std::string_view name, std::uint32_t raw, int node = 0);
    [[nodiscard]] std::int16_t getSigned(std::string_view name, int node = 0) const
    {
        return static_cast<std::int16_t>(get(name, node));
    }
    void setSigned(std::string_view name, int value, int node = 0)
    {
        set(name, static_cast<std::uint16_t>(static_cast<std::int16_t>(value)), node);
    }
    void setBits(std::string_view name, std::uint16_t mask, bool on, int node = 0);

    [[nodiscard]] std::uint16_t word(int file, int byteOffset) const;
    void setWord(int file, int byteOffset, std::uint16_t value);

    // Every file back to its first power-on contents, flash included.
    void factoryReset();
    // RAM to flash for the files with the commit bit.
    void commit();
    // A restart: committed files come back from flash, live files from their defaults.
    void restart();

    // Flash as text lines "F <file> <hex>", for the state file.
    [[nodiscard]] std::string flashText() const;
    // Takes flash contents from flashText(); files of another size are left as they are.
    void loadFlashText(std::string_view text);

    [[nodiscard]] const MemoryMap& map() const { return map_; }

private:
    struct Place {
        int file;
        int offset;
        int size;
    };
    [[nodiscard]] Place place(std::string_view name, int node) const;
    void writeDefaults(int file);

    const MemoryMap& map_;
    std::unordered_map<std::string, Place> gatewayPlaces_; // offsets in the file
    std::unordered_map<std::string, Place> cellPlaces_; // offsets in node 1's section
    std::vector<std::vector<std::uint8_t>> ram_;
    std::vector<std::vector<std::uint8_t>> flash_;
};

} // namespace zvsim
