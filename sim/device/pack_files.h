#pragma once
// What each device file means to the pack: the directory records, access by level, the login file,
// the state words, the command file, log definitions and samples, and the loader's image files.

#include "device/command_file.h"
#include "device/file_protocol.h"
#include "device/pack_model.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zvsim {

class PackFileServer : public FileServer {
public:
    static constexpr int DirectoryFile = 0;
    static constexpr int LoginFile = 3;
    static constexpr int StateFile = 5;
    static constexpr int ConfigFile = 9;
    static constexpr int CommandFileNumber = 27;

    PackFileServer(PackModel& model, CommandFile& commands);

    [[nodiscard]] FileResult acceptRequest(bool write, int file, int offset, int count) override;
    [[nodiscard]] std::vector<std::uint8_t> readData(int file, int offset, int count) override;
    [[nodiscard]] FileResult writeData(
        int file, int offset, int count, std::span<const std::uint8_t> data) override;
    [[nodiscard]] FileResult writeBlock(
        int file, int block, int blocks, std::span<const std::uint8_t> data) override;
    [[nodiscard]] bool isBlockMode(int file) const override;

    // The 32-byte record of one directory entry.
    [[nodiscard]] std::vector<std::uint8_t> directoryRecord(int entry) const;

private:
    [[nodiscard]] bool servedInLoader(int file) const;
    [[nodiscard]] int records(const FileSpec& spec) const;
    [[nodiscard]] FileResult checkLevel(bool write, const FileSpec& spec, int offset, int count) const;
    [[nodiscard]] FileResult writeConfig(int offset, std::span<const std::uint8_t> data);
    void finishImage(int file);

    PackModel& model_;
    CommandFile& commands_;
    std::vector<std::uint8_t> image_; // firmware blocks received so far
};

} // namespace zvsim
