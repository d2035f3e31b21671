#include "packsim/packsim_options.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>

namespace zvsim {

namespace {

std::optional<long long> parseInteger(std::string_view text, int base = 10)
{
    if (base == 16 && (text.starts_with("0x") || text.starts_with("0X")))
        text.remove_prefix(2);
    else if (base == 10 && (text.starts_with("0x") || text.starts_with("0X")))
        return parseInteger(text, 16);
    long long value = 0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value, base);
    if (text.empty() || ec != std::errc() || ptr != end)
        return std::nullopt;
    return value;
}

// Seconds from 0 to a year: "inf", "nan" and larger numbers would overflow the milliseconds.
std::optional<double> parseSeconds(std::string_view text)
{
    double value = 0.0;
    const char* end = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (text.empty() || ec != std::errc() || ptr != end || !std::isfinite(value) || value < 0.0
        || value > kMaxFaultSeconds)
        return std::nullopt;
    return value;
}

std::string stateName(PackState state)
{
    switch (state) {
    case PackState::Application:
        return "app";
    case PackState::SystemLoader:
        return "system-loader";
    case PackState::AppLoader:
        return "app-loader";
    }
    return "?";
}

// An option that takes a value: stores it into the options, or returns an error text.
using ValueOption = std::function<std::string(std::string_view, PackSimOptions&)>;

std::string inRange(
    std::string_view name, std::optional<long long> value, long long low, long long high, long long& out)
{
    if (!value || *value < low || *value > high)
        return std::string(name) + " needs a number from " + std::to_string(low) + " to "
            + std::to_string(high);
    out = *value;
    return {};
}

const std::map<std::string_view, ValueOption>& valueOptions()
{
    static const std::map<std::string_view, ValueOption> options {
        { "--target",
            [](std::string_view text, PackSimOptions& o) {
                long long id = 0;
                auto error = inRange("--target (hexadecimal)", parseInteger(text, 16), 0, 0xFFFF, id);
                o.pack.targetId = static_cast<std::uint16_t>(id);
                return error;
            } },
        { "--cells",
            [](std::string_view text, PackSimOptions& o) {
                long long cells = 0;
                auto error = inRange("--cells", parseInteger(text), 1, 16, cells);
                o.pack.cells = static_cast<int>(cells);
                return error;
            } },
        { "--level",
            [](std::string_view text, PackSimOptions& o) {
                long long level = 0;
                auto error = inRange("--level", parseInteger(text), 0, 3, level);
                o.pack.level = static_cast<int>(level);
                return error;
            } },
        { "--address",
            [](std::string_view text, PackSimOptions& o) {
                long long address = 0;
                auto error = inRange("--address (7-bit)", parseInteger(text), 1, 0x7F, address);
                o.pack.address7 = static_cast<std::uint8_t>(address);
                return error;
            } },
        { "--seed",
            [](std::string_view text, PackSimOptions& o) {
                long long seed = 0;
                auto error = inRange("--seed", parseInteger(text), 0, 0xFFFFFFFFLL, seed);
                o.pack.seed = static_cast<std::uint32_t>(seed);
                return error;
            } },
        { "--password",
            [](std::string_view text, PackSimOptions& o) {
                o.pack.password = std::string(text);
                return std::string();
            } },
        { "--state",
            [](std::string_view text, PackSimOptions& o) {
                for (PackState state :
                    { PackState::Application, PackState::SystemLoader, PackState::AppLoader })
                    if (text == stateName(state)) {
                        o.pack.state = state;
                        return std::string();
                    }
                return std::string("--state needs app, system-loader or app-loader");
            } },
        { "--state-file",
            [](std::string_view text, PackSimOptions& o) {
                o.pack.stateFile = std::string(text);
                return std::string();
            } },
        { "--link",
            [](std::string_view text, PackSimOptions& o) {
                o.link = std::string(text);
                o.pty = true;
                return std::string();
            } },
        { "--usb-socket",
            [](std::string_view text, PackSimOptions& o) {
                o.usbSocket = std::string(text);
                return std::string();
            } },
        { "--faults",
            [](std::string_view text, PackSimOptions& o) {
                auto parsed = parseFaultList(text);
                o.faults = parsed.plan;
                return parsed.error;
            } },
        { "--alarm-every",
            [](std::string_view text, PackSimOptions& o) {
                const auto seconds = parseSeconds(text);
                if (!seconds)
                    return std::string("--alarm-every needs seconds from 0 to 31536000");
                o.pack.alarmPeriodMs = static_cast<std::int64_t>(*seconds * 1000.0);
                return std::string();
            } },
    };
    return options;
}

const std::map<std::string_view, bool PackSimOptions::*>& switchOptions()
{
    static const std::map<std::string_view, bool PackSimOptions::*> switches {
        { "--pty", &PackSimOptions::pty },
        { "--wire-pacing", &PackSimOptions::wirePacing },
        { "--any-baud", &PackSimOptions::anyBaud },
        { "--trace", &PackSimOptions::trace },
        { "--help", &PackSimOptions::help },
    };
    return switches;
}

} // namespace

