#include "frontends/inprocess_endpoint.h"

#include <algorithm>

namespace zvsim {

namespace {

HlkOptions startingNow(HlkOptions options, std::int64_t nowMs)
{
    options.startMs = nowMs;
    return options;
}

} // namespace

InProcessEndpoint::InProcessEndpoint(SmbusTarget& target, NowMs nowMs, Deliver deliver, Options options)
    : nowMs_(std::move(nowMs))
    , deliver_(std::move(deliver))
    , options_(options)
    , dongle_(target, startingNow(options.dongle, nowMs_()))
    , pacer_(options.wirePacing)
    , lastTickMs_(nowMs_())
{
}

void InProcessEndpoint::write(std::string_view bytes)
{
    const std::int64_t now = nowMs_();
    hand(dongle_.receive(bytes, now), now, bytes.size());
}

void InProcessEndpoint::tick()
{
    const std::int64_t now = nowMs_();
    lastTickMs_ = now;
    hand(dongle_.poll(now), now, 0);
}

std::optional<std::int64_t> InProcessEndpoint::nextDueMs() const
{
    if (dongle_.pulled())
        return std::nullopt;
    const std::int64_t nextPoll = lastTickMs_ + options_.pollPeriodMs;
    const auto scheduled = dongle_.nextDueMs();
    return scheduled ? std::min(*scheduled, nextPoll) : nextPoll;
}

void InProcessEndpoint::hand(std::string bytes, std::int64_t nowMs, std::size_t inChars)
{
    if (bytes.empty())
        return;
    const std::int64_t due = pacer_.replyDueMs(nowMs, inChars, bytes.size(), dongle_.lineBaud());
    deliver_(std::move(bytes), due);
}

} // namespace zvsim
