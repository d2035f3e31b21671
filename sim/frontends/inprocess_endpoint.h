#pragma once
// The dongle in-process, for tests of the application on a virtual clock: the embedder writes
// what the host sends and gets the dongle's bytes back through a callback with the virtual time
// at which they are due, so it can deliver them then. No I/O and no real time.

#include "frontends/hlk_dongle.h"
#include "frontends/wire_pacer.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zvsim {

class InProcessEndpoint {
public:
    using NowMs = std::function<std::int64_t()>;
    using Deliver = std::function<void(std::string bytes, std::int64_t dueMs)>;

    struct Options {
        HlkOptions dongle; // its startMs is taken from nowMs() when the endpoint is made
        bool wirePacing = false; // replies take the time their characters need at the line's baud
        std::int64_t pollPeriodMs = 100; // how often tick() should look for the pack's broadcasts
    };

    InProcessEndpoint(SmbusTarget& target, NowMs nowMs, Deliver deliver, Options options);
    InProcessEndpoint(SmbusTarget& target, NowMs nowMs, Deliver deliver)
        : InProcessEndpoint(target, std::move(nowMs), std::move(deliver), Options {})
    {
    }

    // Bytes the host writes now.
    void write(std::string_view bytes);

    // The rate the host's port is set to (19200, 57600, 115200).
    void setLineBaud(int baud) { dongle_.setLineBaud(baud); }

    // Sends what is due on the dongle's own account (alarm broadcasts, the pull).
    void tick();

    // The virtual time at which tick() should run next; nullopt once the pack is pulled.
    [[nodiscard]] std::optional<std::int64_t> nextDueMs() const;

    [[nodiscard]] bool pulled() const { return dongle_.pulled(); }
    [[nodiscard]] int dongleBaud() const { return dongle_.baud(); }
    void setTrace(TraceSink sink) { dongle_.setTrace(std::move(sink)); }

private:
    void hand(std::string bytes, std::int64_t nowMs, std::size_t inChars);

    NowMs nowMs_;
    Deliver deliver_;
    Options options_;
    HlkDongle dongle_;
    WirePacer pacer_;
    std::int64_t lastTickMs_;
};

} // namespace zvsim
