#pragma once
// The USB adapter endpoint on a Unix stream socket: each connection sends request lines and
// gets one answer line each (the protocol of usb_adapter.h). Pulling the pack closes it all.

#include "frontends/hlk_dongle.h"
#include "frontends/serve_loop.h"
#include "frontends/usb_adapter.h"

#include <deque>
#include <string>
#include <vector>

namespace zvsim {

class UsbSocketServer : public Servable {
public:
    // wirePacing: each answer goes out when its SMBus transaction would have ended.
    explicit UsbSocketServer(UsbAdapter& adapter, bool wirePacing = false)
        : adapter_(adapter)
        , pacing_(wirePacing)
    {
    }
    ~UsbSocketServer() override;
    UsbSocketServer(const UsbSocketServer&) = delete;
    UsbSocketServer& operator=(const UsbSocketServer&) = delete;

    // Listens at path (an old socket file there is replaced). Error text, empty on success.
    [[nodiscard]] std::string listen(const std::string& path);

    // Serves an already connected descriptor (one end of a socketpair, for instance).
    void adopt(int fd);

    [[nodiscard]] bool isOpen() const { return listener_ >= 0 || !clients_.empty(); }
    [[nodiscard]] std::size_t clientCount() const { return clients_.size(); }
    void close();

    // Every request line in and every answer out.
    void setTrace(TraceSink sink) { trace_ = std::move(sink); }

    void addPollFds(std::vector<pollfd>& fds) const override;
    void serve(std::span<const pollfd> fds, std::int64_t nowUs) override;
    [[nodiscard]] std::optional<std::int64_t> nextDueUs() const override;

private:
    struct Client {
        int fd;
        std::string received;
    };
    struct Answer {
        int fd;
        std::int64_t dueUs;
        std::string text;
    };

    void accept();
    // Reads and answers what the client sent; false when the client has gone.
    bool serveClient(Client& client, std::int64_t nowUs);
    // Sends the paced answers whose time has come.
    void sendDue(std::int64_t nowUs);

    UsbAdapter& adapter_;
    bool pacing_;
    std::int64_t busFreeUs_ = 0;
    std::deque<Answer> paced_;
    TraceSink trace_;
    int listener_ = -1;
    std::string path_;
    std::vector<Client> clients_;
};

} // namespace zvsim
