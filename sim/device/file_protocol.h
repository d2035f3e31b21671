#pragma once
// The device side of the file protocol: the request block of command 0x3C, the status word of
// 0x3D with its busy periods, and the data of 0x3E and 0x3F, in plain and in block mode.

#include "device/smbus_target.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace zvsim {

// Status codes the pack gives.
enum FileStatus : std::uint8_t {
    StatusOk = 0,
    StatusNoSuchFile = 4,
    StatusCannotDo = 5,
    StatusTooLarge = 6,
    StatusCrcFailed = 7,
    StatusImageAccepted = 8,
    StatusBadAddress = 9,
    StatusReadOnly = 15,
    StatusBusy = 255,
};

struct FileResult {
    std::uint8_t status = StatusOk;
    std::uint8_t extra = 0;
    std::int64_t busyMs = 0;
};

// What the files mean; the protocol only sequences them.
class FileServer {
public:
    virtual ~FileServer() = default;
    [[nodiscard]] virtual FileResult acceptRequest(bool write, int file, int offset, int count) = 0;
    [[nodiscard]] virtual std::vector<std::uint8_t> readData(int file, int offset, int count) = 0;
    [[nodiscard]] virtual FileResult writeData(
        int file, int offset, int count, std::span<const std::uint8_t> data)
        = 0;
    // One block of a block-mode transfer; the last one ends with the image's verdict.
    [[nodiscard]] virtual FileResult writeBlock(
        int file, int block, int blocks, std::span<const std::uint8_t> data)
        = 0;
    [[nodiscard]] virtual bool isBlockMode(int file) const = 0;
};

class FileProtocol {
public:
    FileProtocol(FileServer& server, DeviceFaults& faults);

    // The six bytes of the request block after its byte count.
    void request(std::span<const std::uint8_t> fields, std::int64_t nowMs);
    // Status and extra byte; 255 while the device is busy.
    [[nodiscard]] std::array<std::uint8_t, 2> status(std::int64_t nowMs);
    // The data of the open read, or nothing.
    [[nodiscard]] std::vector<std::uint8_t> readData() const { return readData_; }
    // One data block of the open write.
    void writeData(std::span<const std::uint8_t> data, std::int64_t nowMs);
    // Forgets any open transfer (a restart).
    void reset();

private:
    enum class Open { None, Read, Write, Block };
    void finish(const FileResult& result, std::int64_t nowMs);

    FileServer& server_;
    DeviceFaults& faults_;
    Open open_ = Open::None;
    int file_ = 0, offset_ = 0, count_ = 0, blocksDone_ = 0;
    std::uint8_t status_ = StatusOk;
    std::uint8_t extra_ = 0;
    std::int64_t busyUntilMs_ = 0;
    int busyPollsLeft_ = 0;
    std::vector<std::uint8_t> readData_;
};

} // namespace zvsim
