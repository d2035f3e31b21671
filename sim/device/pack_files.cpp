#include "device/pack_files.h"

#include "device/firmware_image.h"
#include "device/log_sampler.h"

#include <algorithm>

namespace zvsim {

namespace {
constexpr std::uint16_t WiredBit = 0x0008;
constexpr std::int64_t RequestBusyMs = 2;
constexpr std::int64_t FlashBusyMs = 20;
constexpr std::int64_t ImageRestartMs = 3000;
constexpr std::int64_t ImageSilentMs = 6000;
} // namespace

PackFileServer::PackFileServer(PackModel& model, CommandFile& commands)
    : model_(model)
    , commands_(commands)
{
}

bool PackFileServer::isBlockMode(int file) const
{
    const FileSpec* spec = model_.map.file(file);
    return spec && spec->firmware;
}

bool PackFileServer::servedInLoader(int file) const
{
    return file == DirectoryFile || file == LoginFile || file == StateFile || file == CommandFileNumber
        || file == AccessControl::PasswordFile || isBlockMode(file);
}

int PackFileServer::records(const FileSpec& spec) const
{
    int length = spec.size / spec.chunk;
    // The log definition holds its count word besides the largest number of entries.
    return spec.number == LogDefinitionFile ? length + 1 : length;
}

FileResult PackFileServer::checkLevel(bool write, const FileSpec& spec, int offset, int count) const
{
    int level = model_.access.level();
    if (model_.inLoader() && isBlockMode(spec.number))
        return {};
    if (!write) {
        if (level < spec.readLevel)
            return { static_cast<std::uint8_t>(std::min(spec.readLevel, 3)), 0, 0 };
        return {};
    }
    if (spec.writeLevel == 15)
        return { StatusReadOnly, 0, 0 };
    int needed = spec.writeLevel;
    if (spec.number == AccessControl::PasswordFile)
        needed = std::max(needed, offset + count); // a level's record needs that level
    if (level < needed)
        return { static_cast<std::uint8_t>(std::min(needed, 3)), 0, 0 };
    return {};
}

FileResult PackFileServer::acceptRequest(bool write, int file, int offset, int count)
{
    const FileSpec* spec = model_.map.file(file);
    if (!spec || (model_.inLoader() && !servedInLoader(file)))
        return { StatusNoSuchFile, 0, 0 };
    FileResult level = checkLevel(write, *spec, offset, count);
    if (level.status != StatusOk)
        return level;
    if (write && spec->firmware) {
        image_.clear();
        return { StatusOk, 2, RequestBusyMs };
    }
    if (count * spec->chunk > spec->maxBytes)
        return { StatusTooLarge, 0, 0 };
    if (offset + count > records(*spec))
        return { StatusBadAddress, 0, 0 };
    bool slowWrite = write && (spec->persistence == Persistence::Direct || file == CommandFileNumber);
    return { StatusOk, static_cast<std::uint8_t>(slowWrite ? 1 : 0), RequestBusyMs };
}

std::vector<std::uint8_t> PackFileServer::directoryRecord(int entry) const
{
    const FileSpec& spec = model_.map.files[static_cast<std::size_t>(entry)];
    std::vector<std::uint8_t> record(static_cast<std::size_t>(model_.map.files[0].chunk), 0);
    std::copy_n(spec.name.begin(), std::min<std::size_t>(11, spec.name.size()), record.begin());
    auto put = [&](int at, int value) {
        record[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(value & 0xFF);
        record[static_cast<std::size_t>(at + 1)] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
    };
    put(11, spec.fileAccess());
    put(13, spec.fileType());
    put(15, spec.size);
    put(17, spec.chunk);
    put(19, spec.location);
    put(21, spec.version);
    put(23, spec.maxBytes);
    return record;
}

std::vector<std::uint8_t> PackFileServer::readData(int file, int offset, int count)
{
    const FileSpec& spec = *model_.map.file(file);
    std::vector<std::uint8_t> whole;
    if (file == DirectoryFile) {
        for (std::size_t entry = 0; entry < model_.map.files.size(); ++entry) {
            std::vector<std::uint8_t> record = directoryRecord(static_cast<int>(entry));
            whole.insert(whole.end(), record.begin(), record.end());
        }
    } else if (file == LoginFile) {
        whole.assign(static_cast<std::size_t>(spec.size), 0); // the login is never read back
    } else if (file == LogSampleFile) {
        whole = composeLogSample(model_);
    } else {
        if (file == StateFile)
            model_.publishState();
        whole = model_.files.bytes(file);
    }
    auto from = static_cast<std::size_t>(offset * spec.chunk);
    auto to = std::min(whole.size(), from + static_cast<std::size_t>(count * spec.chunk));
    std::vector<std::uint8_t> data(whole.begin() + static_cast<std::ptrdiff_t>(std::min(from, whole.size())),
        whole.begin() + static_cast<std::ptrdiff_t>(to));
    if (file == StateFile)
        model_.files.setBits("Internal Flags 2", 0x2000, false); // a finished CellWeft poll is told once
    return data;
}

FileResult PackFileServer::writeConfig(int offset, std::span<const std::uint8_t> data)
{
    // The wired bit of "Algorithm Enable" (word 0) changes only after the wired command.
    if (offset == 0 && data.size() >= 2) {
        std::uint16_t now = static_cast<std::uint16_t>(model_.files.get("Algorithm Enable"));
        std::uint16_t next = static_cast<std::uint16_t>(data[0] | (data[1] << 8));
        bool changesWired = ((now ^ next) & WiredBit) != 0;
        if (changesWired && !model_.wiredArmed)
            return { StatusCannotDo, 0, 0 };
        model_.wiredArmed = false;
    }
    std::vector<std::uint8_t>& bytes = model_.files.bytes(ConfigFile);
    std::copy(data.begin(), data.end(), bytes.begin() + offset * 2);
    return { StatusOk, 0, RequestBusyMs };
}

FileResult PackFileServer::writeData(int file, int offset, int count, std::span<const std::uint8_t> data)
{
    const FileSpec& spec = *model_.map.file(file);
    if (file == CommandFileNumber) {
        // A command is its word and argument; bytes beyond them (the rebuild request sends six)
        // are taken and ignored.
        if (count != 2 || offset != 0 || data.size() < 4)
            return { StatusCannotDo, 0, 0 };
        std::copy_n(data.begin(), 4, model_.files.bytes(file).begin());
        return commands_.execute(static_cast<std::uint16_t>(data[0] | (data[1] << 8)),
            static_cast<std::uint16_t>(data[2] | (data[3] << 8)));
    }
    if (static_cast<int>(data.size()) != count * spec.chunk)
        return { StatusCannotDo, 0, 0 };
    if (file == LoginFile) {
        (void)model_.access.login(data);
        model_.publishState();
        return { StatusOk, 0, FlashBusyMs };
    }
    if (file == ConfigFile)
        return writeConfig(offset, data);
    if (file == LogDefinitionFile && (data[0] | (data[1] << 8)) > spec.size / spec.chunk)
        return { StatusTooLarge, 0, 0 };
    std::vector<std::uint8_t>& bytes = model_.files.bytes(file);
    // The log definition's count word comes on top of its largest number of entries.
    const auto end = static_cast<std::size_t>(offset * spec.chunk) + data.size();
    if (file == LogDefinitionFile && bytes.size() < end)
        bytes.resize(end, 0);
    std::copy(data.begin(), data.end(), bytes.begin() + offset * spec.chunk);
    if (spec.persistence == Persistence::Direct) {
        model_.flashDirty = true;
        return { StatusOk, 0, FlashBusyMs };
    }
    return { StatusOk, 0, RequestBusyMs };
}

FileResult PackFileServer::writeBlock(int file, int block, int blocks, std::span<const std::uint8_t> data)
{
    const FileSpec& spec = *model_.map.file(file);
    if (image_.size() + data.size() > static_cast<std::size_t>(spec.size))
        return { StatusTooLarge, 0, 0 };
    image_.insert(image_.end(), data.begin(), data.end());
    if (block + 1 < blocks)
        return { StatusOk, 2, FlashBusyMs };
    std::optional<FirmwareSection> section = checkFirmwareSection(image_);
    std::vector<std::uint8_t>& bytes = model_.files.bytes(file);
    std::fill(bytes.begin(), bytes.end(), 0);
    std::copy(image_.begin(), image_.end(), bytes.begin());
    if (file == 2) {
        model_.firmware.application = section ? section->version : 0;
        model_.firmware.build = section ? section->build : 0;
    } else {
        model_.firmware.data = section ? section->version : 0;
    }
    bool bothGood = model_.firmware.application != 0 && model_.firmware.data != 0;
    model_.flashDirty = true;
    model_.restart = PendingRestart { model_.nowMs + ImageRestartMs, ImageSilentMs, false,
        bothGood ? PackState::Application : PackState::AppLoader };
    image_.clear();
    return { static_cast<std::uint8_t>(section ? StatusImageAccepted : StatusCrcFailed), 2, FlashBusyMs };
}

} // namespace zvsim
