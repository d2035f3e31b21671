#include "frontends/serve_loop.h"

#include <algorithm>
#include <cerrno>

namespace zvsim {

bool serveOnce(
    std::span<Servable* const> servables, const std::function<std::int64_t()>& nowUs, int maxWaitMs)
{
    std::vector<pollfd> fds;
    std::vector<std::size_t> firsts;
    std::int64_t waitUs = std::int64_t { maxWaitMs } * 1000;
    const std::int64_t start = nowUs();
    for (const Servable* servable : servables) {
        firsts.push_back(fds.size());
        servable->addPollFds(fds);
        if (const auto due = servable->nextDueUs())
            waitUs = std::clamp<std::int64_t>(*due - start, 0, waitUs);
    }
    firsts.push_back(fds.size());
    const timespec timeout { static_cast<time_t>(waitUs / 1'000'000),
        static_cast<long>(waitUs % 1'000'000) * 1000 };
    const int ready = ::ppoll(fds.data(), fds.size(), &timeout, nullptr);
    if (ready < 0 && errno != EINTR)
        return false;
    if (ready < 0)
        for (auto& fd : fds)
            fd.revents = 0;
    const std::int64_t now = nowUs();
    for (std::size_t i = 0; i < servables.size(); ++i)
        servables[i]->serve(std::span(fds).subspan(firsts[i], firsts[i + 1] - firsts[i]), now);
    return true;
}

} // namespace zvsim
