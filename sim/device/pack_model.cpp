#include "device/pack_model.h"

namespace zvsim {

namespace {

int cellsOf(const PackOptions& opts)
{
    return opts.cells > 0 ? opts.cells : targetProfile(opts.targetId).defaultCells;
}

int powerOnLevel(const PackOptions& opts)
{
    return opts.sealed ? 0 : opts.level;
}

} // namespace

PackModel::PackModel(const PackOptions& opts)
    : options(opts)
    , map(buildMemoryMap(targetProfile(opts.targetId), cellsOf(opts)))
    , files(map)
    , access(files, powerOnLevel(opts))
    , state(opts.state)
    , rng(opts.seed)
{
    firmware.application = state == PackState::Application ? map.target.firmwareVersion : 0;
    firmware.build = map.target.firmwareBuild;
    firmware.data = state == PackState::SystemLoader ? 0 : 100;
    factoryPasswords();
    publishState();
}

void PackModel::factoryPasswords()
{
    access.setPassword(1, "user");
    access.setPassword(2, options.password.empty() ? "engineer" : options.password);
    std::vector<std::uint8_t>& records = files.bytes(AccessControl::PasswordFile);
    std::fill(records.begin() + 2 * AccessControl::RecordBytes, records.end(), 0xFF);
}

void PackModel::publishState()
{
    files.set("Access Level", static_cast<std::uint32_t>(access.level()));
    files.set("Firmware Version", static_cast<std::uint32_t>(firmware.application));
    files.set("FW Build", static_cast<std::uint32_t>(firmware.build));
    files.set("Application F File Version", static_cast<std::uint32_t>(firmware.application));
    files.set("F File Version", static_cast<std::uint32_t>(firmware.data));
    files.set("System Status", state == PackState::Application ? 0x0001u : 0x8000u);
    files.setBits("Internal Flags 2", 0x0004, !dataFlow);
}

} // namespace zvsim
