#pragma once
// The USB adapter as zentavia-packsim serves it on a Unix stream socket: the line protocol of
// LineUsbAdapter, one answer line for each request line. An answer must be whole within the time-out.

#include "usb/line_usb_adapter.h"

#include <string>

namespace zv {

class SocketUsbAdapter : public LineUsbAdapter {
public:
    static constexpr int kDefaultTimeoutMs = 2000;

    explicit SocketUsbAdapter(std::string path, int timeoutMs = kDefaultTimeoutMs);
    ~SocketUsbAdapter() override;
    SocketUsbAdapter(const SocketUsbAdapter&) = delete;
    SocketUsbAdapter& operator=(const SocketUsbAdapter&) = delete;

protected:
    [[nodiscard]] bool openLine() override;
    void closeLine() override;
    [[nodiscard]] bool lineOpen() const override { return fd_ >= 0; }
    [[nodiscard]] std::optional<std::string> exchange(const std::string& request) override;

private:
    [[nodiscard]] std::optional<std::string> readLine();

    std::string path_;
    int timeoutMs_;
    int fd_ = -1;
    std::string received_;
};

} // namespace zv
