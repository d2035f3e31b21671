#pragma once
// The USB adapter endpoint on a Unix stream socket: each connection sends request lines and
// gets one answer line each (the protocol of usb_adapter.h). Pulling the pack closes it all.

#include "frontends/hlk_dongle.h"
#include "frontends/serve_loop.h"
#include "frontends/usb_adapter.h"

#include <string>
#include <vector>

namespace zvsim {

class UsbSocketServer : public Servable {
public:
    explicit UsbSocketServer(UsbAdapter& adapter)
        : adapter_(adapter)
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
    [[nodiscard]] std::optional<std::int64_t> nextDueUs() const override { return std::nullopt; }

private:
    struct Client {
        int fd;
        std::string received;
    };

    void accept();
    // Reads and answers what the client sent; false when the client has gone.
    bool serveClient(Client& client, std::int64_t nowMs);

    UsbAdapter& adapter_;
    TraceSink trace_;
    int listener_ = -1;
    std::string path_;
    std::vector<Client> clients_;
};

} // namespace zvsim
