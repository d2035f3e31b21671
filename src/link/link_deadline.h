#pragma once
// One deadline over a whole device operation. The retry ladders of the link (eleven attempts,
// each with its reply wait, then a rebuild of the link) multiply: without a bound over all of
// them a dead or hostile endpoint keeps a request alive for minutes. An operation opens a scope
// with its limit; every wait and every attempt below it gives up once the deadline has passed.

#include <algorithm>
#include <cstdint>
#include <optional>

namespace zv {

class LinkDeadline {
public:
    // True when a deadline is set and now is at or past it.
    [[nodiscard]] bool expired(std::int64_t nowMs) const { return at_ && nowMs >= *at_; }
    // Milliseconds left, capped at limitMs; limitMs when no deadline is set.
    [[nodiscard]] int remaining(std::int64_t nowMs, int limitMs) const
    {
        if (!at_)
            return limitMs;
        return static_cast<int>(std::clamp<std::int64_t>(*at_ - nowMs, 0, limitMs));
    }
    [[nodiscard]] bool set() const { return at_.has_value(); }

    // Sets the deadline nowMs + limitMs for its lifetime; a scope inside another keeps the earlier
    // of the two.
    class Scope {
    public:
        Scope(LinkDeadline& deadline, std::int64_t nowMs, int limitMs)
            : deadline_(deadline)
            , saved_(deadline.at_)
        {
            const std::int64_t at = nowMs + limitMs;
            deadline_.at_ = saved_ ? std::min(*saved_, at) : at;
        }
        ~Scope() { deadline_.at_ = saved_; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        LinkDeadline& deadline_;
        std::optional<std::int64_t> saved_;
    };

private:
    std::optional<std::int64_t> at_;
};

} // namespace zv
