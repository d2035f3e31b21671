#include "device/file_protocol.h"

namespace zvsim {

FileProtocol::FileProtocol(FileServer& server, DeviceFaults& faults)
    : server_(server)
    , faults_(faults)
{
}

void FileProtocol::reset()
{
    open_ = Open::None;
    readData_.clear();
    status_ = StatusOk;
    extra_ = 0;
    busyUntilMs_ = 0;
    busyPollsLeft_ = 0;
}

void FileProtocol::finish(const FileResult& result, std::int64_t nowMs)
{
    status_ = result.status;
    busyUntilMs_ = nowMs + result.busyMs;
    busyPollsLeft_ = faults_.busyPolls;
    if (faults_.forcedStatus >= 0) {
        status_ = static_cast<std::uint8_t>(faults_.forcedStatus);
        faults_.forcedStatus = -1;
    }
    if (status_ != StatusOk)
        open_ = Open::None;
}

void FileProtocol::request(std::span<const std::uint8_t> fields, std::int64_t nowMs)
{
    readData_.clear();
    open_ = Open::None;
    int access = fields[0];
    file_ = fields[1];
    offset_ = fields[2] | (fields[3] << 8);
    count_ = fields[4] | (fields[5] << 8);
    blocksDone_ = 0;
    FileResult result { StatusCannotDo, 0, 0 };
    if (access == 0 || access == 1)
        result = server_.acceptRequest(access == 1, file_, offset_, count_);
    extra_ = result.extra;
    if (result.status == StatusOk) {
        if (access == 0) {
            open_ = Open::Read;
            readData_ = server_.readData(file_, offset_, count_);
        } else {
            open_ = server_.isBlockMode(file_) ? Open::Block : Open::Write;
        }
    }
    finish(result, nowMs);
}

std::array<std::uint8_t, 2> FileProtocol::status(std::int64_t nowMs)
{
    if (busyPollsLeft_ > 0) {
        --busyPollsLeft_;
        return { StatusBusy, extra_ };
    }
    if (nowMs < busyUntilMs_)
        return { StatusBusy, extra_ };
    return { status_, extra_ };
}

void FileProtocol::writeData(std::span<const std::uint8_t> data, std::int64_t nowMs)
{
    if (open_ == Open::Write) {
        open_ = Open::None;
        finish(server_.writeData(file_, offset_, count_, data), nowMs);
    } else if (open_ == Open::Block) {
        int block = blocksDone_++;
        FileResult result = server_.writeBlock(file_, block, count_, data);
        if (blocksDone_ >= count_)
            open_ = Open::None;
        finish(result, nowMs);
    } else {
        finish({ StatusCannotDo, 0, 0 }, nowMs);
    }
}

} // namespace zvsim
