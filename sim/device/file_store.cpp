#include "device/file_store.h"

#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace zvsim {

namespace {

void putLittleEndian(std::vector<std::uint8_t>& bytes, int offset, int size, std::uint32_t value)
{
    for (int i = 0; i < size && offset + i < static_cast<int>(bytes.size()); ++i)
        bytes[static_cast<std::size_t>(offset + i)] = static_cast<std::uint8_t>(value >> (8 * i));
}

std::uint32_t getLittleEndian(const std::vector<std::uint8_t>& bytes, int offset, int size)
{
    std::uint32_t value = 0;
    for (int i = 0; i < size && offset + i < static_cast<int>(bytes.size()); ++i)
        value |= static_cast<std::uint32_t>(bytes[static_cast<std::size_t>(offset + i)]) << (8 * i);
    return value;
}

void putText(std::vector<std::uint8_t>& bytes, int offset, int size, const std::string& text)
{
    for (int i = 0; i < size && offset + i < static_cast<int>(bytes.size()); ++i)
        bytes[static_cast<std::size_t>(offset + i)] = i < static_cast<int>(text.size())
            ? static_cast<std::uint8_t>(text[static_cast<std::size_t>(i)])
            : 0;
}

} // namespace

FileStore::FileStore(const MemoryMap& map)
    : map_(map)
    , ram_(map.files.size())
    , flash_(map.files.size())
{
    for (const ParamSpec& p : map.gateway) {
        int size = map.file(p.file)->elementSize();
        gatewayPlaces_.emplace(p.name, Place { p.file, p.index * size, size });
    }
    for (const ParamSpec& p : map.cell) {
        int size = map.file(p.file)->elementSize();
        cellPlaces_.emplace(p.name, Place { p.file, p.index * size, size });
    }
    factoryReset();
}

std::vector<std::uint8_t>& FileStore::bytes(int file)
{
    return ram_.at(static_cast<std::size_t>(file));
}

const std::vector<std::uint8_t>& FileStore::bytes(int file) const
{
    return ram_.at(static_cast<std::size_t>(file));
}

FileStore::Place FileStore::place(std::string_view name, int node) const
{
    const auto& places = node == 0 ? gatewayPlaces_ : cellPlaces_;
    auto it = places.find(std::string(name));
    if (it == places.end())
        throw std::out_of_range("no parameter " + std::string(name));
    Place at = it->second;
    if (node > 0)
        at.offset += (node - 1) * map_.sectionBytes(at.file);
    return at;
}

std::uint32_t FileStore::get(std::string_view name, int node) const
{
    Place at = place(name, node);
    return getLittleEndian(bytes(at.file), at.offset, at.size);
}

void FileStore::set(std::string_view name, std::uint32_t raw, int node)
{
    Place at = place(name, node);
    putLittleEndian(bytes(at.file), at.offset, at.size, raw);
}

void FileStore::setBits(std::string_view name, std::uint16_t mask, bool on, int node)
{
    std::uint32_t value = get(name, node);
    set(name, on ? (value | mask) : (value & ~static_cast<std::uint32_t>(mask)), node);
}

std::uint16_t FileStore::word(int file, int byteOffset) const
{
    return static_cast<std::uint16_t>(getLittleEndian(bytes(file), byteOffset, 2));
}

void FileStore::setWord(int file, int byteOffset, std::uint16_t value)
{
    putLittleEndian(bytes(file), byteOffset, 2, value);
}

void FileStore::writeDefaults(int file)
{
    const FileSpec& spec = map_.files[static_cast<std::size_t>(file)];
    std::vector<std::uint8_t>& image = ram_[static_cast<std::size_t>(file)];
    image.assign(static_cast<std::size_t>(spec.size), 0);
    int size = spec.elementSize();
    for (const ParamSpec& p : map_.gateway) {
        if (p.file != file)
            continue;
        if (p.subType == Text)
            putText(image, p.index * size, size, p.initialText);
        else
            putLittleEndian(
                image, p.index * size, size, static_cast<std::uint32_t>(static_cast<int>(p.initial)));
    }
    int section = map_.sectionBytes(file);
    for (int node = 0; spec.perNode && node < map_.cells; ++node)
        for (const ParamSpec& p : map_.cell)
            if (p.file == file)
                putLittleEndian(image, node * section + p.index * size, size,
                    static_cast<std::uint32_t>(static_cast<int>(p.initial)));
}

void FileStore::factoryReset()
{
    for (const FileSpec& spec : map_.files) {
        writeDefaults(spec.number);
        flash_[static_cast<std::size_t>(spec.number)] = ram_[static_cast<std::size_t>(spec.number)];
    }
}

void FileStore::commit()
{
    for (const FileSpec& spec : map_.files)
        if (spec.persistence == Persistence::Committed)
            flash_[static_cast<std::size_t>(spec.number)] = ram_[static_cast<std::size_t>(spec.number)];
}

void FileStore::restart()
{
    for (const FileSpec& spec : map_.files) {
        auto n = static_cast<std::size_t>(spec.number);
        if (spec.persistence == Persistence::Committed)
            ram_[n] = flash_[n];
        else if (spec.persistence == Persistence::Volatile)
            writeDefaults(spec.number);
    }
}

std::string FileStore::flashText() const
{
    std::string text;
    for (const FileSpec& spec : map_.files) {
        if (spec.persistence == Persistence::Volatile || spec.firmware)
            continue;
        auto n = static_cast<std::size_t>(spec.number);
        const std::vector<std::uint8_t>& image
            = spec.persistence == Persistence::Direct ? ram_[n] : flash_[n];
        text += "F " + std::to_string(spec.number) + " ";
        char hex[3];
        for (std::uint8_t byte : image) {
            std::snprintf(hex, sizeof hex, "%02X", byte);
            text += hex;
        }
        text += "\n";
    }
    return text;
}

void FileStore::loadFlashText(std::string_view text)
{
    std::istringstream lines { std::string(text) };
    std::string tag, hex;
    int file = -1;
    while (lines >> tag) {
        if (tag != "F" || !(lines >> file >> hex))
            continue;
        const FileSpec* spec = map_.file(file);
        if (!spec || spec->persistence == Persistence::Volatile
            || hex.size() != 2 * static_cast<std::size_t>(spec->size))
            continue;
        std::vector<std::uint8_t> image(hex.size() / 2);
        for (std::size_t i = 0; i < image.size(); ++i)
            image[i] = static_cast<std::uint8_t>(std::stoul(hex.substr(2 * i, 2), nullptr, 16));
        auto n = static_cast<std::size_t>(file);
        flash_[n] = image;
        ram_[n] = image;
    }
}

} // namespace zvsim
