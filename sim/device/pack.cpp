#include "device/pack.h"

#include "device/log_sampler.h"
#include "device/pec.h"
#include "device/state_file.h"

#include <algorithm>
#include <array>

namespace zvsim {

namespace {
constexpr std::uint8_t HostAddress = 0x10;

enum SmbusCommand : std::uint8_t {
    CmdManufacturerAccess = 0x00,
    CmdBatteryMode = 0x03,
    CmdSpecificationInfo = 0x1A,
    CmdFileAccess = 0x3C,
    CmdFileStatus = 0x3D,
    CmdFileWrite = 0x3E,
    CmdFileRead = 0x3F,
    CmdDynamicBlock = 0x80,
    CmdGatewayInfo = 0xEE,
};

// Smart-battery words the pack answers from its files.
const char* sbsWordName(std::uint8_t command)
{
    switch (command) {
    case 0x08:
        return "Temperature";
    case 0x09:
        return "Pack Voltage";
    case 0x0A:
        return "Current";
    case 0x0B:
        return "Average Current";
    case 0x0D:
        return "Relative State of Charge";
    case 0x0F:
        return "Remaining Capacity";
    case 0x10:
        return "Full Charge Capacity";
    case 0x16:
        return "Battery Status";
    case 0x17:
        return "Cycle Count";
    case 0x18:
        return "Design Capacity";
    case 0x19:
        return "Design Voltage";
    case 0x1B:
        return "Manufacture Date";
    case 0x1C:
        return "Serial Number";
    default:
        return nullptr;
    }
}

bool isFileCommand(std::uint8_t command)
{
    return command >= CmdFileAccess && command <= CmdFileRead;
}

std::vector<std::uint8_t> wordsOf(const FileStore& files, int file, int words)
{
    const std::vector<std::uint8_t>& bytes = files.bytes(file);
    return { bytes.begin(),
        bytes.begin() + std::min<std::ptrdiff_t>(2 * words, static_cast<std::ptrdiff_t>(bytes.size())) };
}
} // namespace

Pack::Pack(const PackOptions& options)
    : model_(options)
    , forensics_(model_.files, model_.map.target.averageVoltages)
    , physics_(model_, forensics_)
    , commands_(model_, physics_)
    , server_(model_, commands_)
    , protocol_(server_, faults_)
{
    forensics_.factoryContents(options.seed);
    std::vector<SampleEntry> map = defaultSbdMap(model_.map);
    std::vector<std::uint8_t>& sbd = model_.files.bytes(SbdMapFile);
    sbd[0] = static_cast<std::uint8_t>(map.size());
    for (std::size_t i = 0; i < map.size(); ++i) {
        sbd[2 + 2 * i] = static_cast<std::uint8_t>(map[i].file);
        sbd[3 + 2 * i] = static_cast<std::uint8_t>(map[i].element);
    }
    model_.files.commit();
    if (!options.stateFile.empty())
        (void)loadStateFile(model_, options.stateFile);
    model_.publishState();
}

std::unique_ptr<Pack> makePack(const PackOptions& options)
{
    return std::make_unique<Pack>(options);
}

std::uint16_t Pack::hardwareState() const
{
    switch (model_.state) {
    case PackState::AppLoader:
        return StateAppLoader;
    case PackState::SystemLoader:
        return StateSystemLoader;
    default:
        return StateApplication;
    }
}

bool Pack::transactionLost()
{
    if (silent())
        return true;
    if (faults_.noAckRate > 0) {
        std::uniform_real_distribution<double> roll(0.0, 1.0);
        if (roll(model_.rng) < faults_.noAckRate)
            return true;
    }
    return false;
}

bool Pack::pecMatches(std::span<const std::uint8_t> bytes) const
{
    std::uint8_t crc = smbusPec({ static_cast<std::uint8_t>(address7() << 1) });
    crc = smbusPec(bytes.first(bytes.size() - 1), crc);
    return crc == bytes.back();
}

bool Pack::masterWrite(std::span<const std::uint8_t> bytes)
{
    if (bytes.empty() || transactionLost())
        return false;
    std::uint8_t command = bytes[0];
    bool block = command == CmdFileAccess || command == CmdFileWrite;
    std::size_t expected = block ? (bytes.size() >= 2 ? 2u + bytes[1] : 0u) : 3u;
    if (expected == 0 || (bytes.size() != expected && bytes.size() != expected + 1))
        return false;
    if (bytes.size() == expected + 1 && !pecMatches(bytes))
        return false;
    bool ok = block ? writeBlock(command, bytes.subspan(2, bytes[1]))
                    : writeWord(command, static_cast<std::uint16_t>(bytes[1] | (bytes[2] << 8)));
    persist();
    return ok;
}

bool Pack::writeWord(std::uint8_t command, std::uint16_t value)
{
    if (command == CmdManufacturerAccess) {
        manufacturerAccess(value);
        return true;
    }
    if (isFileCommand(command) || command == CmdDynamicBlock || command == CmdGatewayInfo)
        return false;
    // Other words are taken and kept; those the pack measures read back as measured.
    scratchWords_[command] = value;
    return true;
}

void Pack::manufacturerAccess(std::uint16_t word)
{
    lastMaWord_ = word;
    switch (word) {
    case MaUnlock:
        unlocked_ = true;
        break;
    case MaEnableCommandSet:
        extendedSet_ = unlocked_;
        break;
    case MaDisableCommandSet:
        extendedSet_ = false;
        break;
    case MaLock:
        unlocked_ = false;
        extendedSet_ = false;
        model_.access.lock();
        model_.publishState();
        break;
    default:
        break;
    }
}

void Pack::maybeRestartDuringTransfer()
{
    if (faults_.restartRate <= 0)
        return;
    std::uniform_real_distribution<double> roll(0.0, 1.0);
    if (roll(model_.rng) < faults_.restartRate)
        model_.restart = PendingRestart { model_.nowMs, FaultRestartSilentMs, false, std::nullopt };
}

bool Pack::writeBlock(std::uint8_t command, std::span<const std::uint8_t> data)
{
    if (!extendedSet_)
        return false;
    if (command == CmdFileAccess) {
        if (data.size() != 6)
            return false;
        protocol_.request(data, model_.nowMs);
        maybeRestartDuringTransfer();
    } else {
        protocol_.writeData(data, model_.nowMs);
    }
    if (model_.restart && model_.restart->atMs <= model_.nowMs)
        advanceTo(model_.nowMs);
    return true;
}

bool Pack::readable(std::uint8_t command) const
{
    if (command == CmdManufacturerAccess || command == CmdBatteryMode || command == CmdSpecificationInfo)
        return true;
    bool extended = isFileCommand(command) || command == CmdDynamicBlock || command == CmdGatewayInfo;
    if (extendedSet_ && extended)
        return command == CmdFileStatus || command == CmdFileRead || command == CmdDynamicBlock
            || command == CmdGatewayInfo;
    if (!extendedSet_ && sbdMapWord(model_, command))
        return true;
    return !extended;
}

bool Pack::masterWriteCommand(std::uint8_t command)
{
    if (transactionLost() || !readable(command))
        return false;
    openCommand_ = command;
    return true;
}

std::optional<std::uint16_t> Pack::readWord(std::uint8_t command) const
{
    const FileStore& files = model_.files;
    if (command == CmdManufacturerAccess) {
        if (lastMaWord_ == MaAccessLevel)
            return static_cast<std::uint16_t>(model_.access.level());
        if (lastMaWord_ == MaTargetId)
            return model_.map.target.id;
        return hardwareState();
    }
    if (!extendedSet_) {
        if (std::optional<std::uint16_t> mapped = sbdMapWord(model_, command))
            return mapped;
    }
    if (command == CmdBatteryMode)
        return static_cast<std::uint16_t>(files.get("Battery Mode-Obsolete"));
    if (command == CmdSpecificationInfo)
        return 0x0031; // version 1.1 with PEC, voltage and current scale exponents 0
    if (const char* name = sbsWordName(command))
        return static_cast<std::uint16_t>(files.get(name));
    return scratchWords_[command];
}

std::optional<std::vector<std::uint8_t>> Pack::readBlock(std::uint8_t command) const
{
    std::vector<std::uint8_t> data;
    if (command == CmdFileRead)
        data = protocol_.readData();
    else if (command == CmdDynamicBlock)
        data = wordsOf(model_.files, 1, 8);
    else if (command == CmdGatewayInfo)
        data = wordsOf(model_.files, 11, 21);
    else
        return std::nullopt;
    data.insert(data.begin(), static_cast<std::uint8_t>(data.size()));
    return data;
}

std::optional<std::vector<std::uint8_t>> Pack::masterRead(int count)
{
    if (transactionLost())
        return std::nullopt;
    std::vector<std::uint8_t> payload;
    if (extendedSet_ && openCommand_ == CmdFileStatus) {
        std::array<std::uint8_t, 2> status = protocol_.status(model_.nowMs);
        payload.assign(status.begin(), status.end());
    } else if (std::optional<std::vector<std::uint8_t>> block
        = extendedSet_ ? readBlock(openCommand_) : std::nullopt) {
        payload = *block;
    } else if (std::optional<std::uint16_t> word = readWord(openCommand_)) {
        payload = { static_cast<std::uint8_t>(*word & 0xFF), static_cast<std::uint8_t>(*word >> 8) };
    } else {
        return std::nullopt;
    }
    std::uint8_t writeAddress = static_cast<std::uint8_t>(address7() << 1);
    std::uint8_t crc = smbusPec({ writeAddress, openCommand_, static_cast<std::uint8_t>(writeAddress + 1) });
    payload.push_back(smbusPec(payload, crc));
    if (count > 0)
        payload.resize(static_cast<std::size_t>(count), 0xFF);
    return payload;
}

std::optional<std::vector<std::uint8_t>> Pack::takeAlarmBroadcast()
{
    if (model_.alarmBroadcasts.empty() || silent())
        return std::nullopt;
    std::uint16_t word = model_.alarmBroadcasts.front();
    model_.alarmBroadcasts.pop_front();
    auto low = static_cast<std::uint8_t>(word & 0xFF);
    auto high = static_cast<std::uint8_t>(word >> 8);
    return std::vector<std::uint8_t> { address7(), low, high,
        smbusPec({ HostAddress, address7(), low, high }) };
}

void Pack::queueAlarm()
{
    model_.alarmBroadcasts.push_back(static_cast<std::uint16_t>(model_.files.get("Battery Status")));
}

void Pack::powerCycle(std::int64_t silentMs)
{
    performRestart(PendingRestart { model_.nowMs, silentMs, false, std::nullopt });
}

void Pack::performRestart(const PendingRestart& restart)
{
    if (restart.state)
        model_.state = *restart.state;
    model_.files.restart();
    model_.access.lock();
    model_.dataFlow = true;
    model_.wiredArmed = false;
    model_.calibrationCell = 0;
    model_.safeDisconnectUntilMs = -1;
    if (restart.relearn)
        physics_.relearn();
    protocol_.reset();
    unlocked_ = false;
    extendedSet_ = false;
    lastMaWord_ = MaDisableCommandSet;
    silentUntilMs_ = restart.atMs + restart.silentMs;
    model_.publishState();
    persist();
}

void Pack::advanceTo(std::int64_t ms)
{
    model_.nowMs = std::max(model_.nowMs, ms);
    if (model_.restart && model_.restart->atMs <= model_.nowMs) {
        PendingRestart restart = *model_.restart;
        model_.restart.reset();
        performRestart(restart);
    }
    if (model_.safeDisconnectUntilMs >= 0 && model_.nowMs >= model_.safeDisconnectUntilMs) {
        model_.safeDisconnectUntilMs = -1;
        model_.files.setBits("Internal Flags 2", 0x0002, false);
    }
    if (!model_.inLoader())
        physics_.advanceTo(model_.nowMs);
}

void Pack::persist()
{
    if (!model_.flashDirty)
        return;
    model_.flashDirty = false;
    if (!model_.options.stateFile.empty())
        (void)saveStateFile(model_, model_.options.stateFile);
}

} // namespace zvsim
