#pragma once
// The dongle on a pseudo-terminal: the host opens the printed device path as its serial port.
// Keeps a descriptor of the slave side open itself, so that the host may close and reopen the
// port as often as it likes; pulling the pack closes the pseudo-terminal for good.

#include "frontends/hlk_dongle.h"
#include "frontends/serve_loop.h"
#include "frontends/wire_pacer.h"

#include <cstdint>
#include <deque>
#include <string>
#include <utility>

namespace zvsim {

class PtyFrontEnd : public Servable {
public:
    PtyFrontEnd(HlkDongle& dongle, bool wirePacing);
    ~PtyFrontEnd() override;
    PtyFrontEnd(const PtyFrontEnd&) = delete;
    PtyFrontEnd& operator=(const PtyFrontEnd&) = delete;

    // Opens the pseudo-terminal in raw mode at 19200 baud. Returns an error text, empty on success.
    [[nodiscard]] std::string open();

    // Makes path a symbolic link to the device (replacing an older link there). Error text or empty.
    [[nodiscard]] std::string makeLink(const std::string& path);

    [[nodiscard]] const std::string& devicePath() const { return devicePath_; }
    [[nodiscard]] bool isOpen() const { return master_ >= 0; }

    // Closes the pseudo-terminal and removes the link.
    void close();

    void addPollFds(std::vector<pollfd>& fds) const override;
    void serve(std::span<const pollfd> fds, std::int64_t nowUs) override;
    [[nodiscard]] std::optional<std::int64_t> nextDueUs() const override;

private:
    static constexpr std::int64_t kBroadcastPollMs = 100;

    void readFromHost(std::int64_t nowUs);
    void queue(std::string bytes, std::int64_t nowUs, std::size_t inChars);
    void writeDue(std::int64_t nowUs);
    [[nodiscard]] int currentLineBaud() const;

    HlkDongle& dongle_;
    WirePacer pacer_;
    int master_ = -1;
    int slave_ = -1;
    std::string devicePath_;
    std::string linkPath_;
    std::deque<std::pair<std::int64_t, std::string>> pending_; // due microsecond, bytes
    std::int64_t lastBroadcastPollMs_ = 0;
};

// The baud rate of a termios speed constant; 0 for one this table does not know.
[[nodiscard]] int baudOfSpeed(unsigned speed);

} // namespace zvsim