PackSimArgs parsePackSimArgs(std::span<const std::string_view> args)
{
    PackSimArgs result;
    PackSimOptions& options = result.options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string_view arg = args[i];
        if (arg == "--sealed") {
            options.pack.sealed = true;
            continue;
        }
        if (const auto found = switchOptions().find(arg); found != switchOptions().end()) {
            options.*(found->second) = true;
            continue;
        }
        const auto found = valueOptions().find(arg);
        if (found == valueOptions().end()) {
            result.error = "unknown option '" + std::string(arg) + "' (try --help)";
            return result;
        }
        if (i + 1 == args.size()) {
            result.error = std::string(arg) + " needs a value";
            return result;
        }
        result.error = found->second(args[++i], options);
        if (!result.error.empty())
            return result;
    }
    if (!options.pty && options.usbSocket.empty())
        options.pty = true;
    return result;
}

std::string packSimUsage()
{
    return R"(Usage: zentavia-packsim [options]
A simulated battery pack behind an HLK dongle (pseudo-terminal) and/or a USB adapter (socket).

  --target ID          target id in hexadecimal: 1001, 1002, 1003 or any other (default 1001)
  --cells N            number of cells, 1 to 16 (default: the target's own)
  --level N            access level at power-on, 0 to 3 (default 3)
  --sealed             start sealed (level 0)
  --password TEXT      the level password the pack accepts
  --state S            app, system-loader or app-loader (default app)
  --state-file PATH    keep the pack's flash in this file across runs
  --address N          7-bit SMBus address (default 0x0B)
  --pty                serve the HLK dongle on a pseudo-terminal (the default)
  --link PATH          also make PATH a symbolic link to the pseudo-terminal (implies --pty)
  --usb-socket PATH    serve the USB adapter on a Unix socket at PATH
  --wire-pacing        replies take the time their characters need at the line's baud rate,
                       the USB adapter's the time of their SMBus transactions at 100 kHz
  --any-baud           answer at any baud rate the host sets
  --faults LIST        faults, e.g. pec:0.05,lost:0.01,busy:3,status:9,stuck:0.01,pull:120
                       rates 0..1: pec lost cut stuck alarm noack restart;
                       busy:N polls, status:CODE, pull:SECONDS after the start
  --alarm-every S      the pack broadcasts its alarm word every S seconds
  --seed N             seed of the physics and of the faults (default 1)
  --trace              print every line in and out
  --help               this text
Runs until stopped with Ctrl-C (SIGINT) or SIGTERM.
)";
}

std::string describePack(const PackSimOptions& options)
{
    char id[8];
    std::snprintf(id, sizeof id, "%04X", options.pack.targetId);
    char address[8];
    std::snprintf(address, sizeof address, "0x%02X", options.pack.address7);
    std::string text = "zentavia-packsim: target " + std::string(id) + ", ";
    text += options.pack.cells > 0 ? std::to_string(options.pack.cells) + " cells" : "the target's cells";
    text
        += ", " + std::string(options.pack.sealed ? "sealed" : "level " + std::to_string(options.pack.level));
    text += ", state " + stateName(options.pack.state) + ", address " + address + "\n";
    text += "  faults: " + describeFaults(options.faults);
    text += options.wirePacing ? ", wire pacing on" : "";
    if (options.pack.alarmPeriodMs > 0) {
        char period[32];
        std::snprintf(period, sizeof period, ", alarm every %g s", options.pack.alarmPeriodMs / 1000.0);
        text += period;
    }
    text += ", seed " + std::to_string(options.pack.seed) + "\n";
    if (!options.pack.stateFile.empty())
        text += "  flash kept in " + options.pack.stateFile + "\n";
    return text;
}

} // namespace zvsim
