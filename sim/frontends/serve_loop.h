#pragma once
// One poll() over the descriptors of every front end, so that the pseudo-terminal and the USB
// socket serve the same pack from one thread.

#include <poll.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace zvsim {

class Servable {
public:
    virtual ~Servable() = default;

    // Appends the descriptors to wait on.
    virtual void addPollFds(std::vector<pollfd>& fds) const = 0;

    // Handles what poll() found on the descriptors this one added (in the same order), and
    // whatever has become due by nowUs (microseconds).
    virtual void serve(std::span<const pollfd> fds, std::int64_t nowUs) = 0;

    // The next microsecond at which serve() has work without any descriptor becoming ready.
    [[nodiscard]] virtual std::optional<std::int64_t> nextDueUs() const = 0;
};

// Waits until a descriptor is ready, something falls due or maxWaitMs has passed, then serves
// every front end. nowUs is the clock in microseconds, so that a reply paced to the wire goes
// out on its microsecond. Returns false when poll() failed for another reason than a signal.
[[nodiscard]] bool serveOnce(
    std::span<Servable* const> servables, const std::function<std::int64_t()>& nowUs, int maxWaitMs);

} // namespace zvsim
