#include "frontends/serve_loop.h"

#include <algorithm>
#include <cerrno>

namespace zvsim {

bool serveOnce(
    std::span<Servable* const> servables, const std::function<std::int64_t()>& nowMs, int maxWaitMs)
{
    std::vector<pollfd> fds;
    std::vector<std::size_t> firsts;
    std::int64_t waitMs = maxWaitMs;
    const std::int64_t start = nowMs();
    for (const Servable* servable : servables) {
        firsts.push_back(fds.size());
        servable->addPollFds(fds);
        if (const auto due = servable->nextDueMs())
            waitMs = std::clamp<std::int64_t>(*due - start, 0, waitMs);
    }
    firsts.push_back(fds.size());
    const int ready = ::poll(fds.data(), fds.size(), static_cast<int>(waitMs));
    if (ready < 0 && errno != EINTR)
        return false;
    if (ready < 0)
        for (auto& fd : fds)
            fd.revents = 0;
    const std::int64_t now = nowMs();
    for (std::size_t i = 0; i < servables.size(); ++i)
        servables[i]->serve(std::span(fds).subspan(firsts[i], firsts[i + 1] - firsts[i]), now);
    return true;
}

} // namespace zvsim
